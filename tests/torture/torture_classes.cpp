// A C++ host for the torture. It is linked with the plug-in and calls each operation of its
// classes.
//
//   torture_classes SHARED_OBJECT WINTER_OFFSET SUMMER_OFFSET shown|first
//
// SHARED_OBJECT is ignored: the program is linked with it.
#include <cstdio>
#include <iterator>
#include <new>
#include <stdexcept>

#include "contents.h"
#include "harness.h"
#include "wenlolib/CommonTooWenlolib.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib {
namespace {

using Toolkit = CommonTooWenlolib;

const Instant someDate(Seconds(1e9));

void tell(const Text& text) {
  answer(text ? text->c_str() : nullptr);
}
void tell(std::ptrdiff_t number) {
  answerNumber(static_cast<long>(number));
}
void tell(const std::optional<Dictionary>& entries) {
  answer(entries ? std::to_string(entries->size()).append(" entries").c_str() : nullptr);
}

/// Calls the library between the marks. Its answer is reported and freed after them.
template <class Call>
void within(Call call) {
  enter();
  const auto result = call();
  leave();
  tell(result);
}

std::shared_ptr<WENLOLIB> recordOf(std::uint32_t fileType, std::uint32_t option = 1) {
  auto record = WENLOLIB::initWithContents(TORTURE_CONTENTS, "App", option);
  record->setFileType(fileType);
  return record;
}

Dictionary identity() {
  return {{"DeviceID", "QX 200"}, {"SN", "4711"}, {"ROMVER", "2.14"}};
}

std::shared_ptr<WENLOLIB> printerRecord(Dictionary otherInfo = identity()) {
  auto record = recordOf(1);
  record->serOtherInfo(std::move(otherInfo));
  return record;
}

void writtenInOneGo(bool application) {
  std::optional<Dictionary> otherInfo = identity();
  Text contents = TORTURE_CONTENTS;
  Text name = "App";
  within([&] {
    if (application) {
      return WENLOLIB::writeAppInfoWithContents(std::move(contents), std::move(name), 1);
    }
    return WENLOLIB::writePrinterLogInfoWithContents(std::move(contents), std::move(name), 1,
                                                     std::move(otherInfo));
  });
}

/// No operation gives out the document. The operations that write records show whether it is right.
void documentMade(std::uint32_t fileType) {
  const auto record = fileType == 1 ? printerRecord() : recordOf(2);
  within([&] { return record->WENLOLIBCreateXMLDocument(); });
}

/// Calls a setter between the marks, then reports what the record answers.
template <class Call, class Answer>
void afterSetting(Call call, Answer answered) {
  const auto record = printerRecord();
  enter();
  call(*record);
  leave();
  tell(answered(*record));
}

template <class Call>
void onRecord(Call call) {
  const auto record = printerRecord();
  within([&] { return call(*record); });
}

void made(Text contents, Text name, bool plainly) {
  enter();
  const auto record = plainly ? WENLOLIB::init()
                              : WENLOLIB::initWithContents(std::move(contents), std::move(name), 1);
  leave();
  if (record == nullptr) return tell(Text());
  tell(plainly ? Text("a record") : record->contents());
}

void refusedBias() {
  const Text version = "3";
  const char* thrown = "nothing thrown";
  enter();
  try {
    static_cast<void>(Toolkit::convertVersionStrToBiasStr(version));
  } catch (const std::out_of_range&) {
    thrown = "out of range";
  } catch (const std::bad_alloc&) {
    thrown = nullptr;
  }
  leave();
  answer(thrown);
}

void replaced() {
  Text text = "a/b/c, long enough not to fit into the object itself";
  const Text slash = "/", hyphens = "-----";
  within([&] { return Toolkit::replaceString(std::move(text), slash, hyphens); });
}

void folderMade() {
  const Text path = std::string(std::getenv("HOME")).append("/new/folder");
  within([&] { return std::ptrdiff_t{Toolkit::createDir(path)}; });
}

void run(const char* program, std::uint8_t wait) {
  const Text path = program;
  const std::optional<std::vector<std::string>> arguments = {{"-c", "exit 7"}};
  within([&] { return std::ptrdiff_t{WENLOLIB::createTask(path, arguments, wait)}; });
}

const Text version = "3.1.0", bias = "1003.1";
const Text headerText = "a<b>, long enough not to fit into the object itself";

#define CALL(name, call)                      \
  {                                           \
    name, [] { within([] { return call; }); } \
  }

/// Each name begins with the operation that is called.
const TortureOperation operations[] = {
    CALL("CommonTooWenlolib::systemVersion", Toolkit::systemVersion()),
    CALL("CommonTooWenlolib::systemVersionNum", Toolkit::systemVersionNum()),
    CALL("CommonTooWenlolib::systemBugFixVersion", Toolkit::systemBugFixVersion()),
    CALL("CommonTooWenlolib::supportUpperOSVersion", Toolkit::supportUpperOSVersion()),
    CALL("CommonTooWenlolib::osVersion", Toolkit::osVersion()),
    CALL("CommonTooWenlolib::compareSystemVersionNumber",
         Toolkit::compareSystemVersionNumber(10, 9, 10, 8)),
    CALL("CommonTooWenlolib::systemArchitecture", Toolkit::systemArchitecture()),
    CALL("CommonTooWenlolib::groupIdentifier", Toolkit::groupIdentifier()),
    CALL("CommonTooWenlolib::groupContainerDirPath", Toolkit::groupContainerDirPath()),
    CALL("CommonTooWenlolib::appSupportDirPath", Toolkit::appSupportDirPath()),
    CALL("CommonTooWenlolib::prefDirPath", Toolkit::prefDirPath()),
    CALL("CommonTooWenlolib::cacheDirPath", Toolkit::cacheDirPath()),
    CALL("CommonTooWenlolib::pliDirPath-shared", Toolkit::pliDirPath(0)),
    CALL("CommonTooWenlolib::pliDirPath", Toolkit::pliDirPath(1)),
    CALL("CommonTooWenlolib::almDirPath", Toolkit::almDirPath()),
    CALL("CommonTooWenlolib::confDirPath", Toolkit::confDirPath()),
    CALL("CommonTooWenlolib::WENLOLIBDirPath", Toolkit::WENLOLIBDirPath(1)),
    CALL("CommonTooWenlolib::printerListPath", Toolkit::printerListPath()),
    CALL("CommonTooWenlolib::surveyInfoPath", Toolkit::surveyInfoPath()),
    CALL("CommonTooWenlolib::printerListDictionary", Toolkit::printerListDictionary()),
    CALL("CommonTooWenlolib::surveyInfoDictionary", Toolkit::surveyInfoDictionary()),
    {"CommonTooWenlolib::createDir", folderMade},
    CALL("CommonTooWenlolib::calendarFormatString", Toolkit::calendarFormatString(someDate, 1)),
    CALL("CommonTooWenlolib::calendarWithTimeZoneFormatString",
         Toolkit::calendarWithTimeZoneFormatString(someDate)),
    CALL("CommonTooWenlolib::dateFormatWithHourMinSec",
         Toolkit::dateFormatWithHourMinSec(someDate)),
    {"CommonTooWenlolib::replaceString", replaced},
    CALL("CommonTooWenlolib::convertStrToHeaderStr", Toolkit::convertStrToHeaderStr(headerText)),
    CALL("CommonTooWenlolib::convertVersionStrToNum", Toolkit::convertVersionStrToNum(version)),
    CALL("CommonTooWenlolib::convertVersionNumToStr", Toolkit::convertVersionNumToStr(30100)),
    CALL("CommonTooWenlolib::convertVersionNumToBiasStr",
         Toolkit::convertVersionNumToBiasStr(30100)),
    CALL("CommonTooWenlolib::convertVersionStrToBiasStr",
         Toolkit::convertVersionStrToBiasStr(version)),
    {"CommonTooWenlolib::convertVersionStrToBiasStr-throwing", refusedBias},
    CALL("CommonTooWenlolib::convertBiasVersionStrToVerStr",
         Toolkit::convertBiasVersionStrToVerStr(bias)),
    CALL("CommonTooWenlolib::moduleVersion", Toolkit::moduleVersion()),
    CALL("CommonTooWenlolib::moduleVersionFromBundle", Toolkit::moduleVersionFromBundle()),
    CALL("CommonTooWenlolib::getandcompLocalSupportVersion",
         Toolkit::getandcompLocalSupportVersion(30100)),
    {"WENLOLIB::init", [] { made({}, {}, true); }},
    {"WENLOLIB::initWithContents", [] { made(TORTURE_CONTENTS, "App", false); }},
    {"WENLOLIB::setContents",
     [] {
       Text others = "others, long enough not to fit into the object itself";
       afterSetting([&](WENLOLIB& record) { record.setContents(std::move(others)); },
                    [](WENLOLIB& record) { return record.contents(); });
     }},
    {"WENLOLIB::setApplicationName",
     [] {
       Text other = "another name, long enough not to fit into the object itself";
       afterSetting([&](WENLOLIB& record) { record.setApplicationName(std::move(other)); },
                    [](WENLOLIB& record) { return record.applicationName(); });
     }},
    {"WENLOLIB::setFileType",
     [] {
       afterSetting([](WENLOLIB& record) { record.setFileType(2); },
                    [](WENLOLIB& record) { return std::ptrdiff_t{record.fileType()}; });
     }},
    {"WENLOLIB::serOtherInfo",
     [] {
       std::optional<Dictionary> other = Dictionary{{"SN", "0815"}};
       afterSetting([&](WENLOLIB& record) { record.serOtherInfo(std::move(other)); },
                    [](WENLOLIB& record) { return Text(record.getSerialNum()); });
     }},
    {"WENLOLIB::contents", [] { onRecord([](WENLOLIB& record) { return record.contents(); }); }},
    {"WENLOLIB::applicationName",
     [] { onRecord([](WENLOLIB& record) { return record.applicationName(); }); }},
    {"WENLOLIB::fileType",
     [] { onRecord([](WENLOLIB& record) { return std::ptrdiff_t{record.fileType()}; }); }},
    {"WENLOLIB::getCliantVersion",
     [] { onRecord([](WENLOLIB& record) { return Text(record.getCliantVersion()); }); }},
    {"WENLOLIB::getCliantVersionforALM",
     [] { onRecord([](WENLOLIB& record) { return Text(record.getCliantVersionforALM()); }); }},
    {"WENLOLIB::getOSVersion",
     [] { onRecord([](WENLOLIB& record) { return Text(record.getOSVersion()); }); }},
    {"WENLOLIB::getLocale",
     [] { onRecord([](WENLOLIB& record) { return Text(record.getLocale()); }); }},
    {"WENLOLIB::getLocale-user",
     [] {
       const auto record = recordOf(2, 2);
       within([&] { return Text(record->getLocale()); });
     }},
    {"WENLOLIB::getWENLOLIBId",
     [] { onRecord([](WENLOLIB& record) { return Text(record.getWENLOLIBId()); }); }},
    {"WENLOLIB::getDevId",
     [] { onRecord([](WENLOLIB& record) { return Text(record.getDevId()); }); }},
    {"WENLOLIB::getSerialNum",
     [] { onRecord([](WENLOLIB& record) { return Text(record.getSerialNum()); }); }},
    {"WENLOLIB::getRomVersion",
     [] { onRecord([](WENLOLIB& record) { return Text(record.getRomVersion()); }); }},
    {"WENLOLIB::isNewTagTypePrinter",
     [] {
       onRecord([](WENLOLIB& record) { return std::ptrdiff_t{record.isNewTagTypePrinter()}; });
     }},
    {"WENLOLIB::WENLOLIBCreateXMLDocument", [] { documentMade(2); }},
    {"WENLOLIB::WENLOLIBCreateXMLDocument-printer", [] { documentMade(1); }},
    {"WENLOLIB::writeAppInfo",
     [] {
       const auto record = recordOf(2);
       within([&] { return std::ptrdiff_t{record->writeAppInfo()}; });
     }},
    {"WENLOLIB::writeAppInfo-printer",
     [] { onRecord([](WENLOLIB& record) { return std::ptrdiff_t{record.writeAppInfo()}; }); }},
    {"WENLOLIB::writeAppInfo-newer",
     [] {
       const auto record = printerRecord({{"NEWTAGTYPE", true}});
       within([&] { return std::ptrdiff_t{record->writeAppInfo()}; });
     }},
    CALL("WENLOLIB::isSupported", std::ptrdiff_t{WENLOLIB::isSupported(1)}),
    CALL("WENLOLIB::isSupported-user", std::ptrdiff_t{WENLOLIB::isSupported(2)}),
    CALL("WENLOLIB::isSupportedPlm", std::ptrdiff_t{WENLOLIB::isSupportedPlm(1)}),
    {"WENLOLIB::writeAppInfoWithContents", [] { writtenInOneGo(true); }},
    {"WENLOLIB::writePrinterLogInfoWithContents", [] { writtenInOneGo(false); }},
    {"WENLOLIB::createTask", [] { run("/bin/sh", 1); }},
    {"WENLOLIB::createTask-alone", [] { run("/bin/sh", 0); }},
    {"WENLOLIB::createTask-missing", [] { run("/bin/none", 1); }},
};

}  // namespace
}  // namespace wenlolib

int main(int count, char** arguments) {
  if (count != 5) {
    std::fputs("usage: torture_classes SHARED_OBJECT WINTER_OFFSET SUMMER_OFFSET shown|first\n",
               stderr);
    return 2;
  }
  return serve(wenlolib::operations, static_cast<int>(std::size(wenlolib::operations)),
               arguments + 2);
}
