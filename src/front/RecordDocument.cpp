#include <utility>

#include "base/Answered.h"
#include "base/Trace.h"
#include "document/DateText.h"
#include "document/Payload.h"
#include "document/SurveyDocument.h"
#include "platform/Platform.h"
#include "probes/ClientVersion.h"
#include "probes/Identifier.h"
#include "probes/Locale.h"
#include "probes/PrinterIdentity.h"
#include "toolkit/Names.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib {
namespace {

Layout layoutFor(std::uint32_t fileType, const std::optional<Dictionary>& otherInfo) {
  if (fileType == applicationFileType) return Layout::application;
  return hasNewTagType(otherInfo) ? Layout::printer : Layout::printerOlderTag;
}

/// Asks for the values that a document of this layout carries, in the order in which it does.
/// `identifier` is the record's cache.
Header gather(Layout layout, const Text& date, std::uint32_t option,
              const std::optional<Dictionary>& otherInfo, Text& identifier) {
  Header header;
  header.version = layout == Layout::application ? libraryVersion() : clientVersion();
  header.osVersion = markedOSVersion();
  header.date = date.value_or("");
  header.locale = surveyLocale(option);
  header.identifier = cachedIdentifier(identifier);
  if (layout == Layout::printerOlderTag) {
    header.deviceId = identityText(otherInfo, deviceIdKey);
    header.serialNumber = identityText(otherInfo, serialNumberKey);
    header.romVersion = identityText(otherInfo, romVersionKey);
  }
  return header;
}

}  // namespace

bool WENLOLIB::WENLOLIBCreateXMLDocument() noexcept {
  return answered(false, [&] {
    const std::string_view contents = _xmlContents ? std::string_view(*_xmlContents) : "";
    std::optional<WorkingBuffers> buffers = WorkingBuffers::allocate(contents.size());
    if (!buffers) return false;
    const Text date = currentDateText(calendar());
    Payload payload = protect(*std::move(buffers), date, contents);
    const Layout layout = layoutFor(_fileType, _otherInfoDict);
    const Header header = gather(layout, date, _options, _otherInfoDict, _libUUID);
    SurveyDocument document = assemble(layout, header, payload);
    payload = Payload();  // a large record holds its digits once from here on
    WENLOLIB_TRACE("xmlCheckSumStr = %s", document.text.c_str());
    Text parsed = platform::current().xml->serialised(std::move(document.text), document.digits);
    if (parsed) {
      WENLOLIB_TRACE("xmlDoc desc =%s ", parsed->c_str());
      _xmlDocment = std::move(parsed);
    }
    return true;
  });
}

}  // namespace wenlolib
