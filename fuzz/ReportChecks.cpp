#include <algorithm>
#include <string>
#include <vector>

#include "Checks.h"
#include "Require.h"
#include "base/Utf8.h"
#include "support/ReferenceCrypto.h"

namespace wenlolib::fuzz {
namespace {

using receiver::Document;
using receiver::Fault;
using receiver::Field;
using receiver::Layer;
using receiver::Layout;
using receiver::Report;
using receiver::Verdict;

bool faultFits(const Verdict& verdict) {
  switch (verdict.layer) {
    case Layer::none:
      return verdict.fault == Fault::none;
    case Layer::xml:
      return verdict.fault == Fault::damaged || verdict.fault == Fault::truncated ||
             verdict.fault == Fault::foreign;
    case Layer::layout:
      return verdict.fault == Fault::damaged || verdict.fault == Fault::foreign;
    case Layer::checksum:
      return verdict.fault == Fault::altered || verdict.fault == Fault::repaired;
    case Layer::contents:
      return verdict.fault == Fault::damaged || verdict.fault == Fault::none;
    default:
      return verdict.fault == Fault::damaged;
  }
}

bool isReadable(Layer layer) {
  return layer == Layer::none || layer == Layer::checksum || layer == Layer::contents;
}

void checkVerdict(std::string_view bytes, const Report& report) {
  const Verdict& verdict = report.verdict;
  require(faultFits(verdict), "the fault fits the layer");
  require(verdict.offset <= bytes.size(), "the offset lies within the bytes");
  require(verdict.sound() == verdict.explanation.empty(), "what is not sound is explained");
  require(isUtf8(verdict.explanation), "the explanation is text");
  require(verdict.fault != Fault::truncated || verdict.offset == bytes.size(),
          "a truncated document is wrong where it ends");
  require(report.document.has_value() == isReadable(verdict.layer),
          "a document is returned if its form holds");
  require(!report.document || !report.found, "nothing is searched for in a document");
  require(verdict.fault != Fault::foreign || (verdict.offset == 0 && !report.found),
          "nothing is found in a foreign file");
}

/// A value as it stands in the bytes.
std::string_view rawValue(std::string_view bytes, const Field& field) {
  require(field.offset < bytes.size(), "a field lies within the bytes");
  return bytes.substr(field.offset, bytes.find('<', field.offset) - field.offset);
}

void checkField(std::string_view bytes, const Field& field) {
  const std::string_view raw = rawValue(bytes, field);
  const bool asItStands = field.name == "Date" || raw.find('&') == std::string_view::npos;
  require(!asItStands || field.value == raw, "a value without references is given as it stands");
  require(field.value.size() <= raw.size(), "no reference is shorter than what it stands for");
  require(isUtf8(field.value) && field.value.find('\0') == std::string::npos, "a value is text");
}

std::string ciphered(const Document& document, std::string contents) {
  const auto key = tests::referenceMd5(tests::bytesOf(document.value("Date")));
  if (document.marker == 'R') return tests::referenceRc4(key, contents);
  for (std::size_t i = 0; i < contents.size(); ++i) {
    contents[i] = static_cast<char>(static_cast<unsigned char>(contents[i]) ^ key[i % key.size()]);
  }
  return contents;
}

/// The document rebuilt from only what the report says of it and the values as they stand.
std::string rebuilt(std::string_view bytes, const Document& document) {
  const bool older = document.layout == Layout::printerOlderTag;
  const std::string wrapper = document.layout == Layout::application ? "OrvanQXApplication"
                              : older                                ? "OrvanQXPrinter"
                                                                     : "OrvanQX2Application";
  const std::string payload = older ? "PLI" : "Encrypted";
  std::string text = "<" + wrapper + " SUM=\"" + std::string(document.checksum) + "\">";
  for (const Field& field : document.fields) {
    if (field.name == "DeviceID") text += "<Printer>";
    text += "<" + field.name + ">" + std::string(rawValue(bytes, field)) + "</" + field.name + ">";
  }
  text += "<" + payload + " C=\"" + document.marker + "\">" + std::string(document.digits) + "</" +
          payload + ">";
  return text + (older ? "</Printer>" : "") + "</" + wrapper + ">";
}

void checkContents(const Document& document) {
  const std::optional<std::string> contents = receiver::contentsOf(document);
  require(contents.has_value() == !document.value("Date").empty(),
          "there are contents if there is a date");
  if (!contents) return;
  require(tests::upperHex(tests::bytesOf(ciphered(document, *contents))) == document.digits,
          "the contents give the payload");
  require(!document.contents || document.contents == contents, "the contents are the same");
}

/// What stands before the document's wrapper: nothing, or an XML declaration.
std::string_view prefaceOf(std::string_view bytes, const Document& document) {
  const std::string text = rebuilt(bytes, document);
  require(bytes.ends_with(text), "nothing else stands in the document");
  const std::string_view preface = bytes.substr(0, bytes.size() - text.size());
  const bool declaration = preface.starts_with("<?xml") && preface.ends_with("?>");
  require(preface.empty() || declaration, "nothing but a declaration stands before it");
  return preface;
}

void checkDocument(std::string_view bytes, const Report& report) {
  const Document& document = *report.document;
  std::vector<std::string> names = {"Version", "OSVersion", "Date", "Locale", "ID"};
  if (document.layout == Layout::printerOlderTag) {
    names.insert(names.end(), {"DeviceID", "SN", "ROMVER"});
  }
  require(std::ranges::equal(names, document.fields, {}, {}, &Field::name), "the layout's fields");
  for (const Field& field : document.fields) checkField(bytes, field);
  require(bytes.substr(document.digitsOffset, document.digits.size()) == document.digits,
          "the payload stands where it is said to");
  const std::size_t begin = bytes.find('>', prefaceOf(bytes, document).size()) + 1;
  const std::string_view content = bytes.substr(begin, bytes.rfind("</") - begin);
  const bool holds =
      tests::upperHex(tests::referenceMd5(tests::bytesOf(content))) == document.checksum;
  require(holds == (report.verdict.layer != Layer::checksum),
          "the verdict says whether the checksum holds");
  checkContents(document);
  require(!report.verdict.sound() || isUtf8(*receiver::contentsOf(document)),
          "sound contents are text");
}

/// What was found stands in the bytes, whatever else does.
void checkFound(std::string_view bytes, const Document& found) {
  require(!found.fields.empty() || found.marker != '\0', "something was found");
  for (const Field& field : found.fields) {
    const std::string_view raw = rawValue(bytes, field);
    require(raw.find('&') != std::string_view::npos || field.value == raw,
            "a value without references is given as it stands");
    require(bytes.substr(0, field.offset).ends_with("<" + field.name + ">"),
            "a value follows its tag");
  }
  require(found.digits.size() % 2 == 0, "the digits are in pairs");
  require(bytes.substr(found.digitsOffset, found.digits.size()) == found.digits,
          "the payload stands where it is said to");
  require(!found.contents, "nothing is decrypted before it is asked for");
  const bool decipherable = found.marker != '\0' && !found.value("Date").empty();
  const std::optional<std::string> contents = receiver::contentsOf(found);
  require(contents.has_value() == decipherable, "there are contents if there is a key");
  require(!contents || tests::upperHex(tests::bytesOf(ciphered(found, *contents))) == found.digits,
          "the contents give the digits");
}

}  // namespace

void checkReport(std::string_view bytes, const Report& report) {
  checkVerdict(bytes, report);
  if (report.found) checkFound(bytes, *report.found);
  if (report.document) checkDocument(bytes, report);
}

}  // namespace wenlolib::fuzz
