#include "platform/apple/ApplePropertyLists.h"

#include <cstdint>
#include <limits>

#include "apple_stubs/bodies/Conversion.h"
#include "platform/apple/StubTest.h"
#include "platform/apple/UidEntries.h"
#include "platform/apple/Values.h"
#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

const Dictionary everything = {
    {"array", Value::Array{1, "two", Value::Array{}, Dictionary{}}},
    {"data", Value::Data{0, 1, 255}},
    {"date", Instant(Seconds(1710461107))},
    {"dictionary", Dictionary{{"inside", Dictionary{{"deeper", true}}}}},
    {"empty", ""},
    {"false", false},
    {"largest", std::numeric_limits<std::uint64_t>::max()},
    {"negative", std::numeric_limits<std::int64_t>::min()},
    {"real", 0.1},
    {"text", "\xC3\xA9\xF0\x9F\x96\xA8 & < \r\n\t"},
    {"true", true},
};

class ApplePropertyLists : public StubTest {
 protected:
  TemporaryFolder folder;
  platform::posix::Root root{folder.path()};
  platform::apple::ApplePropertyLists lists{root};

  std::optional<Dictionary> readBytes(std::string_view bytes) {
    writeFile(folder / "list", bytes);
    return lists.read("/list");
  }
};

TEST_F(ApplePropertyLists, ReadBackWhatTheyWrite) {
  const Text xml = lists.asXml(everything);
  ASSERT_TRUE(xml);
  EXPECT_EQ(readBytes(*xml), everything);
  EXPECT_EQ(readBytes(lists.asXml({}).value()), Dictionary());
}

TEST_F(ApplePropertyLists, CarryNoControlCharacters) {
  EXPECT_EQ(lists.asXml({{"key", std::string("a\0b", 3)}}), std::nullopt);
  EXPECT_EQ(lists.asXml({{"key\x01", "text"}}), std::nullopt);
  EXPECT_EQ(lists.asXml({{"key", Value::Array{Dictionary{{"k", "\x1B"}}}}}), std::nullopt);
  EXPECT_EQ(lists.asXml({{"key", "\xFF"}}), std::nullopt);
}

TEST_F(ApplePropertyLists, AreNotWrittenWhereAnyObjectCannotBeMade) {
  const std::size_t runs = refusingEachCall([&](const std::string& refused) {
    EXPECT_EQ(lists.asXml(everything).has_value(), refused.empty());
  });
  EXPECT_GT(runs, 20U);
}

TEST_F(ApplePropertyLists, AreNotReadWhereTheSystemRefuses) {
  const std::string xml = lists.asXml(everything).value();
  world = stubs::World();
  refusingEachCall([&](const std::string& refused) {
    if (refused == "CFDataCreate") {
      EXPECT_THROW(static_cast<void>(readBytes(xml)), std::bad_alloc);
    } else {
      EXPECT_EQ(readBytes(xml).has_value(), refused.empty());
    }
  });
}

TEST_F(ApplePropertyLists, AreNothingWhereTheFileIsNone) {
  EXPECT_EQ(lists.read("/missing"), std::nullopt);
  EXPECT_EQ(lists.read(std::string("/li\0st", 6)), std::nullopt);
  EXPECT_EQ(lists.read("/"), std::nullopt);
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(lists.read("/pipe"), std::nullopt);
  EXPECT_EQ(readBytes(""), std::nullopt);
  EXPECT_EQ(readBytes("{ key = text; }"), std::nullopt);
  EXPECT_EQ(readBytes("<plist version=\"1.0\"><array/></plist>"), std::nullopt);
  EXPECT_EQ(readBytes("<plist version=\"1.0\"><dict>"), std::nullopt);
}

