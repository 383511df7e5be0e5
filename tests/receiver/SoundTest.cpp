#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <utility>

#include "receiver/Samples.h"

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;
using receiver::Document;
using receiver::examine;
using receiver::Layout;
using receiver::Report;

std::vector<std::string> contentsOfAllKinds() {
  return {"",
          "x",
          "some contents",
          "Gr\u00FC\u00DFe \u6771\u4EAC \U0001D11E \U0010FFFF",
          "a NUL \0 inside"s,
          "\0"s,
          "<b>&amp;]]> markup \"'\r\n\t",
          std::string(100000, 'x'),
          "\x01\x7F\uFFFE"};
}

TEST(Receiver, ReadsEveryLayoutMarkerAndKindOfContents) {
  for (const Layout layout : layouts) {
    for (const char marker : {'R', 'X'}) {
      for (const std::string& contents : contentsOfAllKinds()) {
        const std::string text = sample(layout, marker, contents).text();
        const Report report = examine(text);
        ASSERT_TRUE(report.verdict.sound()) << text.substr(0, 500);
        EXPECT_EQ(report.verdict.fault, receiver::Fault::none);
        EXPECT_EQ(report.verdict.offset, 0U);
        EXPECT_EQ(report.verdict.field + report.verdict.explanation, "");
        ASSERT_TRUE(report.document);
        EXPECT_EQ(report.document->layout, layout);
        EXPECT_EQ(report.document->marker, marker);
        EXPECT_EQ(receiver::contentsOf(*report.document), contents);
      }
    }
  }
}

TEST(Receiver, GivesTheValuesInTheirOrder) {
  struct Value {
    std::string name, value;
  };
  const std::vector<Value> all = {{"Version", "3.1"},
                                  {"OSVersion", "M.10.15.7"},
                                  {"Date", "2024-03-15T09:05:07+09:00"},
                                  {"Locale", "en_US"},
                                  {"ID", "{ID}"},
                                  {"DeviceID", "MFG:Orvan;MDL:QX 200;"},
                                  {"SN", "QX200-0004711"},
                                  {"ROMVER", "2.14"}};
  for (const Layout layout : layouts) {
    const std::string text = sample(layout).text();
    const Report report = examine(text);
    ASSERT_TRUE(report.document);
    const Document& document = *report.document;
    ASSERT_EQ(document.fields.size(), layout == Layout::printerOlderTag ? 8U : 5U);
    for (std::size_t i = 0; i < document.fields.size(); ++i) {
      EXPECT_EQ(document.fields[i].name, all[i].name);
      EXPECT_EQ(document.fields[i].value, all[i].value);
      EXPECT_EQ(document.fields[i].offset, text.find(">" + all[i].value + "<") + 1);
      EXPECT_EQ(document.value(all[i].name), all[i].value);
    }
    EXPECT_EQ(document.value("Encrypted"), "");
    EXPECT_EQ(document.value(""), "");
  }
}

TEST(Receiver, LeadsIntoTheBytesItExamined) {
  for (const Layout layout : layouts) {
    const std::string text = sample(layout).text();
    const Report report = examine(text);
    ASSERT_TRUE(report.document);
    EXPECT_EQ(report.document->checksum.data(), text.data() + text.find("SUM=\"") + 5);
    EXPECT_EQ(report.document->checksum, attributeIn(text, "SUM"));
    EXPECT_EQ(report.document->digits.data(), text.data() + report.document->digitsOffset);
    EXPECT_EQ(report.document->digits, sample(layout).payload());
  }
}

TEST(Receiver, NamesTheWrappers) {
  for (const Layout layout : layouts) {
    EXPECT_EQ(receiver::wrapperName(layout), wrappers()[static_cast<std::size_t>(layout)]);
  }
}

TEST(Receiver, GivesTheContentsOfACopyAndOfADocumentThatIsGivenUp) {
  const std::string text = sample(Layout::application).text();
  Report report = examine(text);
  ASSERT_TRUE(report.document);
  const Document copy = *report.document;
  EXPECT_EQ(receiver::contentsOf(std::move(*report.document)), "some contents");
  EXPECT_EQ(receiver::contentsOf(copy), "some contents");
  EXPECT_EQ(receiver::contentsOf(copy), "some contents");
}

TEST(Receiver, DecryptsADocumentThatWasPutTogetherByHand) {
  const std::string text = sample(Layout::application, 'X').text();
  Document document = *examine(text).document;
  document.contents.reset();
  EXPECT_EQ(receiver::contentsOf(document), "some contents");
  EXPECT_EQ(receiver::contentsOf(std::move(document)), "some contents");

  Document noDigits;
  noDigits.fields.push_back({"Date", "2024-03-15T09:05:07+09:00", 0});
  for (const std::string_view digits : {"0", "0g", "ab", "000"}) {
    noDigits.digits = digits;
    EXPECT_EQ(receiver::contentsOf(noDigits), std::nullopt) << digits;
  }
  noDigits.digits = "00";
  noDigits.marker = 'Z';
  EXPECT_EQ(receiver::contentsOf(noDigits), std::nullopt);
}

TEST(Receiver, ReadsTheExampleDocuments) {
  struct Example {
    std::string name, contents;
  };
  const std::vector<Example> examples = {
      {"application-rc4.ALM", "D\u00E9but: 3 pages"},
      {"printer-newer-rc4.PLM", "Head 2 \u2013 \u6771\u4EAC \U0001F5A8\n"},
      {"printer-older-xor.PLM", "ink C71 M64 Y58 K80"}};
  const std::string folder = WENLOLIB_EXAMPLES "/documents/";
  for (const Example& example : examples) {
    std::ifstream file(folder + example.name, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    ASSERT_FALSE(bytes.empty()) << example.name;
    const Report report = examine(bytes);
    EXPECT_TRUE(report.verdict.sound()) << example.name << ": " << report.verdict.explanation;
    ASSERT_TRUE(report.document);
    EXPECT_EQ(receiver::contentsOf(*report.document), example.contents);
  }
}

}  // namespace
}  // namespace wenlolib::tests
