#include "record/Record.h"

#include <utility>

#include "base/Answered.h"
#include "base/Trace.h"
#include "base/Utf8.h"
#include "platform/Platform.h"
#include "policy/RecordingGates.h"
#include "record/Document.h"
#include "record/HeaderValues.h"
#include "record/Identifier.h"
#include "record/RecordFile.h"

namespace wenlolib {

// --- The document ---

namespace {

platform::Calendar& calendarOf(const RecordFields& record) {
  return record._calendar != nullptr ? *record._calendar : *platform::current().calendar;
}

Layout layoutOf(const RecordFields& record) {
  if (record._fileType == applicationFileType) return Layout::application;
  return hasNewTagType(record._otherInfoDict) ? Layout::printer : Layout::printerOlderTag;
}

/// Asks for the values that a document of this layout carries, in their order in the document.
Header gather(RecordFields& record, Layout layout, const Text& date) {
  Header header;
  header[Field::version] = layout == Layout::application ? libraryVersion() : clientVersion();
  header[Field::osVersion] = markedOSVersion();
  header[Field::date] = date.value_or("");
  header[Field::locale] = surveyLocale(record._options);
  header[Field::identifier] = cachedIdentifier(record._libUUID);
  if (layout == Layout::printerOlderTag) {
    header[Field::deviceId] = identityText(record._otherInfoDict, deviceIdKey);
    header[Field::serialNumber] = identityText(record._otherInfoDict, serialNumberKey);
    header[Field::romVersion] = identityText(record._otherInfoDict, romVersionKey);
  }
  return header;
}

/// The document of these contents, or null if the XML service refuses it; nothing if there is no
/// memory for one.
std::optional<Text> documentOf(RecordFields& record, std::string_view contents) {
  std::optional<WorkingBuffers> buffers = WorkingBuffers::allocate(contents.size());
  if (!buffers) return std::nullopt;
  const Text date = currentDateText(calendarOf(record));
  Payload payload = protect(*std::move(buffers), date, contents);
  const Layout layout = layoutOf(record);
  const Header header = gather(record, layout, date);
  SurveyDocument document = assemble(layout, header, payload);
  payload = Payload();  // from here on a large record holds its digits only once
  WENLOLIB_TRACE("xmlCheckSumStr = %s", document.text.c_str());
  Text xml = platform::current().xml->serialised(std::move(document.text), document.digits);
  if (xml) WENLOLIB_TRACE("xmlDoc desc =%s ", xml->c_str());
  return xml;
}

}  // namespace

bool createDocument(RecordFields& record) noexcept {
  return answered(false, [&] {
    std::optional<Text> document =
        documentOf(record, record._xmlContents ? std::string_view(*record._xmlContents) : "");
    if (!document) return false;
    if (*document) record._xmlDocment = *std::move(document);  // else an earlier one stays
    return true;
  });
}

// --- The file ---

namespace {

bool write(RecordFields& record, std::string_view contents, const std::string& name) {
  RecordFile file = record._fileType == printerLogFileType
                        ? printerLogFile(name)
                        : applicationFile(name, calendarOf(record));
  std::optional<Text> document = documentOf(record, contents);
  if (!document) return false;
  // If there is no new document, an earlier one is written; once that has been tried, none is left.
  if (!*document) *document = std::move(record._xmlDocment);
  record._xmlDocment.reset();
  if (!*document) return true;  // no document, and so no file: true on purpose
  return writeDocument(std::move(file), name, **document);
}

}  // namespace

bool writeRecord(RecordFields& record) noexcept {
  return answered(false, [&] {
    if (!record._xmlContents || !record._applicationName) return false;
    return write(record, *record._xmlContents, *record._applicationName);
  });
}

bool writeContents(Text contents, Text name, std::uint32_t option, std::uint32_t fileType,
                   std::optional<Dictionary> otherInfo) {
  contents = utf8OrNull(std::move(contents));
  name = utf8OrNull(std::move(name));
  if (!contents || !name) return false;
  RecordFields record;
  record._options = option;
  record._fileType = fileType;
  record._otherInfoDict = std::move(otherInfo);
  return write(record, *contents, *name);
}

// --- The record as hosts see it ---

WENLOLIB::WENLOLIB() : _fields(std::make_unique<RecordFields>()) {}

WENLOLIB::~WENLOLIB() = default;

std::shared_ptr<WENLOLIB> WENLOLIB::init() noexcept {
  return answered(std::shared_ptr<WENLOLIB>(),
                  [] { return std::shared_ptr<WENLOLIB>(new WENLOLIB()); });
}

std::shared_ptr<WENLOLIB> WENLOLIB::initWithContents(Text contents, Text name,
                                                     std::uint32_t option) noexcept {
  std::shared_ptr<WENLOLIB> record = init();
  if (!record) return nullptr;
  record->setContents(std::move(contents));
  record->setApplicationName(std::move(name));
  record->_fields->_options = option;
  return record;
}

void WENLOLIB::setContents(Text contents) noexcept {
  _fields->_xmlContents = utf8OrNull(std::move(contents));
}

void WENLOLIB::setApplicationName(Text name) noexcept {
  _fields->_applicationName = utf8OrNull(std::move(name));
}

void WENLOLIB::setFileType(std::uint32_t fileType) noexcept {
  if (isFileType(fileType)) _fields->_fileType = fileType;
}

void WENLOLIB::serOtherInfo(std::optional<Dictionary> otherInfo) noexcept {
  if (otherInfo) _fields->_otherInfoDict = std::move(otherInfo);
}

Text WENLOLIB::contents() const noexcept {
  return answered(Text(), [&] { return _fields->_xmlContents; });
}

Text WENLOLIB::applicationName() const noexcept {
  return answered(Text(), [&] { return _fields->_applicationName; });
}

std::uint32_t WENLOLIB::fileType() const noexcept {
  return _fields->_fileType;
}

bool WENLOLIB::WENLOLIBCreateXMLDocument() noexcept {
  return createDocument(*_fields);
}

bool WENLOLIB::writeAppInfo() noexcept {
  return writeRecord(*_fields);
}

// --- Its values ---

namespace {

template <class Ask>
std::string valueOf(Ask ask) noexcept {
  return answered(std::string(), ask);
}

}  // namespace

std::string WENLOLIB::getCliantVersion() const noexcept {
  return valueOf(clientVersion);
}

std::string WENLOLIB::getCliantVersionforALM() const noexcept {
  return valueOf(libraryVersion);
}

std::string WENLOLIB::getOSVersion() const noexcept {
  return valueOf(markedOSVersion);
}

std::string WENLOLIB::getLocale() const noexcept {
  return valueOf([&] { return surveyLocale(_fields->_options); });
}

std::string WENLOLIB::getWENLOLIBId() noexcept {
  return valueOf([&] { return cachedIdentifier(_fields->_libUUID); });
}

std::string WENLOLIB::getDevId() const noexcept {
  return valueOf([&] { return identityText(_fields->_otherInfoDict, deviceIdKey); });
}

std::string WENLOLIB::getSerialNum() const noexcept {
  return valueOf([&] { return identityText(_fields->_otherInfoDict, serialNumberKey); });
}

std::string WENLOLIB::getRomVersion() const noexcept {
  return valueOf([&] { return identityText(_fields->_otherInfoDict, romVersionKey); });
}

bool WENLOLIB::isNewTagTypePrinter() const noexcept {
  return answered(false, [&] { return hasNewTagType(_fields->_otherInfoDict); });
}

// --- Recording ---

bool WENLOLIB::writeAppInfoWithContents(Text contents, Text name, std::uint32_t option) noexcept {
  WENLOLIB_TRACE(" writeAppInfoWithContents %s\n", name ? name->c_str() : "(null)");
  return isSupported(option) && answered(false, [&] {
           return writeContents(std::move(contents), std::move(name), option, applicationFileType,
                                std::nullopt);
         });
}

bool WENLOLIB::writePrinterLogInfoWithContents(Text contents, Text name, std::uint32_t option,
                                               std::optional<Dictionary> otherInfo) noexcept {
  return isSupportedPlm(option) && answered(false, [&] {
           return writeContents(std::move(contents), std::move(name), option, printerLogFileType,
                                std::move(otherInfo));
         });
}

bool WENLOLIB::isSupported(std::uint32_t option) noexcept {
  return answered(false, [&] {
    PlatformFacts facts;
    const bool supported = refusal(facts, RecordKind::application, option) == Gate::none;
    if (!supported) WENLOLIB_TRACE(" NOT Supported \n");
    return supported;
  });
}

bool WENLOLIB::isSupportedPlm(std::uint32_t /*option*/) noexcept {
  return answered(false, [] {
    PlatformFacts facts;
    return refusal(facts, RecordKind::printerLog, 0) == Gate::none;
  });
}

// --- Running a program ---

std::int32_t WENLOLIB::createTask(const Text& path,
                                  const std::optional<std::vector<std::string>>& args,
                                  std::uint8_t wait) noexcept {
  return answered(std::int32_t{0}, [&] {
    const platform::Platform& platform = platform::current();
    if (!path || !isUtf8(*path) || !platform.files->isExecutable(*path)) return 0;
    const auto arguments = args.value_or(std::vector<std::string>());
    return platform.programs->run(*path, arguments, wait == 1).value_or(0);
  });
}

}  // namespace wenlolib
