// Any bytes give a report.
#include <gtest/gtest.h>

#include <random>

#include "receiver/Samples.h"
#include "support/FailingAllocations.h"

namespace wenlolib::tests {
namespace {

using receiver::Fault;
using receiver::Layer;
using receiver::Layout;

std::string repeated(std::string_view part, std::size_t count) {
  std::string text;
  text.reserve(part.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += part;
  return text;
}

constexpr std::size_t million = 1000000;

struct Input {
  std::string name;
  std::string bytes;
  Layer layer;
  Fault fault;
  std::size_t offset;
};

Input truncated(std::string name, std::string bytes) {
  const std::size_t length = bytes.size();
  return {std::move(name), std::move(bytes), Layer::xml, Fault::truncated, length};
}

Input damaged(std::string name, std::string bytes, Layer layer, std::size_t offset) {
  return {std::move(name), std::move(bytes), layer, Fault::damaged, offset};
}

Input foreign(std::string name, std::string bytes, Layer layer) {
  return {std::move(name), std::move(bytes), layer, Fault::foreign, 0};
}

const std::string start = "<OrvanQXPrinter SUM=\"0123456789ABCDEF0123456789ABCDEF\">";

std::vector<Input> oddInputs() {
  using namespace std::string_literals;
  return {
      truncated("nothing", ""),
      truncated("a bracket", "<"),
      foreign("a NUL", "\0"s, Layer::xml),
      foreign("NULs", std::string(million, '\0'), Layer::xml),
      damaged("a document and NULs", start + std::string(4096, '\0'), Layer::xml, start.size()),
      foreign("UTF-16, big end first", "\xFE\xFF\0<\0a\0/\0>"s, Layer::xml),
      foreign("UTF-16, little end first", "\xFF\xFE<\0a\0/\0>\0"s, Layer::xml),
      foreign("a byte order mark", "\xEF\xBB\xBF<a/>", Layer::layout),
      foreign("brackets", std::string(10 * million, '<'), Layer::xml),
      foreign("closing brackets", std::string(10 * million, '>'), Layer::xml),
      damaged("ampersands", start + std::string(10 * million, '&'), Layer::xml, start.size()),
      foreign("digits", std::string(10 * million, 'A'), Layer::xml),
      foreign("white space", std::string(10 * million, ' '), Layer::xml),
      truncated("an endless value", start + "<Version>" + std::string(10 * million, 'v')),
      truncated("an endless checksum", "<OrvanQXPrinter SUM=\"" + std::string(10 * million, '0')),
  };
}

std::vector<Input> largeMarkup() {
  const std::string attribute(10 * million, 'a');
  std::string attributes = "<OrvanQXPrinter";
  for (std::size_t i = 0; i < 100000; ++i) attributes += " a" + std::to_string(i) + "=\"\"";
  return {
      foreign("nested elements", repeated("<a>", 100000), Layer::xml),
      foreign("nested and ended", repeated("<a>", 100000) + repeated("</a>", 100000),
              Layer::layout),
      damaged("nested in a wrapper",
              start + repeated("<a>", 100000) + repeated("</a>", 100000) + "</OrvanQXPrinter>",
              Layer::layout, start.size() + 1),
      damaged("elements", start + repeated("<a/>", 2 * million) + "</OrvanQXPrinter>",
              Layer::layout, start.size() + 1),
      damaged("elements apart", start + repeated("<a/>\n", 2 * million) + "</OrvanQXPrinter>",
              Layer::whiteSpace, start.size() + 4),
      damaged("a huge attribute", "<OrvanQXPrinter SUM=\"" + attribute + "\"></OrvanQXPrinter>",
              Layer::layout, 21 + attribute.size() + 3),
      foreign("a huge name", "<" + attribute + "/>", Layer::layout),
      damaged("many attributes", attributes + "/>", Layer::layout, 16),
      truncated("an endless comment", start + "<!--" + repeated("- ", 5 * million)),
      truncated("an endless instruction", start + "<?a " + repeated("?", 5 * million)),
      truncated("an endless section", start + "<![CDATA[" + repeated("]", 5 * million)),
  };
}

void expectFindings(const std::vector<Input>& inputs) {
  for (const Input& input : inputs) {
    const Finding found = findingOf(input.bytes);
    EXPECT_EQ(found.layer, input.layer) << input.name;
    EXPECT_EQ(found.fault, input.fault) << input.name;
    EXPECT_EQ(found.offset, input.offset) << input.name;
  }
}

TEST(ReceiverHostile, OddInputs) {
  expectFindings(oddInputs());
}

TEST(ReceiverHostile, LargeMarkup) {
  expectFindings(largeMarkup());
}

TEST(ReceiverHostile, EntitiesAreNotExpanded) {
  std::string type = "<!DOCTYPE OrvanQXPrinter [<!ENTITY a \"aaaaaaaaaaaaaaaaaaaa\">";
  for (char name = 'b'; name <= 'z'; ++name) {
    const std::string before(1, static_cast<char>(name - 1));
    type += "<!ENTITY " + std::string(1, name) + " \"" + repeated("&" + before + ";", 50) + "\">";
  }
  const std::string text = type + "]>" + start + "&z;</OrvanQXPrinter>";
  const CountedAllocations counted;
  EXPECT_EQ(findingOf(text), (Finding{Layer::layout, Fault::damaged, 1, ""}));
  EXPECT_LT(counted.largest(), std::size_t{1} << 20);
}

TEST(ReceiverHostile, ReferencesWithoutEnd) {
  ExpectedDocument document = sample(Layout::printerOlderTag);
  document.printer->deviceId = repeated("&lt;", million);
  document.printer->serialNumber = repeated("&amp;", million);
  document.printer->romVersion = repeated("&#x1F5A8;", million);
  const std::string text = document.text();
  EXPECT_EQ(findingOf(text), Finding{});
  const std::string altered = replaced(text, "en_US", "en_UK");
  EXPECT_EQ(findingOf(altered).fault, Fault::altered);
  const receiver::Report report = receiver::examine(altered);
  ASSERT_TRUE(report.document);
  EXPECT_EQ(report.document->value("ROMVER").size(), 4 * million);
}

TEST(ReceiverHostile, RandomBytesAndRandomMarkup) {
  std::mt19937 random(20240315);
  const std::vector<std::string> parts = {"<",
                                          ">",
                                          "/",
                                          "\"",
                                          "&",
                                          ";",
                                          "<!--",
                                          "-->",
                                          "<![CDATA[",
                                          "]]>",
                                          "<?",
                                          "?>",
                                          "amp",
                                          "#x41",
                                          "<OrvanQXApplication SUM=\"",
                                          "</OrvanQXApplication>",
                                          "<Version>",
                                          "</Version>",
                                          "<Date>",
                                          " C=\"R\">",
                                          "00FF",
                                          "\n",
                                          "\xC3\xA9",
                                          "\xFF",
                                          std::string(1, '\0'),
                                          "<!DOCTYPE a>"};
  for (int i = 0; i < 20000; ++i) {
    std::string bytes;
    for (auto count = random() % 12; count > 0; --count) bytes += parts[random() % parts.size()];
    const receiver::Verdict verdict = receiver::examine(bytes).verdict;
    EXPECT_FALSE(verdict.sound()) << bytes;
    EXPECT_LE(verdict.offset, bytes.size());
    EXPECT_NE(verdict.explanation, "");
  }
}

TEST(ReceiverHostile, ALargePayloadIsReadWhole) {
  for (const char marker : {'R', 'X'}) {
    const std::string contents = repeated("0123456789 and so on. ", million);
    const std::string text = sample(Layout::printerOlderTag, marker, contents).text();
    const receiver::Report report = receiver::examine(text);
    ASSERT_TRUE(report.verdict.sound());
    EXPECT_TRUE(receiver::contentsOf(*report.document) == contents);
    const std::size_t middle = text.size() / 2;
    std::string damaged = text;
    damaged[middle] = '<';
    EXPECT_EQ(findingOf(damaged), (Finding{Layer::xml, Fault::damaged, middle + 1, "PLI"}));
    damaged[middle] = 'a';
    EXPECT_EQ(findingOf(damaged), (Finding{Layer::hexadecimal, Fault::damaged, middle, "PLI"}));
    EXPECT_EQ(findingOf(text.substr(0, middle)),
              (Finding{Layer::xml, Fault::truncated, middle, "PLI"}));
  }
}

/// Fails each allocation in turn. Either the failure is reported, or the verdict is the usual one.
void examineWithFailures(const std::string& text) {
  const receiver::Verdict usual = receiver::examine(text).verdict;
  int failures = 0;
  for (bool struck = true; struck;) {
    FailingAllocations failing(failures + 1);
    try {
      const receiver::Verdict verdict = receiver::examine(text).verdict;
      failing.stop();
      EXPECT_FALSE(failing.struck()) << failures;
      EXPECT_EQ(verdict.layer, usual.layer);
      struck = false;
    } catch (const std::bad_alloc&) {
      failing.stop();
      ++failures;
    }
    ASSERT_LT(failures, 10000);
  }
  EXPECT_GT(failures, 0);
}

TEST(ReceiverHostile, NoMemoryIsReportedAndNothingElse) {
  ExpectedDocument document = sample(Layout::printerOlderTag);
  document.locale = "\u00E9&amp;" + std::string(100, 'x');
  const std::string text = document.text();
  examineWithFailures(text);
  examineWithFailures(replaced(text, "QX200", "QX201"));
  examineWithFailures(replaced(text, "<SN>", "\n<SN>"));
  examineWithFailures(text.substr(0, text.size() / 2));
}

}  // namespace
}  // namespace wenlolib::tests