TEST_F(ApplePropertyLists, OfTooManyLevelsNeverReachTheSystem) {
  std::string text = "<plist version=\"1.0\"><dict><key>k</key>";
  for (int i = 0; i < 100'000; ++i) text += "<array>";
  EXPECT_EQ(readBytes(text), std::nullopt);
  EXPECT_TRUE(world.calls.empty());
}

std::string listOf(const std::string& entries) {
  return "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>";
}

const std::string uidKey = "<key>CF$UID</key>";
const std::string uid = "<dict>" + uidKey + "<integer>7</integer></dict>";

TEST_F(ApplePropertyLists, KeepTheirUids) {
  const Dictionary expected = {
      {"array", Value::Array{Dictionary{{"CF$UID", 7}}, "text"}},
      {"no", Dictionary{{"CF$UID", "text"}}},
      {"other", "text"},
      {"uid", Dictionary{{"CF$UID", 7}}},
  };
  const auto read =
      readBytes(listOf("<key>uid</key>" + uid + "<key>array</key><array>" + uid +
                       "<string>text</string></array><key>other</key><string>text</string>" +
                       "<key>no</key><dict>" + uidKey + "<string>text</string></dict>"));
  ASSERT_EQ(read, expected);
  const Text rewritten = lists.asXml(*read);
  ASSERT_TRUE(rewritten);
  EXPECT_EQ(readBytes(*rewritten), expected);
}

TEST_F(ApplePropertyLists, KeepAUidThatIsAllThereIs) {
  EXPECT_EQ(readBytes(listOf(uidKey + "<integer>7</integer>")), (Dictionary{{"CF$UID", 7}}));
}

TEST_F(ApplePropertyLists, AreNotReadWhereAUidCannotBeKept) {
  refusingEachCall([&](const std::string& refused) {
    if (refused == "CFDataCreate") return;
    EXPECT_EQ(readBytes(listOf("<key>uid</key>" + uid)).has_value(), refused.empty());
  });
}

TEST_F(ApplePropertyLists, AreNotReadWithoutAnEntryThatIsNoPropertyList) {
  auto* dictionary = new stubs::Container(stubs::dictionaryType);
  const platform::apple::Owned<CFTypeRef> object(stubs::reference<CFTypeRef>(dictionary));
  const auto add = [&](const char* key, stubs::Object* value) {
    dictionary->items.push_back(stubs::reference<CFTypeRef>(new stubs::StringObject(key)));
    dictionary->items.push_back(stubs::reference<CFTypeRef>(value));
  };
  add("text", new stubs::StringObject("text"));
  EXPECT_TRUE(platform::apple::dictionaryOf(object.get()));
  add("url", new stubs::PlainObject(stubs::urlType, "/"));
  EXPECT_EQ(platform::apple::dictionaryOf(object.get()), std::nullopt);
  EXPECT_EQ(platform::apple::dictionaryOf(dictionary->items.back()), std::nullopt);
  EXPECT_EQ(platform::apple::convertibleEntriesOf(object.get()), (Dictionary{{"text", "text"}}));
  EXPECT_EQ(platform::apple::convertibleEntriesOf(dictionary->items.back()), std::nullopt);
  EXPECT_EQ(platform::apple::convertibleEntriesOf(nullptr), std::nullopt);
}

TEST(UidEntry, IsADictionaryWithOneKeyAndOneNumber) {
  const auto entry = [](const std::string& xml) { return platform::apple::uidEntryIn(xml); };
  const Dictionary seven = {{"CF$UID", 7}};
  const std::string start = "<?xml version=\"1.0\"?>\n<plist version=\"1.0\">\n";
  EXPECT_EQ(entry(start + uid + "</plist>"), seven);
  EXPECT_EQ(
      entry(start + "<dict>\n\t" + uidKey + "\r\n\t<integer>7</integer>\n</dict>\n</plist>\n"),
      seven);
  const auto numbered = [&](const std::string& number) {
    return entry(listOf(uidKey + "<integer>" + number + "</integer>"));
  };
  EXPECT_EQ(numbered("4294967295"), (Dictionary{{"CF$UID", 4294967295}}));
  EXPECT_EQ(numbered("9223372036854775807"),
            (Dictionary{{"CF$UID", std::numeric_limits<std::int64_t>::max()}}));
  for (const char* number : {"", "-1", "+1", "-0", " 1", "1 2", "0x10", "1.0", "x",
                             "9223372036854775808", "99999999999999999999"}) {
    EXPECT_EQ(numbered(number), std::nullopt) << number;
  }
  const std::string seventh = "<integer>7</integer>";
  for (const std::string& xml : {
           std::string(),
           std::string("<dict>"),
           listOf(""),
           listOf(uidKey),
           listOf(seventh),
           listOf(uidKey + seventh + uidKey + seventh),
           listOf(uidKey + "<string>7</string>"),
           listOf("<key>CF$UIDs</key>" + seventh),
           listOf("<key>CF$UID </key>" + seventh),
           listOf("<key>other</key>" + uid),
           listOf("<key>a</key><true/>" + uidKey + seventh),
           "<plist version=\"1.0\"><array>" + uid + "</array></plist>",
           listOf(uidKey + seventh) + "x",
           uid,
       }) {
    EXPECT_EQ(entry(xml), std::nullopt) << xml;
  }
}

Value nested(std::size_t levels) {
  Value value = "leaf";
  while (levels-- > 0) value = Value::Array{value};
  return value;
}

TEST_F(ApplePropertyLists, AreConvertedWithinBounds) {
  const auto converted = [](const Value& value, platform::apple::ValueBounds bounds) {
    const platform::apple::Owned<CFTypeRef> object(stubs::made(value));
    return platform::apple::dictionaryOf(object.get(), bounds).has_value();
  };
  EXPECT_TRUE(converted(Dictionary{{"k", nested(4)}}, {5, 100}));
  EXPECT_FALSE(converted(Dictionary{{"k", nested(5)}}, {5, 100}));
  const Dictionary three = {{"a", 1}, {"b", Value::Array{2}}};
  EXPECT_TRUE(converted(three, {5, 3}));
  EXPECT_FALSE(converted(three, {5, 2}));
  EXPECT_FALSE(converted(nested(2), {5, 100}));
  // To ask for an object's XML form takes as long as many plain values.
  const Dictionary uids = {{"a", Dictionary{{"CF$UID", 1}}}, {"b", Dictionary{{"CF$UID", 2}}}};
  EXPECT_TRUE(converted(uids, {2, 130}));
  EXPECT_FALSE(converted(uids, {2, 129}));
  EXPECT_FALSE(converted(uids, {1, 130}));
  EXPECT_EQ(platform::apple::dictionaryOf(nullptr), std::nullopt);
}

}  // namespace
}  // namespace wenlolib::tests
