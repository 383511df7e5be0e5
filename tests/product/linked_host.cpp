// A host in C++ that is linked with the library and records what plugin_host records:
//
//   linked_host CONTENTS_FILE
//
// It prints what went wrong on standard error. Exit status 0 means that nothing did.
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "wenlolib/WENLOLIB.h"

namespace {

using wenlolib::Dictionary;
using wenlolib::WENLOLIB;

constexpr std::uint32_t hostLanguage = 1;
int failures = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  std::cerr << "expected, but not true: " << what << "\n";
  ++failures;
}

void recordPrinter(const std::string& contents, const Dictionary& identity, const char* what) {
  expect(WENLOLIB::writePrinterLogInfoWithContents(contents, "Host", hostLanguage, identity), what);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  std::ifstream file(arguments[1], std::ios::binary);
  const std::string contents(std::istreambuf_iterator<char>(file), {});
  expect(WENLOLIB::writeAppInfoWithContents(contents, "Host", hostLanguage), "usage recorded");
  recordPrinter(contents, {{"NEWTAGTYPE", "YES"}}, "a newer printer is recorded");
  recordPrinter(contents, {{"DeviceID", "QX 200"}, {"SN", "4711"}, {"ROMVER", "2.14"}},
                "an older printer is recorded");
  recordPrinter("", {}, "a printer without an identity is recorded");
  recordPrinter(contents, {{"DeviceID", "Größe &amp; &#233;"}},
                "a printer with an identity beyond ASCII is recorded");
  return failures == 0 ? 0 : 1;
}
