// A host that is linked with the library and catches the only exception in the interface. The host
// may have its own C++ library linked in. Exit status 0 means that it caught a range error.
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

#include "wenlolib/CommonTooWenlolib.h"

namespace {

using wenlolib::CommonTooWenlolib;
using wenlolib::Text;

std::string converted(const char* version) {
  try {
    return CommonTooWenlolib::convertVersionStrToBiasStr(Text(version)).value_or("null");
  } catch (const std::out_of_range& error) {
    return *error.what() == '\0' ? "a range error without a message" : "range error";
  } catch (const std::exception&) {
    return "another exception";
  } catch (...) {
    return "an exception of an unknown type";
  }
}

}  // namespace

int main() {
  constexpr const char* cases[][2] = {
      {"", "range error"}, {"3", "range error"}, {"3.1", "range error"}, {"3.1.0", "1003.1"}};
  int failures = 0;
  for (int round = 0; round < 100; ++round) {
    for (const auto& [version, expected] : cases) {
      const std::string found = converted(version);
      if (found == expected) continue;
      std::cerr << "'" << version << "' gives: " << found << "\n";
      ++failures;
    }
  }
  return failures == 0 ? 0 : 1;
}
