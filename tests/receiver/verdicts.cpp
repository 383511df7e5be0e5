// Prints what the receiver finds in each named file: "sound", or layer, fault, offset and field.
// After a tab follows what it found of a document that it does not give: layout, marker, digits
// (offset and number), and for each value name, offset and bytes in hexadecimal.
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
constexpr std::array<const char*, 6> faults = {"none",    "truncated", "damaged",
                                               "altered", "repaired",  "foreign"};
constexpr std::array<const char*, 3> layouts = {"application", "printer", "printer-older"};

void tell(const wenlolib::receiver::Document& found) {
  const char* const marker = found.marker == 'R' ? "R" : found.marker == 'X' ? "X" : "-";
  std::cout << '\t' << layouts.at(static_cast<std::size_t>(found.layout)) << ' ' << marker << ' '
            << found.digitsOffset << ' ' << found.digits.size();
  for (const wenlolib::receiver::Field& field : found.fields) {
    std::cout << ' ' << field.name << ' ' << field.offset << ' ' << '=';
    for (const char c : field.value) {
      constexpr const char* digits = "0123456789abcdef";
      std::cout << digits[(c >> 4) & 15] << digits[c & 15];
    }
  }
}

bool report(const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) {
    std::cerr << path << ": cannot be read\n";
    return false;
  }
  const wenlolib::receiver::Report report = wenlolib::receiver::examine(bytes);
  const wenlolib::receiver::Verdict& verdict = report.verdict;
  if (verdict.sound()) {
    std::cout << "sound\n";
  } else {
    std::cout << layers.at(static_cast<std::size_t>(verdict.layer)) << ' '
              << faults.at(static_cast<std::size_t>(verdict.fault)) << ' ' << verdict.offset << ' '
              << verdict.field;
    if (report.found) tell(*report.found);
    std::cout << '\n';
  }
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  bool allRead = true;
  for (int i = 1; i < count; ++i) allRead = report(arguments[i]) && allRead;
  return allRead ? 0 : 2;
}
