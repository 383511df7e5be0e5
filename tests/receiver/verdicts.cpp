// Prints what the receiver finds in each named file: "sound", or layer, fault, offset and field.
#include <array>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "wenlolib/Receiver.h"

namespace {

constexpr std::array<const char*, 8> layers = {
    "none", "xml", "whiteSpace", "layout", "cipherMarker", "hexadecimal", "checksum", "contents"};
constexpr std::array<const char*, 5> faults = {"none", "truncated", "damaged", "altered",
                                               "repaired"};

bool report(const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) {
    std::cerr << path << ": cannot be read\n";
    return false;
  }
  const wenlolib::receiver::Verdict verdict = wenlolib::receiver::examine(bytes).verdict;
  if (verdict.sound()) {
    std::cout << "sound\n";
  } else {
    std::cout << layers.at(static_cast<std::size_t>(verdict.layer)) << ' '
              << faults.at(static_cast<std::size_t>(verdict.fault)) << ' ' << verdict.offset << ' '
              << verdict.field << '\n';
  }
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  bool allRead = true;
  for (int i = 1; i < count; ++i) allRead = report(arguments[i]) && allRead;
  return allRead ? 0 : 2;
}
