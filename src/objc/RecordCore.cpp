// The record's operations, in plain C.
#include <string>
#include <utility>
#include <vector>

#include "base/Answered.h"
#include "base/Trace.h"
#include "objc/FoundationCalendar.h"
#include "objc/Private.h"
#include "record/HeaderValues.h"
#include "record/Identifier.h"
#include "record/Record.h"

namespace {

using namespace wenlolib;
using objc::plain;

uint8_t flag(bool value) {
  return value ? 1 : 0;
}

/// The fields of the Objective-C object, which owns them, for the duration of one operation.
RecordFields fieldsOf(const CoreRecord& object, platform::Calendar& calendar) {
  RecordFields record;
  record._xmlContents = objc::textIn(object.contents);
  record._applicationName = objc::textIn(object.applicationName);
  record._options = object.options;
  if (isFileType(object.fileType)) record._fileType = object.fileType;
  record._otherInfoDict = objc::dictionaryIn(object.otherInfo);
  record._libUUID = objc::textIn(object.identifier);
  record._calendar = &calendar;
  if (object.document.kind == plainData) {
    record._xmlDocment.emplace(reinterpret_cast<const char*>(object.document.as.bytes),
                               object.document.count);
  }
  return record;
}

/// False if there is no memory for the document; the object then keeps the one it has.
bool handBack(const RecordFields& record, CoreRecord& object) {
  plainFree(&object.identifier);
  object.identifier = plain(record._libUUID);
  Plain document{};
  if (record._xmlDocment) {
    document = objc::plainBytes(*record._xmlDocment);
    if (document.kind != plainData) return false;
  }
  plainFree(&object.document);
  object.document = document;
  return true;
}

template <class Step>
uint8_t run(CoreRecord& object, Step step) {
  return answered(uint8_t{0}, [&]() -> uint8_t {
    objc::FoundationCalendar calendar;
    RecordFields record = fieldsOf(object, calendar);
    const bool answer = step(record);
    return flag(handBack(record, object) && answer);
  });
}

template <class Ask>
Plain valueOf(Ask ask) {
  return plain(Text(answered(std::string(), ask)));
}

Plain identityOf(const Plain& otherInfo, std::string_view key) {
  return valueOf([&] { return identityText(objc::dictionaryIn(otherInfo), key); });
}

}  // namespace

void coreTraceEntry(Plain name) {
  static_cast<void>(answered(false, [&] {
    const Text text = objc::textIn(name);
    WENLOLIB_TRACE(" writeAppInfoWithContents %s\n", text ? text->c_str() : "(null)");
    return text.has_value();
  }));
}

uint8_t coreIsSupported(uint32_t option) {
  return flag(WENLOLIB::isSupported(option));
}

uint8_t coreIsSupportedPlm(uint32_t option) {
  return flag(WENLOLIB::isSupportedPlm(option));
}

int32_t coreCreateTask(Plain path, Plain arguments, uint8_t wait) {
  return answered(int32_t{0}, [&]() -> int32_t {
    std::vector<std::string> texts;
    for (std::size_t i = 0; arguments.kind == plainArray && i < arguments.count; ++i) {
      Text text = objc::textIn(arguments.as.items[i]);
      if (!text) return 0;
      texts.push_back(*std::move(text));
    }
    return WENLOLIB::createTask(objc::textIn(path), std::move(texts), wait);
  });
}

uint8_t coreCreateXMLDocument(CoreRecord* record) {
  return run(*record, createDocument);
}

uint8_t coreWriteAppInfo(CoreRecord* record) {
  return run(*record, writeRecord);
}

Plain coreCliantVersion() {
  return valueOf(clientVersion);
}

Plain coreCliantVersionforALM() {
  return valueOf(libraryVersion);
}

Plain coreMarkedOSVersion() {
  return valueOf(markedOSVersion);
}

Plain coreLocale(uint32_t options) {
  return valueOf([&] { return surveyLocale(options); });
}

/* Nothing if no identifier could be made: the host then gets "", and the next call tries again. */
Plain coreIdentifier() {
  return plain(answered(Text(), installationIdentifier));
}

Plain coreDevId(Plain otherInfo) {
  return identityOf(otherInfo, deviceIdKey);
}

Plain coreSerialNum(Plain otherInfo) {
  return identityOf(otherInfo, serialNumberKey);
}

Plain coreRomVersion(Plain otherInfo) {
  return identityOf(otherInfo, romVersionKey);
}

uint8_t coreIsNewTagTypePrinter(Plain otherInfo) {
  return flag(answered(false, [&] { return hasNewTagType(objc::dictionaryIn(otherInfo)); }));
}
