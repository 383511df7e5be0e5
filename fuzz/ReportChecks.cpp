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
      return verdict.fault == Fault::damaged || verdict.fault == Fault::truncated;
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
  require(rebuilt(bytes, document) == bytes, "nothing else stands in the document");
  const std::size_t begin = bytes.find('>') + 1;
  const std::string_view content = bytes.substr(begin, bytes.rfind("</") - begin);
  const bool holds =
      tests::upperHex(tests::referenceMd5(tests::bytesOf(content))) == document.checksum;
  require(holds == (report.verdict.layer != Layer::checksum),
          "the verdict says whether the checksum holds");
  checkContents(document);
  require(!report.verdict.sound() || isUtf8(*receiver::contentsOf(document)),
          "sound contents are text");
}

}  // namespace

void checkReport(std::string_view bytes, const Report& report) {
  checkVerdict(bytes, report);
  if (report.document) checkDocument(bytes, report);
}

}  // namespace wenlolib::fuzz
