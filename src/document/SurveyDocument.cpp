#include "document/SurveyDocument.h"

#include <array>
#include <string_view>

#include "base/EnumTable.h"
#include "wenlolib/codec.h"

namespace wenlolib {
namespace {

constexpr std::size_t checksumLength = 32;

constexpr EnumTable<Layout, std::string_view> wrapperNames({
    {Layout::application, "OrvanQXApplication"},
    {Layout::printer, "OrvanQX2Application"},
    {Layout::printerOlderTag, "OrvanQXPrinter"},
});

void append(std::string& text, std::string_view name, std::string_view value) {
  text.append("<").append(name).append(">").append(value).append("</").append(name).append(">");
}

/// The element that carries the payload; answers where in the text its digits stand.
platform::DigitRun append(std::string& text, std::string_view name, const Payload& payload) {
  text.append("<").append(name).append(" C=\"").append(1, payload.marker).append("\">");
  const platform::DigitRun digits{text.size(), payload.digits.size()};
  text.append(payload.digits).append("</").append(name).append(">");
  return digits;
}

platform::DigitRun appendContent(std::string& text, Layout layout, const Header& header,
                                 const Payload& payload) {
  append(text, "Version", header.version);
  append(text, "OSVersion", header.osVersion);
  append(text, "Date", header.date);
  append(text, "Locale", header.locale);
  append(text, "ID", header.identifier);
  if (layout != Layout::printerOlderTag) return append(text, "Encrypted", payload);
  text.append("<Printer>");
  append(text, "DeviceID", header.deviceId);
  append(text, "SN", header.serialNumber);
  append(text, "ROMVER", header.romVersion);
  const platform::DigitRun digits = append(text, "PLI", payload);
  text.append("</Printer>");
  return digits;
}

/// Enough for the text in one piece: a large document must not grow step by step.
std::size_t capacityFor(const Header& header, const Payload& payload) {
  constexpr std::size_t markup = 512;
  return markup + header.version.size() + header.osVersion.size() + header.date.size() +
         header.locale.size() + header.identifier.size() + header.deviceId.size() +
         header.serialNumber.size() + header.romVersion.size() + payload.digits.size();
}

void writeChecksum(const char* content, char* checksum) {
  std::array<std::uint8_t, checksumLength / 2> digest{};
  CreateDigestMD5_CC(content, digest.data());
  ConvertHexToCharData(digest.data(), checksum, std::int32_t{digest.size()}, 1);
}

}  // namespace

SurveyDocument assemble(Layout layout, const Header& header, const Payload& payload) {
  SurveyDocument document;
  std::string& text = document.text;
  text.reserve(capacityFor(header, payload));
  text.append("<").append(wrapperNames[layout]).append(" SUM=\"");
  const std::size_t checksum = text.size();
  text.append(checksumLength, '0').append("\">");
  const std::size_t content = text.size();
  document.digits = appendContent(text, layout, header, payload);
  // The content is all that stands after the wrapper's start tag until its end tag is written, so
  // it can be digested in place, as the NUL-terminated text that it is at this moment.
  writeChecksum(text.c_str() + content, text.data() + checksum);
  text.append("</").append(wrapperNames[layout]).append(">");
  return document;
}

}  // namespace wenlolib
