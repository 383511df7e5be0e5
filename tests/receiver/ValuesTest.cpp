// Values that the parser or a reader might read differently.
#include <gtest/gtest.h>

#include "receiver/Samples.h"

namespace wenlolib::tests {
namespace {

using receiver::Layout;

struct Value {
  std::string stored, read;
};

const std::vector<Value>& values() {
  static const std::vector<Value> all = {
      {"", ""},
      {" ", " "},
      {"\n", "\n"},
      {"a > b", "a > b"},
      {"\"'", "\"'"},
      {"]]", "]]"},
      {"line\r\nline\ttab", "line\r\nline\ttab"},
      {"\u00E9\u6771\U0001F5A8\u007F\uFFFD", "\u00E9\u6771\U0001F5A8\u007F\uFFFD"},
      {"A&amp;B", "A&B"},
      {"&lt;&gt;&quot;&apos;&amp;", "<>\"'&"},
      {"&amp;lt;", "&lt;"},
      {"&#65;&#x42;&#x000043;", "ABC"},
      {"&#xE9;&#x6771;&#x1F5A8;&#1114111;", "\u00E9\u6771\U0001F5A8\U0010FFFF"},
      {"&#9;;&#10;", "\t;\n"},
      // On both sides of where a character takes one more byte, and where some are left out.
      {"&#x7F;&#x80;", "\x7F\xC2\x80"},
      {"&#x7FF;&#x800;", "\xDF\xBF\xE0\xA0\x80"},
      {"&#xD7FF;&#xE000;", "\xED\x9F\xBF\xEE\x80\x80"},
      {"&#xFFFD;&#x10000;", "\xEF\xBF\xBD\xF0\x90\x80\x80"},
      {"&#xFFFFF;&#x100000;&#x10FFFF;", "\xF3\xBF\xBF\xBF\xF4\x80\x80\x80\xF4\x8F\xBF\xBF"},
      {"&#32;&#x20;&#xD;", "  \r"},
      {";", ";"},
      {std::string(200000, 'v'), std::string(200000, 'v')},
  };
  return all;
}

TEST(ReceiverValues, AreReadAsTheyWereMeant) {
  for (const Value& value : values()) {
    ExpectedDocument document = sample(Layout::printerOlderTag);
    document.version = document.osVersion = document.locale = document.identifier = value.stored;
    document.printer = ExpectedPrinter{value.stored, value.stored, value.stored};
    const std::string text = document.text();
    const receiver::Report report = receiver::examine(text);
    ASSERT_TRUE(report.verdict.sound()) << value.stored.substr(0, 100);
    for (const receiver::Field& field : report.document->fields) {
      if (field.name == "Date") continue;
      EXPECT_EQ(field.value, value.read);
      EXPECT_EQ(text.substr(field.offset, value.stored.size()), value.stored);
    }
    EXPECT_EQ(receiver::contentsOf(*report.document), "some contents");
  }
}

TEST(ReceiverValues, AreLeftToTheParserWhenInDoubt) {
  struct Refused {
    std::string value;
    std::size_t wrong;  // where in the value the parser refuses it
  };
  using namespace std::string_literals;
  const std::vector<Refused> all = {
      {"&", 1},         {"a&b", 3},          {"&nbsp;", 0},   {"&#0;", 0},
      {"&#xD800;", 0},  {"&#x110000;", 0},   {"&#xDFFF;", 0}, {"&#xFFFE;", 0},
      {"&#xFFFF;", 0},  {"&#x1F;", 0},       {"]]>", 2},      {"a\0b"s, 1},
      {"ab\x01", 2},    {"\xEF\xBF\xBE", 0}, {"a\xFF", 1},    {"\xC3(", 0},
      {"a\xC0\x80", 1}, {"\xED\xA0\x80", 0}, {"\x0B", 0},
  };
  for (const Refused& refused : all) {
    ExpectedDocument document = sample(Layout::printerOlderTag);
    document.printer->serialNumber = refused.value;
    const std::string text = document.text();
    const std::size_t offset = text.find("<SN>") + 4 + refused.wrong;
    EXPECT_EQ(findingOf(text),
              (Finding{receiver::Layer::xml, receiver::Fault::damaged, offset, "SN"}))
        << refused.value;
  }
}

TEST(ReceiverValues, TheDateIsTheKeyAsItStands) {
  for (const std::string date :
       {"2024-03-15T09:05:07+0900", "yesterday", " ", "2024&#45;03", "\u00E9", "a\r\nb"}) {
    for (const char marker : {'R', 'X'}) {
      ExpectedDocument document = sample(Layout::application, marker);
      document.date = date;
      const std::string text = document.text();
      const receiver::Report report = receiver::examine(text);
      ASSERT_TRUE(report.verdict.sound()) << date << ": " << report.verdict.explanation;
      EXPECT_EQ(report.document->value("Date"), date);
      EXPECT_EQ(receiver::contentsOf(*report.document), "some contents");
    }
  }
}

TEST(ReceiverValues, ADocumentWithoutADateHasNoContents) {
  for (const Layout layout : layouts) {
    ExpectedDocument document = sample(layout);
    document.date = "";
    const std::string text = document.text();
    const receiver::Report report = receiver::examine(text);
    EXPECT_EQ(findingOf(text), (Finding{receiver::Layer::contents, receiver::Fault::none,
                                        text.find("<Date>") + 6, "Date"}));
    ASSERT_TRUE(report.document);
    EXPECT_EQ(report.document->digits, std::string(26, '0'));
    EXPECT_EQ(receiver::contentsOf(*report.document), std::nullopt);
  }
}

TEST(ReceiverValues, ContentsThatAreNotTextAreReportedAtTheirFirstWrongByte) {
  struct Bad {
    std::string contents;
    std::size_t wrong;
  };
  std::string large(5000, 'x');
  large += "\x80 and more";
  const std::vector<Bad> all = {{"\xFF", 0},
                                {"0123456789abcdef\xC3", 16},
                                {"\u00E9\u6771\U0001F5A8\xED\xA0\x80", 9},
                                {"ok\xF4\x90\x80\x80", 2},
                                {large, 5000}};
  for (const Bad& bad : all) {
    for (const char marker : {'R', 'X'}) {
      const std::string text = sample(Layout::printerOlderTag, marker, bad.contents).text();
      const receiver::Report report = receiver::examine(text);
      ASSERT_TRUE(report.document);
      EXPECT_EQ(findingOf(text), (Finding{receiver::Layer::contents, receiver::Fault::damaged,
                                          report.document->digitsOffset + 2 * bad.wrong, "PLI"}));
      EXPECT_EQ(receiver::contentsOf(*report.document), bad.contents);
    }
  }
}

}  // namespace
}  // namespace wenlolib::tests
