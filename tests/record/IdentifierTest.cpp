#include "record/Identifier.h"

#include <gtest/gtest.h>

#include "record/IdentifierFile.h"

namespace wenlolib::tests {
namespace {

TEST(StoredIdentifier, IsAnyTextButTheExactPlaceholder) {
  const struct {
    std::optional<Dictionary> configuration;
    Text result;
  } table[] = {
      {std::nullopt, std::nullopt},
      {Dictionary{}, std::nullopt},
      {Dictionary{{"WENLIBUUID", "NOTDETERMINED"}}, std::nullopt},
      {Dictionary{{"WENLIBUUID", "notdetermined"}}, "notdetermined"},
      {Dictionary{{"WENLIBUUID", "NOTDETERMINED "}}, "NOTDETERMINED "},
      {Dictionary{{"WENLIBUUID", "{ID}"}}, "{ID}"},
      {Dictionary{{"WENLIBUUID", ""}}, ""},
      {Dictionary{{"wenlibuuid", "{ID}"}}, std::nullopt},
      {Dictionary{{"WENLIBUUID", 5}}, std::nullopt},
      {Dictionary{{"WENLIBUUID", Instant()}}, std::nullopt},
      {Dictionary{{"WENLIBUUID", "\xFF"}}, std::nullopt},
  };
  for (const auto& row : table) EXPECT_EQ(storedIdentifier(row.configuration), row.result);
}

class Identifier : public IdentifierFileTest {};

TEST_F(Identifier, IsMadeAndStoredWhereThereIsNoFile) {
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", firstMade}}));
  EXPECT_EQ(world.files.at(identifierPath)->mode, 0666U);
}

TEST_F(Identifier, HasBracesAround36Characters) {
  const std::string made = ofNewRecord();
  EXPECT_EQ(made.size(), 38U);
  EXPECT_EQ(made.front(), '{');
  EXPECT_EQ(made.back(), '}');
}

TEST_F(Identifier, EveryLaterRecordReadsTheSame) {
  EXPECT_EQ(ofNewRecord(), firstMade);
  world.journal.clear();
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(world.journal.count("uuids.create"), 0U);
  EXPECT_EQ(world.journal.count("files."), 0U);
}

TEST_F(Identifier, AFileThatCannotBeReadIsReplacedWhole) {
  world.files.addFile(identifierPath, "no property list", 0600);
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", firstMade}}));
  EXPECT_EQ(world.files.at(identifierPath)->mode, 0666U);
}

TEST_F(Identifier, AddedToAFileItKeepsEveryOtherEntry) {
  const Dictionary others = {{"a", 1}, {"b", Value::Array{true, 2.5}}, {"wenlibuuid", "x"}};
  world.propertyLists.add(identifierPath, others, 0600);
  EXPECT_EQ(ofNewRecord(), firstMade);
  Dictionary expected = others;
  expected.emplace("WENLIBUUID", firstMade);
  EXPECT_EQ(stored(), expected);
  EXPECT_EQ(world.files.at(identifierPath)->mode, 0666U);
}

// A file with values that were left out would lose them if it were written again.

TEST_F(Identifier, OneInAFileWithValuesThatWereLeftOutIsUsed) {
  world.propertyLists.partial = true;
  world.propertyLists.add(identifierPath, {{"WENLIBUUID", "{ID}"}, {"other", 1}});
  EXPECT_EQ(ofNewRecord(), "{ID}");
  EXPECT_EQ(world.journal.count("files.writeAtomically"), 0U);
}

TEST_F(Identifier, IsNotStoredInAFileWithValuesThatWereLeftOut) {
  world.propertyLists.partial = true;
  for (const Dictionary& entries :
       {Dictionary{{"other", 1}}, Dictionary{{"WENLIBUUID", "NOTDETERMINED"}}}) {
    world.propertyLists.add(identifierPath, entries, 0600);
    const std::string first = ofNewRecord();
    EXPECT_EQ(first.size(), 38U);
    EXPECT_NE(ofNewRecord(), first)
        << "a new record must get a new identifier, as after a failed save";
    EXPECT_EQ(stored(), entries);
    EXPECT_EQ(world.files.at(identifierPath)->mode, 0666U)
        << "the permissions must be set, as after a failed write";
    EXPECT_EQ(world.journal.count("files.writeAtomically"), 0U);
  }
}

TEST_F(Identifier, ReplacesThePlaceholder) {
  world.propertyLists.add(identifierPath, {{"WENLIBUUID", "NOTDETERMINED"}, {"a", 1}});
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", firstMade}, {"a", 1}}));
}

TEST_F(Identifier, ReplacesAValueThatIsNotText) {
  for (const Value& value : {Value(5), Value(Instant()), Value(Value::Data{1})}) {
    world.propertyLists.add(identifierPath, {{"WENLIBUUID", value}});
    const std::string made = ofNewRecord();
    EXPECT_EQ(made.size(), 38U);
    EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", made}}));
  }
}

TEST_F(Identifier, KeepsAStoredTextAndDoesNotWrite) {
  for (const char* kept : {"{ID}", "notdetermined", ""}) {
    world.propertyLists.add(identifierPath, {{"WENLIBUUID", kept}}, 0600);
    EXPECT_EQ(ofNewRecord(), kept);
    EXPECT_EQ(world.files.at(identifierPath)->mode, 0600U);
  }
  EXPECT_EQ(world.journal.count("files."), 0U);
  EXPECT_EQ(world.journal.count("uuids.create"), 0U);
}

TEST_F(Identifier, ASecondCallOnOneRecordTouchesNoFile) {
  const auto record = WENLOLIB::init();
  EXPECT_EQ(record->getWENLOLIBId(), firstMade);
  world.propertyLists.add(identifierPath, {{"WENLIBUUID", "{CHANGED}"}});
  world.journal.clear();
  EXPECT_EQ(record->getWENLOLIBId(), firstMade);
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(Identifier, AStoredEmptyTextIsCachedToo) {
  world.propertyLists.add(identifierPath, {{"WENLIBUUID", ""}});
  const auto record = WENLOLIB::init();
  EXPECT_EQ(record->getWENLOLIBId(), "");
  world.journal.clear();
  EXPECT_EQ(record->getWENLOLIBId(), "");
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(Identifier, IsEmptyWhereThePlatformHasNoneToGive) {
  world.faults.failAlways("uuids.create");
  EXPECT_EQ(ofNewRecord(), "");
  EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(Identifier, OneThatThePlatformDidNotGiveIsAskedForAgainByTheSameRecord) {
  world.faults.fail("uuids.create", 1);
  const auto record = WENLOLIB::init();
  EXPECT_EQ(record->getWENLOLIBId(), "");
  EXPECT_EQ(record->getWENLOLIBId(), firstMade);
  EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", firstMade}}));
}

}  // namespace
}  // namespace wenlolib::tests
