#include "endtoend/Operations.h"

#include <memory>
#include <stdexcept>

#include "endtoend/World.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using Toolkit = CommonTooWenlolib;

/// Drops answers that do not matter here.
template <class... Answers>
void ignore(const Answers&...) {}

const Instant someDate(Seconds(1e9));

void refusedBias() {
  try {
    ignore(Toolkit::convertVersionStrToBiasStr("3"));
  } catch (const std::out_of_range&) {
    return;
  }
  throw std::runtime_error("the operation threw nothing");
}

}  // namespace

const std::vector<Operation>& toolkitOperations() {
  static const std::vector<Operation> all = {
      {"systemVersion", [] { ignore(Toolkit::systemVersion()); }},
      {"systemVersionNum", [] { ignore(Toolkit::systemVersionNum()); }},
      {"systemBugFixVersion", [] { ignore(Toolkit::systemBugFixVersion()); }},
      {"supportUpperOSVersion", [] { ignore(Toolkit::supportUpperOSVersion()); }},
      {"osVersion", [] { ignore(Toolkit::osVersion()); }},
      {"compareSystemVersionNumber",
       [] { ignore(Toolkit::compareSystemVersionNumber(10, 9, 10, 8)); }},
      {"systemArchitecture", [] { ignore(Toolkit::systemArchitecture()); }},
      {"groupIdentifier", [] { ignore(Toolkit::groupIdentifier()); }},
      {"groupContainerDirPath", [] { ignore(Toolkit::groupContainerDirPath()); }},
      {"appSupportDirPath", [] { ignore(Toolkit::appSupportDirPath()); }},
      {"prefDirPath", [] { ignore(Toolkit::prefDirPath()); }},
      {"cacheDirPath", [] { ignore(Toolkit::cacheDirPath()); }},
      {"pliDirPath", [] { ignore(Toolkit::pliDirPath(0), Toolkit::pliDirPath(1)); }},
      {"almDirPath", [] { ignore(Toolkit::almDirPath()); }},
      {"confDirPath", [] { ignore(Toolkit::confDirPath()); }},
      {"WENLOLIBDirPath", [] { ignore(Toolkit::WENLOLIBDirPath(0), Toolkit::WENLOLIBDirPath(1)); }},
      {"printerListPath", [] { ignore(Toolkit::printerListPath()); }},
      {"surveyInfoPath", [] { ignore(Toolkit::surveyInfoPath()); }},
      {"printerListDictionary", [] { ignore(Toolkit::printerListDictionary()); }},
      {"surveyInfoDictionary", [] { ignore(Toolkit::surveyInfoDictionary()); }},
      {"createDir", [] { ignore(Toolkit::createDir("/new/folder")); }},
      {"createDir again", [] { ignore(Toolkit::createDir("/new/folder")); }},
      {"calendarFormatString", [] { ignore(Toolkit::calendarFormatString(someDate, 1)); }},
      {"calendarWithTimeZoneFormatString",
       [] { ignore(Toolkit::calendarWithTimeZoneFormatString(someDate)); }},
      {"dateFormatWithHourMinSec", [] { ignore(Toolkit::dateFormatWithHourMinSec(someDate)); }},
      {"replaceString", [] { ignore(Toolkit::replaceString("a/b/c", "/", "-")); }},
      {"convertStrToHeaderStr", [] { ignore(Toolkit::convertStrToHeaderStr("a<b\xFF")); }},
      {"convertVersionStrToNum", [] { ignore(Toolkit::convertVersionStrToNum("3.1.0")); }},
      {"convertVersionNumToStr", [] { ignore(Toolkit::convertVersionNumToStr(30100)); }},
      {"convertVersionNumToBiasStr", [] { ignore(Toolkit::convertVersionNumToBiasStr(30100)); }},
      {"convertVersionStrToBiasStr", [] { ignore(Toolkit::convertVersionStrToBiasStr("3.1.0")); }},
      {"convertVersionStrToBiasStr, which throws", refusedBias},
      {"convertBiasVersionStrToVerStr",
       [] { ignore(Toolkit::convertBiasVersionStrToVerStr("1003.1")); }},
      {"moduleVersion", [] { ignore(Toolkit::moduleVersion()); }},
      {"moduleVersionFromBundle", [] { ignore(Toolkit::moduleVersionFromBundle()); }},
      {"getandcompLocalSupportVersion",
       [] { ignore(Toolkit::getandcompLocalSupportVersion(30100)); }},
  };
  return all;
}

