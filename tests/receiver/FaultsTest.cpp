// Faults, one on each line: the edit of a sound document, and what the receiver reports.
#include <gtest/gtest.h>

#include "receiver/Samples.h"

namespace wenlolib::tests {
namespace {

using receiver::Fault;
using receiver::Layer;
using receiver::Layout;

struct Edit {
  std::string old, replacement;
  Layer layer;
  std::string at;       // the fault is at the first of these bytes in the edited document,
  std::size_t further;  // or this many bytes after it
  std::string field;
  Layout layout = Layout::application;
};

const std::string version = "<Version>3.1</Version>";
const std::string osVersion = "<OSVersion>M.10.15.7</OSVersion>";

/// After the edit, the content gets a new checksum, so that nothing else is wrong.
const std::vector<Edit>& edits() {
  constexpr Layout older = Layout::printerOlderTag;
  static const std::vector<Edit> all = {
      // Not well formed.
      {"</Date>", "</date>", Layer::xml, "date>", 0, "Date"},
      {"<Version>", "<?ersion>", Layer::xml, "<?", 1, "Version"},
      {"<Date>", "<<Date>", Layer::xml, "<<", 1, "Date"},
      {"C=\"R\"", "C=R", Layer::xml, "C=R", 2, "C"},
      {"C=\"R\"", "C=\"R", Layer::xml, "C=\"R>", 4, "C"},
      {"C=\"R\"", "C=\"<\"", Layer::xml, "=\"<", 2, "C"},
      {"C=\"R\"", "C=\"&\"", Layer::xml, "&", 1, "C"},
      {"</Encrypted>", "", Layer::xml, "</OrvanQXApplication>", 2, "Encrypted"},
      {"</PLI>", "</PLI", Layer::xml, "</PLI<", 5, "PLI", older},
      {"</Printer>", "<Printer>", Layer::xml, "</PLI><Printer>", 7, "Printer", older},
      // White space.
      {"<Version>", "\n<Version>", Layer::whiteSpace, "\n", 0, "Version"},
      {"</Date>", "</Date>\r\n  ", Layer::whiteSpace, "\r", 0, "Locale"},
      {"</Encrypted>", "</Encrypted>\t", Layer::whiteSpace, "\t", 0, "OrvanQXApplication"},
      {"<Printer>", "<Printer> ", Layer::whiteSpace, "<Printer> ", 9, "DeviceID", older},
      {"</PLI>", "</PLI> ", Layer::whiteSpace, "</PLI> ", 6, "Printer", older},
      // Layout.
      {"<Date>", "<Date >", Layer::layout, "<Date >", 5, "Date"},
      {"</Date>", "</Date >", Layer::layout, "</Date >", 6, "Date"},
      {"<Encrypted C", "<Encrypted  C", Layer::layout, "  C", 1, "C"},
      {"C=\"R\">", "C=\"R\" >", Layer::layout, "\"R\" >", 3, "C"},
      {"C=\"R\"", "C='R'", Layer::layout, "'R", 0, "C"},
      {"C=\"R\"", "C=\">\"", Layer::layout, "=\">\"", 2, "C"},
      {"C=\"R\"", "c=\"R\"", Layer::layout, "c=\"R", 0, "C"},
      {" C=\"R\"", "", Layer::layout, "<Encrypted>", 10, "C"},
      {"C=\"R\"", "C=\"R\" D=\"\"", Layer::layout, " D=", 0, "C"},
      {"<ID>", "<ID a=\"b\">", Layer::layout, " a=", 0, "ID"},
      {version, "", Layer::layout, "<OSV", 1, "Version"},
      {version, version + version, Layer::layout, version + version, 23, "OSVersion"},
      {version + osVersion, osVersion + version, Layer::layout, "<OSV", 1, "Version"},
      {version, version + "<New></New>", Layer::layout, "<New", 1, "OSVersion"},
      {"</Encrypted>", "</Encrypted><b></b>", Layer::layout, "<b>", 1, "OrvanQXApplication"},
      {"</Encrypted>", "</Encrypted>x", Layer::layout, "x</", 0, "OrvanQXApplication"},
      {"<Version>", "<!-- --><Version>", Layer::layout, "<!--", 1, "Version"},
      {"3.1", "<!-- -->3.1", Layer::layout, "<!--", 1, "Version"},
      {"3.1", "<![CDATA[3.1]]>", Layer::layout, "<![", 1, "Version"},
      {"3.1", "3<?pi?>1", Layer::layout, "<?", 1, "Version"},
      {"3.1", "<b>3.1</b>", Layer::layout, "<b>", 1, "Version"},
      {"<SN>QX200-0004711</SN>", "<SN/>", Layer::layout, "<SN/", 3, "SN", older},
      {"QX200-0004711", "</SN><SN>x", Layer::layout, "<SN>x", 1, "ROMVER", older},
      {"<Printer>", "", Layer::xml, "<DeviceID", 1, "Printer", older},
      {"<ROMVER>2.14</ROMVER>", "", Layer::layout, "<PLI", 1, "ROMVER", older},
      // Marker, digits.
      {"C=\"R\"", "C=\"Z\"", Layer::cipherMarker, "C=\"Z", 3, "C"},
      {"C=\"R\"", "C=\"\"", Layer::cipherMarker, "C=\"\"", 3, "C"},
      {"C=\"R\"", "C=\"RX\"", Layer::cipherMarker, "C=\"RX", 3, "C"},
      {"C=\"R\"", "C=\"&#82;\"", Layer::cipherMarker, "&#82", 0, "C"},
      {"</Encrypted>", "0</Encrypted>", Layer::hexadecimal, "</Encrypted>", 0, "Encrypted"},
      {"</Encrypted>", "0a</Encrypted>", Layer::hexadecimal, "0a<", 1, "Encrypted"},
      {"</Encrypted>", "G</Encrypted>", Layer::hexadecimal, "G<", 0, "Encrypted"},
      {"</PLI>", "\n</PLI>", Layer::hexadecimal, "\n", 0, "PLI", older},
      {"<PLI C=\"R\">", "<PLI C=\"R\">&#48;0", Layer::hexadecimal, "&#", 0, "PLI", older},
  };
  return all;
}

TEST(ReceiverFaults, EditsOfTheContent) {
  for (const Edit& edit : edits()) {
    const std::string text = edited(edit.layout, edit.old, edit.replacement);
    const Finding expected{edit.layer, Fault::damaged, text.find(edit.at) + edit.further,
                           edit.field};
    EXPECT_EQ(findingOf(text), expected) << edit.old << " -> " << edit.replacement;
    const receiver::Report report = receiver::examine(text);
    EXPECT_FALSE(report.document);
    EXPECT_NE(report.verdict.explanation, "");
    ASSERT_TRUE(report.found) << edit.old << " -> " << edit.replacement;
    EXPECT_EQ(report.found->layout, edit.layout);
    EXPECT_EQ(report.found->value("Locale"), "en_US");
  }
}

struct Around {
  std::string before, after;
  Layer layer;
  std::size_t offset;
  std::string field;
};

TEST(ReceiverFaults, SomethingAroundTheDocument) {
  const std::string text = sample(Layout::application).text();
  const std::size_t end = text.size();
  const std::vector<Around> all = {
      {"", "\n", Layer::whiteSpace, end, ""},
      {" ", "", Layer::whiteSpace, 0, "OrvanQXApplication"},
      {"", "<!-- -->", Layer::layout, end, ""},
      {"<?xml version=\"1.0\" encoding=\"UTF-16\"?>", "", Layer::layout, 1, ""},
      {"<?xml version=\"1.0\"?><?xml-stylesheet?>", "", Layer::layout, 22, ""},
      {"<?xml version=\"1.0\"?>\n", "", Layer::whiteSpace, 21, "OrvanQXApplication"},
      {"\xEF\xBB\xBF", "", Layer::layout, 0, ""},
      {"<!DOCTYPE OrvanQXApplication>", "", Layer::layout, 1, ""},
      {"", "x", Layer::xml, end, ""},
      {"", std::string(1, '\0'), Layer::xml, end, ""},
      {"", "<", Layer::xml, end, ""},
      {"", text, Layer::xml, end, ""},
      {"x", "", Layer::xml, 0, ""},
  };
  for (const Around& around : all) {
    EXPECT_EQ(findingOf(around.before + text + around.after),
              (Finding{around.layer, Fault::damaged, around.offset, around.field}))
        << around.before << "..." << around.after;
  }
}

TEST(ReceiverFaults, TheChecksumsForm) {
  const std::string text = sample(Layout::printer).text();
  const std::size_t at = text.find("SUM=\"") + 5;
  const std::string sum = attributeIn(text, "SUM");
  const auto with = [&](const std::string& other) { return replaced(text, sum, other); };
  const auto hexadecimal = [&](std::size_t further) {
    return Finding{Layer::hexadecimal, Fault::damaged, at + further, "SUM"};
  };
  EXPECT_EQ(findingOf(with("")), hexadecimal(0));
  EXPECT_EQ(findingOf(with(sum.substr(1))), hexadecimal(31));
  EXPECT_EQ(findingOf(with(sum + "0")), hexadecimal(32));
  EXPECT_EQ(findingOf(with(sum.substr(0, 31) + "g")), hexadecimal(31));
  EXPECT_EQ(findingOf(with("a" + sum.substr(1))), hexadecimal(0));
  EXPECT_EQ(findingOf(replaced(text, "\"" + sum + "\"", "'" + sum + "'")),
            (Finding{Layer::layout, Fault::damaged, at - 1, "SUM"}));
}

TEST(ReceiverFaults, AnotherContentIsAlteredAndCanStillBeRead) {
  struct Alteration {
    std::string old, replacement;
  };
  for (const auto& [old, replacement] : std::vector<Alteration>{
           {"3.1", "3.2"}, {"en_US", ""}, {"{ID}", "{I&amp;D}"}, {"M.10", "&lt;M.10"}}) {
    const std::string text = replaced(sample(Layout::application).text(), old, replacement);
    EXPECT_EQ(findingOf(text),
              (Finding{Layer::checksum, Fault::altered, text.find("SUM=\"") + 5, "SUM"}));
    const receiver::Report report = receiver::examine(text);
    ASSERT_TRUE(report.document);
    EXPECT_EQ(receiver::contentsOf(*report.document), "some contents");
  }
}

TEST(ReceiverFaults, AnAlteredDocumentShowsBothChecksums) {
  const std::string text = sample(Layout::application).text();
  const std::string altered = replaced(text, "3.1", "3.2");
  const std::string content =
      altered.substr(altered.find('>') + 1, altered.rfind("</") - altered.find('>') - 1);
  EXPECT_EQ(receiver::examine(altered).verdict.explanation,
            "The checksum is " + attributeIn(text, "SUM") + ", but that of the content is " +
                checksumOf(content) + ".");
}

TEST(ReceiverFaults, WhiteSpaceIsSaidToBeWhereItIs) {
  const std::string text = sample(Layout::application).text();
  const auto explanation = [](const std::string& bytes) {
    return receiver::examine(bytes).verdict.explanation;
  };
  EXPECT_EQ(explanation(text + "\n"), "There is white space after the end of the document.");
  EXPECT_EQ(explanation("\n" + text), "There is white space before the document.");
  EXPECT_EQ(explanation(replaced(text, "<Date>", "\n<Date>")),
            "There is white space between the parts of the document.");
  EXPECT_EQ(explanation("\xEF\xBB\xBF" + text), "There is a byte order mark before the document.");
}

TEST(ReceiverFaults, OtherDocumentsWithAWrapperAreDamagedOnes) {
  EXPECT_EQ(findingOf("<OrvanQXApplication/>"),
            (Finding{Layer::layout, Fault::damaged, 19, "SUM"}));
  const std::string exchanged =
      replaced(sample(Layout::printerOlderTag).text(), "<OrvanQXPrinter", "<OrvanQXApplication");
  EXPECT_EQ(findingOf(exchanged).layer, Layer::xml);
}

}  // namespace
}  // namespace wenlolib::tests
