// The library's configuration file, on the disk.
#include <sys/stat.h>

#include <filesystem>
#include <regex>

#include "endtoend/ConfigurationFile.h"
#include "support/ExpectedDocument.h"

namespace wenlolib::tests {
namespace {

class Configuration : public ConfigurationFileTest {};

TEST_F(Configuration, IsMadeOnceAndReadFromThenOn) {
  const std::string first = identifier();
  const std::regex form("\\{[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\}");
  EXPECT_TRUE(std::regex_match(first, form)) << first;
  EXPECT_EQ(world.configuration(), (Dictionary{{"WENLIBUUID", first}}));
  EXPECT_EQ(modeOf(path()), 0666U);
  EXPECT_TRUE(readFile(path()).starts_with("<?xml"));
  const ino_t before = file();
  EXPECT_EQ(identifier(), first);
  EXPECT_EQ(file(), before);
  ASSERT_TRUE(recordAs(RecordKind::application, "contents"));
  EXPECT_EQ(elementIn(readFile(world.real(marchFile)), "ID"), first);
}

TEST_F(Configuration, IsReadOnceByARecord) {
  write({{"WENLIBUUID", "first"}});
  const auto record = WENLOLIB::init();
  EXPECT_EQ(record->getWENLOLIBId(), "first");
  write({{"WENLIBUUID", "second"}});
  EXPECT_EQ(record->getWENLOLIBId(), "first");
  EXPECT_EQ(identifier(), "second");
}

TEST_F(Configuration, APlaceholderIsReplaced) {
  write({{"WENLIBUUID", "NOTDETERMINED"}, {"other", "kept"}});
  const std::string made = identifier();
  EXPECT_EQ(made.size(), 38U);
  EXPECT_EQ(world.configuration(), (Dictionary{{"WENLIBUUID", made}, {"other", "kept"}}));
  EXPECT_EQ(modeOf(path()), 0666U);
}

TEST_F(Configuration, AnyOtherTextStandsAndNothingIsWritten) {
  for (const char* text : {"notdetermined", "NOTDETERMINED ", "", "x"}) {
    write({{"WENLIBUUID", text}});
    ASSERT_EQ(::chmod(path().c_str(), 0640), 0);
    const std::string before = readFile(path());
    const ino_t number = file();
    EXPECT_EQ(identifier(), text);
    EXPECT_EQ(readFile(path()), before);
    EXPECT_EQ(file(), number);
    EXPECT_EQ(modeOf(path()), 0640U);
  }
}

TEST_F(Configuration, AValueThatIsNotTextIsReplaced) {
  for (const Value& value : {Value(1), Value(true), Value(Value::Array{"x"})}) {
    write({{"WENLIBUUID", value}, {"other", 1}});
    const std::string made = identifier();
    EXPECT_EQ(made.size(), 38U);
    EXPECT_EQ(world.configuration().at("WENLIBUUID"), Value(made));
    EXPECT_EQ(world.configuration().size(), 2U);
  }
}

TEST_F(Configuration, IsReadThroughALink) {
  writeFile(world.root / "elsewhere", *world.services.propertyLists->asXml({{"WENLIBUUID", "x"}}));
  std::filesystem::create_symlink(world.root / "elsewhere", path());
  EXPECT_EQ(identifier(), "x");
}

TEST_F(Configuration, WithoutItsFolderEveryRecordHasAnIdentifierOfItsOwn) {
  std::filesystem::remove_all(world.real(configurationFolder));
  for (const char* contents : {"first", "second"}) {
    EXPECT_TRUE(WENLOLIB::initWithContents(contents, "App")->writeAppInfo());
  }
  const std::string first = elementIn(readFile(world.real(printerLog(1))), "ID");
  const std::string second = elementIn(readFile(world.real(printerLog(2))), "ID");
  EXPECT_EQ(first.size(), 38U) << first;
  EXPECT_EQ(second.size(), 38U) << second;
  EXPECT_NE(first, second);
  EXPECT_FALSE(std::filesystem::exists(world.real(configurationFolder)));
}

TEST_F(Configuration, WithNoKnownFolderNothingIsWrittenAnywhere) {
  world.memory.user.container = {true, std::nullopt};
  EXPECT_EQ(identifier().size(), 38U);
  EXPECT_EQ(namesIn(world.root.path()), (std::vector<std::string>{"Applications", "Users"}));
}

}  // namespace
}  // namespace wenlolib::tests
