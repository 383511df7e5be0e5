// Files of another kind.
#include <gtest/gtest.h>

#include "receiver/Samples.h"

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;
using receiver::Fault;
using receiver::Layer;
using receiver::Layout;

struct File {
  std::string bytes;
  std::string looksLike;
  Layer layer = Layer::xml;
};

std::string inUtf16(std::string_view text, const std::string& mark) {
  std::string bytes = mark;
  for (const char c : text) bytes += {c, '\0'};
  return bytes;
}

std::vector<File> files() {
  return {
      {"\x1F\x8B\x08 and more", "a gzip archive"},
      {"%PDF-1.7\n%", "a PDF document"},
      {"\x89PNG\r\n\x1A\n", "a PNG image"},
      {"\xFF\xD8\xFF\xE0", "a JPEG image"},
      {"GIF89a", "a GIF image"},
      {"PK\x03\x04", "a ZIP archive"},
      {"II*\0\x08"s, "a TIFF image"},
      {"bplist00", "a binary property list"},
      {inUtf16("<a/>", "\xFF\xFE"), "text in UTF-16"},
      {inUtf16(sample(Layout::application).text(), "\xFF\xFE"), "text in UTF-16"},
      {inUtf16(sample(Layout::application).text(), ""), "text in UTF-16"},
      {std::string(4096, '\0'), "NUL bytes only"},
      {" \t\r\n", "white space and nothing else"},
      {"\xEF\xBB\xBF\n", "white space and nothing else"},
      {"<!DOCTYPE HTML><p>x", "a web page (HTML)", Layer::layout},
      {"\n<HTML><body></body></HTML>", "a web page (HTML)", Layer::layout},
      {"<html><body>OrvanQX: &lt;OrvanQXApplication</body></html>", "a web page (HTML)",
       Layer::layout},
      {"<html><p><OrvanQXApplication SUM=\"\"></html>", "a web page (HTML)"},
      {"<a/>", "XML of another kind, with the element a", Layer::layout},
      {"<a>\n<b/>\n</a>\n", "XML of another kind, with the element a", Layer::layout},
      {"<a>", "XML of another kind, with the element a"},
      {"<?xml version=\"1.0\"?><plist/>", "XML of another kind, with the element plist",
       Layer::layout},
      {"<!-- --><a/>", "XML of another kind", Layer::layout},
      {"<!DOCTYPE a><a/>", "XML of another kind", Layer::layout},
      {"plain text\n", "text"},
      {"\u00E9 \u6771\n", "text"},
      {"{\"a\": 1}", "text"},
      {"\x01\x02\x03", "binary data"},
      {"text and \xFF", "binary data"},
  };
}

TEST(ReceiverForeign, SaysWhatTheFileLooksLike) {
  for (const File& file : files()) {
    const receiver::Report report = receiver::examine(file.bytes);
    EXPECT_EQ(findingOf(file.bytes), (Finding{file.layer, Fault::foreign, 0, ""}))
        << file.looksLike;
    EXPECT_EQ(report.verdict.explanation,
              "The file is not a survey document: it looks like " + file.looksLike + ".");
    EXPECT_FALSE(report.document);
    EXPECT_FALSE(report.found);
  }
}

TEST(ReceiverForeign, AnEmptyFileIsSaidToBeEmpty) {
  EXPECT_EQ(findingOf(""), (Finding{Layer::xml, Fault::truncated, 0, ""}));
  EXPECT_EQ(receiver::examine("").verdict.explanation, "The file is empty.");
}

TEST(ReceiverForeign, WhatCouldBeTheBeginningOfADocumentIsNotForeign) {
  const std::string declared = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
  const std::string whole = declared + sample(Layout::printer).text();
  for (std::size_t length = 1; length < whole.size(); ++length) {
    ASSERT_EQ(findingOf(whole.substr(0, length)).fault, Fault::truncated)
        << whole.substr(0, length);
  }
}

TEST(ReceiverForeign, WhatHoldsPartsOfADocumentIsNotForeign) {
  const std::string text = sample(Layout::application).text();
  const std::string otherName =
      replaced(replaced(text, "<OrvanQXApplication", "<Other"), "</OrvanQXApplication", "</Other");
  EXPECT_EQ(findingOf(otherName), (Finding{Layer::layout, Fault::damaged, 2, ""}));
  EXPECT_EQ(findingOf("x" + text), (Finding{Layer::xml, Fault::damaged, 0, ""}));
  EXPECT_EQ(findingOf(std::string(100, '\0') + text).fault, Fault::damaged);
}

}  // namespace
}  // namespace wenlolib::tests
