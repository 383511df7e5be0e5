// A program in C++ that is linked against the installed library and records below HOME, which is an
// empty folder at first. The program's argument is the records' contents.
#include <wenlolib/CommonTooWenlolib.h>
#include <wenlolib/WENLOLIB.h>
#include <wenlolib/codec.h>
#include <wenlolib/plugin.h>
#include <wenlolib/version.h>

#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

using wenlolib::CommonTooWenlolib;
using wenlolib::Dictionary;
using wenlolib::SurveyRecord;
using wenlolib::Text;
using wenlolib::Value;
using wenlolib::WENLOLIB;

int failures = 0;

void expect(bool holds, const std::string& what) {
  if (holds) return;
  std::cerr << "expected, but not true: " << what << "\n";
  ++failures;
}

void makeFolders() {
  expect(CommonTooWenlolib::createDir(CommonTooWenlolib::almDirPath()),
         "the folder for usage is made");
  expect(CommonTooWenlolib::createDir(CommonTooWenlolib::pliDirPath(1)),
         "the folder for logs is made");
  expect(CommonTooWenlolib::createDir(CommonTooWenlolib::confDirPath()),
         "the folder for settings is made");
}

void writePreferences() {
  const Text folder = CommonTooWenlolib::confDirPath();
  std::ofstream file(folder.value_or("") + "/com.orvan.printing.Quillmere.Pref.plist");
  file << "<plist version=\"1.0\"><dict><key>InstalledDate</key><date>2099-01-01T00:00:00Z</date>"
          "<key>LatestSelectedAgreement</key><true/>"
          "<key>LatestSelectedLanguage</key><string>fr_FR</string></dict></plist>";
  expect(static_cast<bool>(file.flush()), "preferences");
}

void record(const std::string& contents) {
  expect(WENLOLIB::writeAppInfoWithContents(contents, "Consumer", 1), "usage recorded");
  const Dictionary newer = {{"NEWTAGTYPE", true}};
  expect(WENLOLIB::writePrinterLogInfoWithContents(contents, "Consumer", 1, newer), "log recorded");
  const auto own = SurveyRecord::initWithContents(contents, "Consumer", 1);
  own->serOtherInfo(Dictionary{{"SN", "4711"}, {"NEWTAGTYPE", 0}, {"More", Value::Array{1, 2.5}}});
  expect(own->writeAppInfo(), "a record that the host makes itself is recorded");
  expect(own->getSerialNum() == "4711", "it has its printer's serial number");
  expect(own->getCliantVersionforALM() == "1.0", "the library finds its own bundle");
  expect(!WENLOLIB::writeAppInfoWithContents({}, "Consumer", 1), "null contents are refused");
}

void useToolkit() {
  expect(CommonTooWenlolib::convertVersionStrToNum("10.9.5") == 100905, "a version's number");
  expect(CommonTooWenlolib::replaceString("a/b/c", "/", "-") == Text("a-b-c"), "text replaced");
  bool thrown = false;
  try {
    static_cast<void>(CommonTooWenlolib::convertVersionStrToBiasStr("3"));
  } catch (const std::out_of_range&) {
    thrown = true;
  }
  expect(thrown, "the range error reaches its caller");
  expect(WENLOLIB::createTask("/bin/sh", {{"-c", "exit 7"}}, 1) == 7, "a program's status");
  expect(std::string(WENLOLIB_version()) == WENLOLIB_VERSION, "the version");
  expect(ConvertCharDataToHex("zz", nullptr, 1) == 1, "the codec answers its failing status");
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  makeFolders();
  writePreferences();
  record(arguments[1]);
  useToolkit();
  return failures == 0 ? 0 : 1;
}
