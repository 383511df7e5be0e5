// A rewrite of the configuration file keeps its other entries as they are.
#include "endtoend/BadFiles.h"
#include "endtoend/ConfigurationFile.h"

namespace wenlolib::tests {
namespace {

class ConfigurationEntries : public ConfigurationFileTest {};

/// One entry of each type, and numbers at their limits.
Dictionary oneOfEach() {
  return {{"true", true},
          {"false", false},
          {"most", std::int64_t{9223372036854775807}},
          {"least", std::int64_t{-9223372036854775807 - 1}},
          {"real", 0.1},
          {"small real", 5e-324},
          {"text", "Größe <&> \xF0\x9D\x84\x9E \"'\n\tend "},
          {"empty", ""},
          {"date", dateOf(1969, 12, 31, 23, 59, 59)},
          {"data", Value::Data{0, 1, 254, 255}},
          {"array", Value::Array{1, "two", Value::Array{}, Dictionary{}}},
          {"dictionary", Dictionary{{"", "empty key"}, {"<key>", Value::Data{}}}}};
}

TEST_F(ConfigurationEntries, OtherEntriesKeepValueAndType) {
  write(oneOfEach());
  ASSERT_EQ(world.configuration(), oneOfEach());
  const std::string made = identifier();
  Dictionary expected = oneOfEach();
  expected.insert_or_assign("WENLIBUUID", Value(made));
  EXPECT_EQ(world.configuration(), expected);
}

TEST_F(ConfigurationEntries, EntriesOfABinaryFileKeepValueAndType) {
  using namespace std::string_literals;
  // Seven keys, then their values: true, 300, -1, 1.5, a date 60 s after 2001, data, "ß" in UTF-16.
  writeFile(path(),
            binaryPropertyList({"\xD7\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C\x0D\x0E"s,
                                "\x51"
                                "a",
                                "\x51"
                                "b",
                                "\x51"
                                "c",
                                "\x51"
                                "d",
                                "\x51"
                                "e",
                                "\x51"
                                "f",
                                "\x51"
                                "g",
                                "\x09", "\x11\x01\x2C", "\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF",
                                "\x23\x3F\xF8\0\0\0\0\0\0"s, "\x33\x40\x4E\0\0\0\0\0\0"s,
                                "\x42\0\xFF"s, "\x61\0\xDF"s}));
  Dictionary expected = {{"a", true},
                         {"b", 300},
                         {"c", -1},
                         {"d", 1.5},
                         {"e", dateOf(2001, 1, 1, 0, 1)},
                         {"f", Value::Data{0, 255}},
                         {"g", "ß"}};
  ASSERT_EQ(world.configuration(), expected);
  expected.insert_or_assign("WENLIBUUID", Value(identifier()));
  EXPECT_EQ(world.configuration(), expected);
  EXPECT_TRUE(readFile(path()).starts_with("<?xml"));
}

}  // namespace
}  // namespace wenlolib::tests
