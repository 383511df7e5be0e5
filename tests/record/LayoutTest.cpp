// The three layouts, byte by byte, through the record.
#include <gtest/gtest.h>

#include "support/ExpectedDocument.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

class Layouts : public InstalledTest {
 protected:
  /// The document of a record, as it is given to the XML service.
  std::string documentOf(std::uint32_t fileType, const std::optional<Dictionary>& otherInfo = {},
                         std::uint32_t option = 0) {
    const auto record = WENLOLIB::initWithContents("contents", "App", option);
    record->setFileType(fileType);
    record->serOtherInfo(otherInfo);
    EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
    return world.xml.seen;
  }
};

const Dictionary identity = {{"DeviceID", "MFG:Orvan;MDL:X"}, {"SN", "A-1"}, {"ROMVER", "1.02"}};

Dictionary withTag(Dictionary dictionary, const Value& tag) {
  dictionary.insert_or_assign("NEWTAGTYPE", tag);
  return dictionary;
}

TEST_F(Layouts, ApplicationUsage) {
  ExpectedDocument expected;
  expected.contents = "contents";
  EXPECT_EQ(documentOf(2), expected.text());
}

TEST_F(Layouts, ApplicationUsageIgnoresPrinterIdentity) {
  ExpectedDocument expected;
  expected.contents = "contents";
  EXPECT_EQ(documentOf(2, withTag(identity, true)), expected.text());
}

TEST_F(Layouts, PrinterLogWithTheNewTagType) {
  ExpectedDocument expected;
  expected.wrapper = "OrvanQX2Application";
  expected.version = "2.1";
  expected.contents = "contents";
  for (const Value& tag : {Value(true), Value(1), Value("YES")}) {
    EXPECT_EQ(documentOf(1, withTag(identity, tag)), expected.text());
  }
}

TEST_F(Layouts, PrinterLogWithTheOlderTagType) {
  ExpectedDocument expected;
  expected.wrapper = "OrvanQXPrinter";
  expected.version = "2.1";
  expected.printer = {"MFG:Orvan;MDL:X", "A-1", "1.02"};
  expected.contents = "contents";
  EXPECT_EQ(documentOf(1, identity), expected.text());
  EXPECT_EQ(documentOf(1, withTag(identity, "NO")), expected.text());
}

TEST_F(Layouts, PrinterLogWithoutASerialNumberKeepsItsEmptyElement) {
  ExpectedDocument expected;
  expected.wrapper = "OrvanQXPrinter";
  expected.version = "2.1";
  expected.printer = {"d", "", "r"};
  expected.contents = "contents";
  EXPECT_EQ(documentOf(1, Dictionary{{"DeviceID", "d"}, {"ROMVER", "r"}}), expected.text());
}

TEST_F(Layouts, PrinterLogWithoutAnyIdentityHasEmptyElements) {
  ExpectedDocument expected;
  expected.wrapper = "OrvanQXPrinter";
  expected.version = "2.1";
  expected.printer = {"", "", ""};
  expected.contents = "contents";
  const std::string document = documentOf(1);
  EXPECT_EQ(document, expected.text());
  EXPECT_NE(document.find("<DeviceID></DeviceID><SN></SN><ROMVER></ROMVER><PLI C=\"R\">"),
            std::string::npos);
}

TEST_F(Layouts, EveryUnknownValueGivesAnEmptyElement) {
  world.system.answers.clear();
  world.bundles.own = std::nullopt;
  world.user.localeSetting = std::nullopt;
  world.propertyLists.add(identifierPath, {{"WENLIBUUID", ""}});
  ExpectedDocument expected;
  expected.version = expected.osVersion = expected.locale = expected.identifier = "";
  expected.contents = "contents";
  EXPECT_EQ(documentOf(2), expected.text());
}

TEST_F(Layouts, ValuesGoInWithoutEscaping) {
  world.user.localeSetting = "a&b<c>\"d'";
  ExpectedDocument expected;
  expected.locale = "a&b<c>\"d'";
  expected.contents = "contents";
  EXPECT_EQ(documentOf(2), expected.text());
}

TEST_F(Layouts, TheLocaleFollowsTheOption) {
  EXPECT_EQ(elementIn(documentOf(2, {}, 1), "Locale"), "fr_FR");
  EXPECT_EQ(elementIn(documentOf(2, {}, 2), "Locale"), "en_US");
  EXPECT_EQ(elementIn(documentOf(2, {}, 3), "Locale"), "");
}

TEST_F(Layouts, NoWhiteSpaceStandsBetweenElements) {
  for (const std::uint32_t fileType : {1U, 2U}) {
    const std::string document = documentOf(fileType);
    EXPECT_EQ(document.front(), '<');
    EXPECT_EQ(document.back(), '>');
    for (const char* gap : {"> <", ">\n", "\n<", ">\t<"}) {
      EXPECT_EQ(document.find(gap), std::string::npos);
    }
  }
}

TEST_F(Layouts, EveryDocumentVerifiesAndGivesItsContentsBack) {
  for (const std::uint32_t fileType : {1U, 2U}) {
    for (const bool newTag : {false, true}) {
      const std::string document = documentOf(fileType, withTag(identity, newTag));
      EXPECT_TRUE(verifies(document));
      EXPECT_EQ(contentsOf(document), "contents");
    }
  }
}

TEST_F(Layouts, TheRunOfDigitsIsThePayload) {
  for (const std::uint32_t fileType : {1U, 2U}) {
    const std::string document = documentOf(fileType);
    const platform::DigitRun run = world.xml.seenDigits;
    const std::string name = fileType == 1 ? "PLI" : "Encrypted";
    EXPECT_EQ(document.substr(run.offset, run.length), elementIn(document, name));
    EXPECT_EQ(run.length, 16U);
  }
}

}  // namespace
}  // namespace wenlolib::tests
