#include "record/HeaderValues.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

std::shared_ptr<WENLOLIB> recordWith(const std::optional<Dictionary>& otherInfo) {
  auto record = WENLOLIB::initWithContents("contents", "App");
  record->serOtherInfo(otherInfo);
  return record;
}

TEST(PrinterIdentity, TextsAreHandedOnAsTheyStand) {
  const auto record = recordWith(
      Dictionary{{"DeviceID", " MFG:Orvan;<&> "}, {"SN", "A-1\n"}, {"ROMVER", "\xC3\xA9"}});
  EXPECT_EQ(record->getDevId(), " MFG:Orvan;<&> ");
  EXPECT_EQ(record->getSerialNum(), "A-1\n");
  EXPECT_EQ(record->getRomVersion(), "\xC3\xA9");
}

TEST(PrinterIdentity, WhatIsAbsentIsEmptyAndFalse) {
  for (const auto& otherInfo : {std::optional<Dictionary>(), std::optional(Dictionary{}),
                                std::optional(Dictionary{{"Other", "x"}})}) {
    const auto record = recordWith(otherInfo);
    EXPECT_EQ(record->getDevId(), "");
    EXPECT_EQ(record->getSerialNum(), "");
    EXPECT_EQ(record->getRomVersion(), "");
    EXPECT_FALSE(record->isNewTagTypePrinter());
  }
}

TEST(PrinterIdentity, TextsThatAreNotUtf8CountAsAbsent) {
  const auto record = recordWith(Dictionary{
      {"DeviceID", "d\xFF"}, {"SN", "\xC3"}, {"ROMVER", "\xED\xA0\x80"}, {"NEWTAGTYPE", "Y\xFF"}});
  EXPECT_EQ(record->getDevId() + record->getSerialNum() + record->getRomVersion(), "");
  EXPECT_FALSE(record->isNewTagTypePrinter());
}

TEST(PrinterIdentity, ADictionaryWithoutSerialNumberGivesAnEmptyOne) {
  const auto record = recordWith(Dictionary{{"DeviceID", "d"}, {"ROMVER", "r"}});
  EXPECT_EQ(record->getSerialNum(), "");
  EXPECT_EQ(record->getDevId(), "d");
}

TEST(PrinterIdentity, KeysThatDifferInCaseAreNotFound) {
  const auto record =
      recordWith(Dictionary{{"deviceid", "x"}, {"Sn", "x"}, {"RomVer", "x"}, {"NewTagType", true}});
  EXPECT_EQ(record->getDevId(), "");
  EXPECT_EQ(record->getSerialNum(), "");
  EXPECT_EQ(record->getRomVersion(), "");
  EXPECT_FALSE(record->isNewTagTypePrinter());
}

TEST(PrinterIdentity, ValuesThatAreNotTextCountAsAbsent) {
  const auto record = recordWith(Dictionary{{"DeviceID", 12}, {"SN", true}, {"ROMVER", "\xFF"}});
  EXPECT_EQ(record->getDevId(), "");
  EXPECT_EQ(record->getSerialNum(), "");
  EXPECT_EQ(record->getRomVersion(), "");
}

const Value readAsTrue[] = {
    true,   1,      -1,   2U,       0.5,   "YES",  "yes", "Y",
    "true", "True", "t",  "1",      "2",   "9",    "01",  "007",
    "+1",   "-1",   " 1", "\t\n Y", "-0T", "+00y", "1x",  std::numeric_limits<std::uint64_t>::max(),
};

const Value readAsFalse[] = {
    false,
    0,
    0U,
    0.0,
    "0",
    "NO",
    "no",
    "false",
    "",
    " ",
    "00",
    "+",
    "-",
    "x1",
    "on",
    "ON",
    "+-1",
    "- 1",
    "0 1",
    "0x1",
    "+\u00A0"
    "1",
    "\u3000",
    "\xA0"
    "1",
    Instant(Seconds(1)),
    Value::Data{1},
    Value::Array{true},
    Dictionary{{"a", true}},
};

TEST(NewTagType, IsTheBooleanReadingOfItsEntry) {
  int row = 0;
  for (const Value& value : readAsTrue) {
    EXPECT_TRUE(recordWith(Dictionary{{"NEWTAGTYPE", value}})->isNewTagTypePrinter()) << row;
    ++row;
  }
  row = 0;
  for (const Value& value : readAsFalse) {
    EXPECT_FALSE(recordWith(Dictionary{{"NEWTAGTYPE", value}})->isNewTagTypePrinter()) << row;
    ++row;
  }
}

/// A character beyond ASCII of at most three bytes, in UTF-8.
std::string encoded(char32_t character) {
  const auto byte = [](char32_t bits) { return static_cast<char>(bits); };
  const char last = byte(0x80 | (character & 0x3F));
  if (character < 0x800) return {byte(0xC0 | (character >> 6)), last};
  return {byte(0xE0 | (character >> 12)), byte(0x80 | ((character >> 6) & 0x3F)), last};
}

TEST(NewTagType, WhiteSpaceBeforeItsTextIsThatOfFoundation) {
  std::vector<char32_t> found;
  const auto mayStandBefore = [](const std::string& text) {
    return hasNewTagType(Dictionary{{"NEWTAGTYPE", text + " " + text + "-01"}});
  };
  for (char32_t character = 0x80; character <= 0xFFFF; ++character) {
    if (mayStandBefore(encoded(character))) found.push_back(character);
  }
  const std::vector<char32_t> known = {0x0085, 0x00A0, 0x1680, 0x2000, 0x2001, 0x2002, 0x2003,
                                       0x2004, 0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A,
                                       0x2028, 0x2029, 0x202F, 0x205F, 0x3000};
  EXPECT_EQ(found, known);
}

}  // namespace
}  // namespace wenlolib::tests