namespace {

/// The record's operations must give their usual answers: a refused record would test nothing.
void expect(bool holds) {
  if (!holds) throw std::runtime_error("the answer is not the expected one");
}

WENLOLIB& record() {
  static const std::shared_ptr<WENLOLIB> one = WENLOLIB::initWithContents("contents", "App", 1);
  return *one;
}

}  // namespace

const std::vector<Operation>& recordOperations() {
  static const std::vector<Operation> all = {
      {"init", [] { expect(WENLOLIB::init() != nullptr); }},
      {"initWithContents", [] { expect(record().contents() == "contents"); }},
      {"setContents", [] { record().setContents("others"); }},
      {"setApplicationName", [] { record().setApplicationName("App"); }},
      {"setFileType", [] { record().setFileType(1); }},
      {"serOtherInfo",
       [] {
         record().serOtherInfo(Dictionary{{"SN", "4711"}});
       }},
      {"contents", [] { expect(record().contents() == "others"); }},
      {"applicationName", [] { expect(record().applicationName() == "App"); }},
      {"fileType", [] { expect(record().fileType() == 1); }},
      {"getCliantVersion", [] { expect(record().getCliantVersion() == "2.1"); }},
      {"getCliantVersionforALM", [] { ignore(record().getCliantVersionforALM()); }},
      {"getOSVersion", [] { expect(!record().getOSVersion().empty()); }},
      {"getLocale", [] { expect(record().getLocale() == "fr_FR"); }},
      {"getLocale of the user",
       [] { expect(WENLOLIB::initWithContents("", "", 2)->getLocale() == "de_DE"); }},
      {"getWENLOLIBId", [] { expect(record().getWENLOLIBId().size() == 38); }},
      {"getDevId", [] { expect(record().getDevId().empty()); }},
      {"getSerialNum", [] { expect(record().getSerialNum() == "4711"); }},
      {"getRomVersion", [] { expect(record().getRomVersion().empty()); }},
      {"isNewTagTypePrinter", [] { expect(!record().isNewTagTypePrinter()); }},
      {"WENLOLIBCreateXMLDocument", [] { expect(record().WENLOLIBCreateXMLDocument()); }},
      {"writeAppInfo", [] { expect(record().writeAppInfo()); }},
      {"isSupported", [] { expect(WENLOLIB::isSupported(0)); }},
      {"isSupported, refused", [] { expect(!WENLOLIB::isSupported(3)); }},
      {"isSupportedPlm", [] { expect(WENLOLIB::isSupportedPlm(0)); }},
      {"writeAppInfoWithContents", [] { expect(recordAs(RecordKind::application, "contents")); }},
      {"writePrinterLogInfoWithContents",
       [] { expect(recordAs(RecordKind::printerOlderTag, "contents")); }},
      {"a write that fails", [] { expect(!WENLOLIB::writeAppInfoWithContents("", "no/App", 2)); }},
      {"createTask", [] { expect(WENLOLIB::createTask("/bin/answer", {}, 1) == 7); }},
      {"createTask without waiting",
       [] { expect(WENLOLIB::createTask("/bin/answer", {}, 0) == 0); }},
      {"createTask without a program",
       [] { expect(WENLOLIB::createTask("/bin/none", {}, 1) == 0); }},
  };
  return all;
}

}  // namespace wenlolib::tests
