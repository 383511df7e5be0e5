// The record's operations, in plain C.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/Answered.h"
#include "base/Trace.h"
#include "objc/FoundationCalendar.h"
#include "objc/Private.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib {

/// Moves a record's fields between the Objective-C object that owns them and the core's record that
/// works on them for the length of one operation.
struct RecordFields {
  static std::shared_ptr<WENLOLIB> lent(const CoreRecord& fields, platform::Calendar& calendar) {
    auto record = WENLOLIB::initWithContents(objc::textIn(fields.contents),
                                             objc::textIn(fields.applicationName), fields.options);
    if (!record) return nullptr;
    record->_calendar = &calendar;
    record->setFileType(fields.fileType);
    record->serOtherInfo(objc::dictionaryIn(fields.otherInfo));
    record->_libUUID = objc::textIn(fields.identifier);
    if (fields.document.kind == plainData) {
      record->_xmlDocment.emplace(reinterpret_cast<const char*>(fields.document.as.bytes),
                                  fields.document.count);
    }
    return record;
  }

  /// False where there is no memory for the document: the one that was lent then stays.
  static bool handBack(const WENLOLIB& record, CoreRecord& fields) {
    plainFree(&fields.identifier);
    fields.identifier = objc::plain(record._libUUID);
    Plain document{};
    if (record._xmlDocment) {
      document = objc::plainBytes(*record._xmlDocment);
      if (document.kind != plainData) return false;
    }
    plainFree(&fields.document);
    fields.document = document;
    return true;
  }

  /// Null where no identifier could be made: the answer is then "", but not for good.
  static Text identifierOf(WENLOLIB& record) {
    static_cast<void>(record.getWENLOLIBId());
    return record._libUUID;
  }
};

}  // namespace wenlolib

namespace {

using namespace wenlolib;
using objc::plain;

uint8_t flag(bool value) {
  return value ? 1 : 0;
}

template <class Work>
uint8_t done(CoreRecord& fields, Work work) {
  return answered(uint8_t{0}, [&]() -> uint8_t {
    objc::FoundationCalendar calendar;
    const auto record = RecordFields::lent(fields, calendar);
    if (!record) return 0;
    const bool answer = work(*record);
    return flag(RecordFields::handBack(*record, fields) && answer);
  });
}

/// What `probe` answers on a record with this identity of a printer.
template <class Answer>
Answer asked(const Plain& otherInfo, Answer fallback, Answer (WENLOLIB::*probe)() const noexcept) {
  return answered(fallback, [&] {
    const auto record = WENLOLIB::init();
    if (!record) return fallback;
    record->serOtherInfo(objc::dictionaryIn(otherInfo));
    return (record.get()->*probe)();
  });
}

template <class Probe>
Plain askedWith(uint32_t options, Probe probe) {
  const auto record = WENLOLIB::initWithContents(std::nullopt, std::nullopt, options);
  return record ? plain(Text((record.get()->*probe)())) : Plain{};
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
  return done(*record, [](WENLOLIB& core) { return core.WENLOLIBCreateXMLDocument(); });
}

uint8_t coreWriteAppInfo(CoreRecord* record) {
  return done(*record, [](WENLOLIB& core) { return core.writeAppInfo(); });
}

Plain coreCliantVersion() {
  return askedWith(0, &WENLOLIB::getCliantVersion);
}

Plain coreCliantVersionforALM() {
  return askedWith(0, &WENLOLIB::getCliantVersionforALM);
}

Plain coreMarkedOSVersion() {
  return askedWith(0, &WENLOLIB::getOSVersion);
}

Plain coreLocale(uint32_t options) {
  return askedWith(options, &WENLOLIB::getLocale);
}

Plain coreIdentifier() {
  return answered(Plain{}, [] {
    const auto record = WENLOLIB::init();
    return record ? plain(RecordFields::identifierOf(*record)) : Plain{};
  });
}

Plain coreDevId(Plain otherInfo) {
  return plain(Text(asked(otherInfo, std::string(), &WENLOLIB::getDevId)));
}

Plain coreSerialNum(Plain otherInfo) {
  return plain(Text(asked(otherInfo, std::string(), &WENLOLIB::getSerialNum)));
}

Plain coreRomVersion(Plain otherInfo) {
  return plain(Text(asked(otherInfo, std::string(), &WENLOLIB::getRomVersion)));
}

uint8_t coreIsNewTagTypePrinter(Plain otherInfo) {
  return flag(asked(otherInfo, false, &WENLOLIB::isNewTagTypePrinter));
}
