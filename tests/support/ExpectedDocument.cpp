#include "support/ExpectedDocument.h"

#include "support/ReferenceCrypto.h"

namespace wenlolib::tests {
namespace {

/// The key of a document: the MD5 digest of its date text, 16 raw bytes.
std::string keyFor(std::string_view date) {
  return fromHex(checksumOf(date));
}

std::string element(const std::string& name, const std::string& value) {
  return "<" + name + ">" + value + "</" + name + ">";
}

}  // namespace

std::string checksumOf(std::string_view text) {
  return upperHex(referenceMd5(bytesOf(text)));
}

std::string cycledXor(std::string_view key, std::string source) {
  for (std::size_t i = 0; i < source.size(); ++i) {
    source[i] = static_cast<char>(source[i] ^ key[i % 16]);
  }
  return source;
}

std::string ExpectedDocument::payload() const {
  if (date.empty()) return std::string(2 * contents.size(), '0');
  const std::string key = keyFor(date);
  const std::string encrypted =
      marker == 'R' ? referenceRc4(bytesOf(key), contents) : cycledXor(key, contents);
  return upperHex(bytesOf(encrypted));
}

std::string ExpectedDocument::text() const {
  std::string content = element("Version", version) + element("OSVersion", osVersion) +
                        element("Date", date) + element("Locale", locale) +
                        element("ID", identifier);
  const std::string payloadName = printer ? "PLI" : "Encrypted";
  const std::string payloadElement =
      "<" + payloadName + " C=\"" + marker + "\">" + payload() + "</" + payloadName + ">";
  if (printer) {
    content += "<Printer>" + element("DeviceID", printer->deviceId) +
               element("SN", printer->serialNumber) + element("ROMVER", printer->romVersion) +
               payloadElement + "</Printer>";
  } else {
    content += payloadElement;
  }
  return "<" + wrapper + " SUM=\"" + checksumOf(content) + "\">" + content + "</" + wrapper + ">";
}

std::string elementIn(const std::string& document, const std::string& name) {
  std::size_t begin = document.find("<" + name + ">");
  if (begin == std::string::npos) begin = document.find("<" + name + " ");
  if (begin == std::string::npos) return "(there is no such element)";
  begin = document.find('>', begin) + 1;
  return document.substr(begin, document.find("</" + name + ">", begin) - begin);
}

std::string attributeIn(const std::string& document, const std::string& name) {
  const std::string opening = " " + name + "=\"";
  std::size_t begin = document.find(opening);
  if (begin == std::string::npos) return "(there is no such attribute)";
  begin += opening.size();
  return document.substr(begin, document.find('"', begin) - begin);
}

std::string contentsOf(const std::string& document) {
  const bool older = document.find("<PLI ") != std::string::npos;
  const std::string bytes = fromHex(elementIn(document, older ? "PLI" : "Encrypted"));
  const std::string key = keyFor(elementIn(document, "Date"));
  return attributeIn(document, "C") == "R" ? referenceRc4(bytesOf(key), bytes)
                                           : cycledXor(key, bytes);
}

bool verifies(const std::string& document) {
  const std::size_t begin = document.find('>') + 1;
  const std::size_t end = document.rfind("</");
  return attributeIn(document, "SUM") == checksumOf(document.substr(begin, end - begin));
}

}  // namespace wenlolib::tests
