#include <gtest/gtest.h>

#include <string>

#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

TEST(Record, BeginsAsAPrinterLogWithoutContentsAndName) {
  const auto record = WENLOLIB::init();
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->contents(), std::nullopt);
  EXPECT_EQ(record->applicationName(), std::nullopt);
  EXPECT_EQ(record->fileType(), 1U);
}

TEST(Record, KeepsContentsAndName) {
  const auto record = WENLOLIB::initWithContents("contents", "App", 5);
  EXPECT_EQ(record->contents(), Text("contents"));
  EXPECT_EQ(record->applicationName(), Text("App"));
  EXPECT_EQ(record->fileType(), 1U);
}

TEST(Record, ContentsAloneLeaveTheNameNull) {
  const auto record = WENLOLIB::initWithContents("contents");
  EXPECT_EQ(record->contents(), Text("contents"));
  EXPECT_EQ(record->applicationName(), std::nullopt);
  EXPECT_EQ(record->fileType(), 1U);
}

TEST(Record, TakesNullAndEmptyTexts) {
  const auto record = WENLOLIB::initWithContents(std::nullopt, "");
  EXPECT_EQ(record->contents(), std::nullopt);
  EXPECT_EQ(record->applicationName(), Text(""));
}

TEST(Record, TakesOnlyFileTypesOneAndTwo) {
  const auto record = WENLOLIB::init();
  for (const std::uint32_t fileType : {0U, 3U, 4U, 257U, 0xFFFFFFFFU}) {
    record->setFileType(fileType);
    EXPECT_EQ(record->fileType(), 1U) << fileType;
  }
  record->setFileType(2);
  EXPECT_EQ(record->fileType(), 2U);
  for (const std::uint32_t fileType : {0U, 3U, 0xFFFFFFFFU}) {
    record->setFileType(fileType);
    EXPECT_EQ(record->fileType(), 2U) << fileType;
  }
  record->setFileType(1);
  EXPECT_EQ(record->fileType(), 1U);
}

TEST(Record, SettingBytesThatAreNotUtf8ClearsWhatWasThere) {
  const auto record = WENLOLIB::initWithContents("contents", "App");
  record->setContents("\xFF");
  EXPECT_EQ(record->contents(), std::nullopt);
  EXPECT_EQ(record->applicationName(), Text("App"));
  record->setApplicationName("\xC3");
  EXPECT_EQ(record->applicationName(), std::nullopt);
}

TEST(Record, SettingTheTextsThatItHoldsKeepsThem) {
  const auto record = WENLOLIB::initWithContents("contents", "App");
  record->setContents(record->contents());
  record->setApplicationName(record->applicationName());
  EXPECT_EQ(record->contents(), Text("contents"));
  EXPECT_EQ(record->applicationName(), Text("App"));
}

TEST(Record, NullClearsATextAndAnotherReplacesIt) {
  const auto record = WENLOLIB::initWithContents("contents", "App");
  record->setContents(std::nullopt);
  record->setApplicationName(std::nullopt);
  EXPECT_EQ(record->contents(), std::nullopt);
  EXPECT_EQ(record->applicationName(), std::nullopt);
  record->setContents("other");
  EXPECT_EQ(record->contents(), Text("other"));
}

TEST(Record, BytesThatAreNotTextCountAsNull) {
  const auto record = WENLOLIB::initWithContents("\xFF", "\xC3");
  EXPECT_EQ(record->contents(), std::nullopt);
  EXPECT_EQ(record->applicationName(), std::nullopt);
  record->setContents("contents");
  record->setContents("\xED\xA0\x80");
  EXPECT_EQ(record->contents(), std::nullopt);
}

TEST(Record, IsIndependentOfTheHostsOwnTexts) {
  std::string contents = "contents";
  std::string name = "App";
  Dictionary otherInfo = {{"SN", "A-1"}};
  const auto record = WENLOLIB::initWithContents(contents, name);
  record->serOtherInfo(otherInfo);
  contents = "changed";
  name.clear();
  otherInfo.clear();
  EXPECT_EQ(record->contents(), Text("contents"));
  EXPECT_EQ(record->applicationName(), Text("App"));
  EXPECT_EQ(record->getSerialNum(), "A-1");
}

TEST(Record, WhatItHandsOutOutlivesIt) {
  auto record = WENLOLIB::initWithContents(std::string(100, 'c'), std::string(100, 'n'));
  const Text contents = record->contents();
  const Text name = record->applicationName();
  record.reset();
  EXPECT_EQ(contents, Text(std::string(100, 'c')));
  EXPECT_EQ(name, Text(std::string(100, 'n')));
}

TEST(Record, ANullDictionaryKeepsTheOneSetEarlier) {
  const auto record = WENLOLIB::init();
  record->serOtherInfo(Dictionary{{"SN", "A-1"}});
  record->serOtherInfo(std::nullopt);
  EXPECT_EQ(record->getSerialNum(), "A-1");
  record->serOtherInfo(Dictionary{{"DeviceID", "d"}});
  EXPECT_EQ(record->getSerialNum(), "");
  EXPECT_EQ(record->getDevId(), "d");
}

class RecordOption : public InstalledTest {};

// Only the mode in the option word can be seen, and modes 0 and 2 look the same.
TEST_F(RecordOption, ChoosesTheUsersLocaleUnlessGivenAndByItsLowFourBits) {
  EXPECT_EQ(WENLOLIB::init()->getLocale(), "en_US");
  EXPECT_EQ(WENLOLIB::initWithContents("c")->getLocale(), "en_US");
  EXPECT_EQ(WENLOLIB::initWithContents("c", "n")->getLocale(), "en_US");
  EXPECT_EQ(WENLOLIB::initWithContents("c", "n", 0xABCDEF01U)->getLocale(), "fr_FR");
  EXPECT_EQ(WENLOLIB::initWithContents("c", "n", 0xABCDEF03U)->getLocale(), "");
}

TEST_F(RecordOption, BuildingARecordAsksThePlatformNothing) {
  const auto record = WENLOLIB::initWithContents("c", "n", 1);
  record->setFileType(2);
  record->serOtherInfo(Dictionary{});
  EXPECT_TRUE(world.journal.lines().empty());
}

}  // namespace
}  // namespace wenlolib::tests
