#include "record/Document.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/ExpectedDocument.h"
#include "support/FailingAllocations.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;

const std::string contentsOfEveryKind[] = {
    "",
    "a",
    "plain text",
    "gr\xC3\xBC\xC3\x9F \xE6\x97\xA5\xE6\x9C\xAC",  // beyond ASCII
    "\xF0\x9F\x98\x80 \xF0\x90\x80\x80",            // beyond the basic plane
    "nul \0 inside\0"s,
    "\0"s,
    "line\nline\r\n\ttab",
    "<markup attribute=\"&amp;\"/> & <",
    std::string(15, 'f'),
    std::string(16, 'g'),
    std::string(17, 'h'),
    std::string(100000, 'i'),
};

class RecordPayload : public InstalledTest {
 protected:
  std::string documentOf(const Text& contents) {
    const auto record = WENLOLIB::initWithContents(contents, "App");
    record->setFileType(2);
    EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
    return world.xml.seen;
  }
};

TEST_F(RecordPayload, IsEncryptedWithRc4UnderTheDigestOfTheDate) {
  for (const std::string& contents : contentsOfEveryKind) {
    ExpectedDocument expected;
    expected.contents = contents;
    EXPECT_EQ(documentOf(contents), expected.text());
  }
}

TEST_F(RecordPayload, IsEncryptedWithTheCyclingXorWhereTheCipherIsRefused) {
  world.faults.failAlways("cipher.rc4");
  for (const std::string& contents : contentsOfEveryKind) {
    ExpectedDocument expected;
    expected.marker = 'X';
    expected.contents = contents;
    EXPECT_EQ(documentOf(contents), expected.text());
  }
}

TEST_F(RecordPayload, ARefusedCipherIsMarkedInEveryLayout) {
  world.faults.failAlways("cipher.rc4");
  for (const bool newTag : {false, true}) {
    const auto record = WENLOLIB::initWithContents("contents", "App");
    record->serOtherInfo(Dictionary{{"NEWTAGTYPE", newTag}});
    EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
    EXPECT_EQ(attributeIn(world.xml.seen, "C"), "X");
    EXPECT_TRUE(verifies(world.xml.seen));
  }
}

TEST_F(RecordPayload, GivesTheContentsBackWithNothingButTheDocument) {
  for (const bool refused : {false, true}) {
    if (refused) world.faults.failAlways("cipher.rc4");
    for (const std::string& contents : contentsOfEveryKind) {
      const std::string document = documentOf(contents);
      EXPECT_EQ(contentsOf(document), contents);
      EXPECT_TRUE(verifies(document));
    }
  }
}

TEST_F(RecordPayload, HasTwoCapitalDigitsForEveryByte) {
  for (const std::string& contents : contentsOfEveryKind) {
    const std::string payload = elementIn(documentOf(contents), "Encrypted");
    EXPECT_EQ(payload.size(), 2 * contents.size());
    EXPECT_EQ(payload.find_first_not_of("0123456789ABCDEF"), std::string::npos);
  }
}

TEST_F(RecordPayload, NullContentsGiveAnEmptyPayload) {
  EXPECT_EQ(elementIn(documentOf(std::nullopt), "Encrypted"), "");
}

TEST_F(RecordPayload, WithoutADateNothingIsEncryptedAndThePayloadIsAllZeros) {
  world.faults.failAlways("calendar.localTime");
  for (const std::string& contents : contentsOfEveryKind) {
    ExpectedDocument expected;
    expected.date = "";
    expected.contents = contents;
    const std::string document = documentOf(contents);
    EXPECT_EQ(document, expected.text());
    EXPECT_EQ(attributeIn(document, "C"), "R");
  }
  EXPECT_EQ(world.journal.count("cipher.rc4"), 0U);
}

TEST_F(RecordPayload, DiffersFromOneSecondToTheNext) {
  const std::string first = documentOf("contents");
  world.clock.time += Seconds(1);
  const std::string second = documentOf("contents");
  EXPECT_NE(elementIn(first, "Encrypted"), elementIn(second, "Encrypted"));
  EXPECT_NE(attributeIn(first, "SUM"), attributeIn(second, "SUM"));
  EXPECT_EQ(contentsOf(second), "contents");
}

TEST(WorkingBuffers, HoldTwoDigitsAByte) {
  for (const std::size_t n : {0U, 1U, 16U, 1000U}) {
    const auto buffers = WorkingBuffers::allocate(n);
    ASSERT_TRUE(buffers);
    EXPECT_NE(buffers->input, nullptr);
    EXPECT_NE(buffers->cipher, nullptr);
    EXPECT_EQ(buffers->digits.size(), 2 * n);
  }
}

TEST(WorkingBuffers, AreRefusedFrom2GiBOnWithoutAskingForMemory) {
  constexpr auto most = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  for (const std::size_t n : {most + 1, std::numeric_limits<std::size_t>::max()}) {
    const CountedAllocations counted;
    EXPECT_FALSE(WorkingBuffers::allocate(n).has_value());
    EXPECT_EQ(counted.seen(), 0);
  }
}

TEST(WorkingBuffers, DoNotCrashForSizesThatTheAddressSpaceCannotHold) {
  for (const std::int32_t n : {1 << 30, (1 << 30) + 1, std::numeric_limits<std::int32_t>::max()}) {
    const FailingAllocations failing(3, FailingAllocations::Span::onwards);
    EXPECT_FALSE(WorkingBuffers::allocate(static_cast<std::size_t>(n)).has_value());
  }
}

TEST(WorkingBuffers, ALackOfAnyOfThemIsALackOfAll) {
  for (const long k : {1, 2, 3}) {
    const FailingAllocations failing(k);
    EXPECT_FALSE(WorkingBuffers::allocate(1000).has_value()) << k;
  }
  const FailingAllocations failing(4);
  EXPECT_TRUE(WorkingBuffers::allocate(1000).has_value());
}

}  // namespace
}  // namespace wenlolib::tests
