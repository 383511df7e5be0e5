// The toolkit's operations, in plain C.
#include <stdexcept>

#include "base/Answered.h"
#include "objc/FoundationCalendar.h"
#include "objc/Private.h"
#include "toolkit/DateLayouts.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace {

using namespace wenlolib;
using Toolkit = CommonTooWenlolib;
using objc::plain;
using objc::textIn;

/// A date in Foundation's calendar, in the layout that `work` makes; nothing if `date` is not a
/// date.
template <class Work>
Plain format(const Plain& date, Work work) {
  if (date.kind != plainDate) return Plain{};
  return answered(Plain{}, [&] {
    objc::FoundationCalendar calendar;
    return plain(work(calendar, Instant(Seconds(date.as.real))));
  });
}

}  // namespace

Plain coreSystemVersion() {
  return plain(Toolkit::systemVersion());
}

int32_t coreSystemVersionNum() {
  return Toolkit::systemVersionNum();
}

int32_t coreSystemBugFixVersion() {
  return Toolkit::systemBugFixVersion();
}

int32_t coreSupportUpperOSVersion() {
  return Toolkit::supportUpperOSVersion();
}

Plain coreOsVersion() {
  return plain(Toolkit::osVersion());
}

ptrdiff_t coreCompareSystemVersionNumber(int32_t major, int32_t minor, int32_t otherMajor,
                                         int32_t otherMinor) {
  return Toolkit::compareSystemVersionNumber(major, minor, otherMajor, otherMinor);
}

int32_t coreSystemArchitecture() {
  return Toolkit::systemArchitecture();
}

Plain coreGroupIdentifier() {
  return plain(Toolkit::groupIdentifier());
}

Plain coreGroupContainerDirPath() {
  return plain(Toolkit::groupContainerDirPath());
}

Plain coreAppSupportDirPath() {
  return plain(Toolkit::appSupportDirPath());
}

Plain corePrefDirPath() {
  return plain(Toolkit::prefDirPath());
}

Plain coreCacheDirPath() {
  return plain(Toolkit::cacheDirPath());
}

Plain corePliDirPath(uint8_t flag) {
  return plain(Toolkit::pliDirPath(flag));
}

Plain coreAlmDirPath() {
  return plain(Toolkit::almDirPath());
}

Plain coreConfDirPath() {
  return plain(Toolkit::confDirPath());
}

Plain coreWENLOLIBDirPath(uint8_t flag) {
  return plain(Toolkit::WENLOLIBDirPath(flag));
}

Plain corePrinterListPath() {
  return plain(Toolkit::printerListPath());
}

Plain coreSurveyInfoPath() {
  return plain(Toolkit::surveyInfoPath());
}

Plain corePrinterListDictionary() {
  return plain(Toolkit::printerListDictionary());
}

Plain coreSurveyInfoDictionary() {
  return plain(Toolkit::surveyInfoDictionary());
}

uint8_t coreCreateDir(Plain path) {
  return answered(false, [&] { return Toolkit::createDir(textIn(path)); }) ? 1 : 0;
}

Plain coreCalendarFormatString(Plain date, uint8_t isNeedDay) {
  return format(date, [&](platform::Calendar& calendar, Instant at) {
    return shortDate(calendar, at, isNeedDay == 1);
  });
}

Plain coreCalendarWithTimeZoneFormatString(Plain date) {
  return format(date, zonedDate);
}

Plain coreDateFormatWithHourMinSec(Plain date) {
  return format(date, slashedDate);
}

Plain coreReplaceString(Plain string, Plain before, Plain after) {
  return answered(Plain{}, [&] {
    return plain(Toolkit::replaceString(textIn(string), textIn(before), textIn(after)));
  });
}

Plain coreConvertStrToHeaderStr(Plain string) {
  return answered(Plain{}, [&] { return plain(Toolkit::convertStrToHeaderStr(textIn(string))); });
}

int32_t coreConvertVersionStrToNum(Plain version) {
  return answered(int32_t{-1}, [&] { return Toolkit::convertVersionStrToNum(textIn(version)); });
}

Plain coreConvertVersionNumToStr(int32_t version) {
  return plain(Toolkit::convertVersionNumToStr(version));
}

Plain coreConvertVersionNumToBiasStr(int32_t version) {
  return plain(Toolkit::convertVersionNumToBiasStr(version));
}

Plain coreConvertVersionStrToBiasStr(Plain version, uint8_t* outOfRange) {
  *outOfRange = 0;
  return answered(Plain{}, [&] {
    try {
      return plain(Toolkit::convertVersionStrToBiasStr(textIn(version)));
    } catch (const std::out_of_range&) {
      *outOfRange = 1;
      return Plain{};
    }
  });
}

Plain coreConvertBiasVersionStrToVerStr(Plain bias) {
  return answered(Plain{},
                  [&] { return plain(Toolkit::convertBiasVersionStrToVerStr(textIn(bias))); });
}

int32_t coreModuleVersion() {
  return Toolkit::moduleVersion();
}

int32_t coreModuleVersionFromBundle() {
  return Toolkit::moduleVersionFromBundle();
}

int32_t coreGetandcompLocalSupportVersion(int32_t version) {
  return Toolkit::getandcompLocalSupportVersion(version);
}
