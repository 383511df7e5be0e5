// The binary form, byte by byte.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "plist/BinaryFile.h"
#include "plist/FailuresThrown.h"
#include "plist/PropertyList.h"
#include "support/FailingAllocations.h"

namespace wenlolib::plist {
namespace {

using namespace std::string_literals;

/// What a file of these bytes holds; nothing if it is refused.
std::optional<Dictionary> listIn(std::string_view bytes) {
  return readBinary(bytes).dictionary;
}

/// A file whose root has the one entry "k" with `object` as its value.
BinaryFile fileWith(const std::string& object) {
  BinaryFile file;
  file.objects = {file.dictionary({1, 2}), ascii("k"), object};
  return file;
}

/// The value that `object` is read as; nothing if the file is refused.
std::optional<Value> valueOf(const std::string& object) {
  const auto read = listIn(fileWith(object).bytes());
  if (!read || read->size() != 1) return std::nullopt;
  return read->at("k");
}

struct Case {
  std::string name;
  std::string object;
  std::optional<Value> expected;
};

void expectEach(const std::vector<Case>& cases) {
  for (const Case& row : cases) EXPECT_TRUE(valueOf(row.object) == row.expected) << row.name;
}

TEST(BinaryPropertyList, ReadsBooleansAndRefusesTheOtherSimpleObjects) {
  expectEach({
      {"false", marker(0, 8), false},
      {"true", marker(0, 9), true},
      {"null", marker(0, 0), {}},
      {"fill", marker(0, 15), {}},
      {"address", marker(0, 12), {}},
  });
}

TEST(BinaryPropertyList, ReadsIntegersOfEveryWidth) {
  constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
  constexpr std::uint64_t top = std::uint64_t{1} << 63;
  const std::string negativeHigh = bytesOf(all, 8);
  expectEach({
      {"one byte has no sign", marker(1, 0) + bytesOf(0xFF, 1), 255},
      {"two bytes have no sign", marker(1, 1) + bytesOf(0xFFFE, 2), 65534},
      {"four bytes have no sign", marker(1, 2) + bytesOf(0xFFFFFFFF, 4), 4294967295},
      {"eight bytes are signed", marker(1, 3) + bytesOf(all, 8), -1},
      {"the lowest", marker(1, 3) + bytesOf(top, 8), std::numeric_limits<std::int64_t>::min()},
      {"sixteen bytes, small", marker(1, 4) + bytesOf(7, 16), 7},
      {"sixteen bytes, unsigned", marker(1, 4) + bytesOf(all, 16), all},
      {"sixteen bytes, negative", marker(1, 4) + negativeHigh + bytesOf(all - 1, 8), -2},
      {"above unsigned", marker(1, 4) + bytesOf(1, 8) + bytesOf(0, 8), {}},
      {"below signed", marker(1, 4) + negativeHigh + bytesOf(top - 1, 8), {}},
      {"thirty-two bytes", marker(1, 5) + bytesOf(7, 32), {}},
      {"cut short", marker(1, 3) + bytesOf(7, 7), {}},
  });
}

TEST(BinaryPropertyList, ReadsRealsAndDates) {
  const auto real = [](double number) { return bytesOf(std::bit_cast<std::uint64_t>(number), 8); };
  const auto date = [](double seconds) { return Instant(Seconds(seconds)); };
  constexpr double infinity = std::numeric_limits<double>::infinity();
  expectEach({
      {"four bytes", marker(2, 2) + bytesOf(std::bit_cast<std::uint32_t>(1.5F), 4), 1.5},
      {"eight bytes", marker(2, 3) + real(-0.1), -0.1},
      {"infinity", marker(2, 3) + real(infinity), infinity},
      {"two bytes", marker(2, 1) + bytesOf(0, 2), {}},
      {"sixteen bytes", marker(2, 4) + bytesOf(0, 16), {}},
      {"cut short", marker(2, 3) + bytesOf(0, 7), {}},
      {"the date dates count from", marker(3, 3) + real(0), date(978307200)},
      {"a date before it, with a fraction", marker(3, 3) + real(-978307199.5), date(0.5)},
      {"a date of four bytes", marker(3, 2) + bytesOf(0, 4), {}},
      {"a date that is not finite", marker(3, 3) + real(infinity), {}},
      {"a date that is not a number", marker(3, 3) + real(std::nan("")), {}},
      {"a date beyond the calendar", marker(3, 3) + real(1e300), {}},
  });
}

TEST(BinaryPropertyList, ReadsTextsAndData) {
  const std::string longText(300, 'x');
  expectEach({
      {"ASCII", ascii("text"), "text"},
      {"empty", ascii(""), ""},
      {"a count of its own", ascii(longText), longText},
      {"a NUL inside", ascii("a\0b"s), "a\0b"s},
      {"a count of eight bytes", marker(5, 15) + marker(1, 3) + bytesOf(2, 8) + "ab", "ab"},
      {"beyond ASCII", ascii("\x80"), {}},
      {"longer than the file", marker(5, 14) + "short", {}},
      {"a count beyond any file", marker(5, 15) + marker(1, 3) + bytesOf(~0ULL, 8) + "ab", {}},
      {"a count of sixteen bytes", marker(5, 15) + marker(1, 4) + bytesOf(2, 16) + "ab", {}},
      {"a count that is not an integer", marker(5, 15) + marker(5, 1) + "2ab", {}},
      {"a count that is missing", marker(5, 15), {}},
      {"a count cut short", marker(5, 15) + marker(1, 2) + "ab", {}},
      {"UTF-16", marker(6, 3) + "\0a\0\xE9\x20\xAC"s, "a\xC3\xA9\xE2\x82\xAC"},
      {"UTF-16 at the limits of the lengths of UTF-8",
       marker(6, 6) + "\0\x7F\0\x80\x07\xFF\x08\0\xD7\xFF\xE0\0"s,
       "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80"},
      {"the first surrogate pair", marker(6, 2) + "\xD8\0\xDC\0"s, "\xF0\x90\x80\x80"},
      {"a surrogate pair", marker(6, 2) + "\xD8\x3D\xDE\x00"s, "\xF0\x9F\x98\x80"},
      {"the last character", marker(6, 2) + "\xDB\xFF\xDF\xFF"s, "\xF4\x8F\xBF\xBF"},
      {"a high surrogate alone", marker(6, 1) + "\xD8\x3D"s, {}},
      {"a low surrogate alone", marker(6, 1) + "\xDE\x00"s, {}},
      {"two high surrogates", marker(6, 2) + "\xD8\x3D\xD8\x3D"s, {}},
      {"a pair the wrong way round", marker(6, 2) + "\xDE\x00\xD8\x3D"s, {}},
      {"half of the last character missing", marker(6, 2) + "\0a\0"s, {}},
      {"data", marker(4, 3) + "\0\x01\xFF"s, Value::Data{0, 1, 255}},
      {"no data", marker(4, 0), Value::Data{}},
      {"data with a count cut short", marker(4, 15) + marker(1, 2) + "ab", {}},
      {"data longer than the file", marker(4, 3) + "\0"s, {}},
  });
}

TEST(BinaryPropertyList, DoesNotTakeTheNextObjectForTheRestOfAText) {
  BinaryFile file = fileWith(marker(6, 1) + "\xD8\x3D"s);
  file.objects.push_back("\xDE\x00"s);
  EXPECT_EQ(listIn(file.bytes()), Dictionary()) << "the next object was read as the low surrogate";
}

TEST(BinaryPropertyList, ReadsUidsAsDictionaries) {
  const auto uid = [](std::uint64_t number) { return Dictionary{{"CF$UID", number}}; };
  expectEach({
      {"one byte", marker(8, 0) + bytesOf(5, 1), Dictionary{{"CF$UID", 5}}},
      {"four bytes", marker(8, 3) + bytesOf(65536, 4), Dictionary{{"CF$UID", 65536}}},
      {"eight bytes", marker(8, 7) + bytesOf(~0ULL, 8), uid(~0ULL)},
      {"nine bytes", marker(8, 8) + bytesOf(5, 9), {}},
      {"cut short", marker(8, 3) + bytesOf(5, 3), {}},
  });
  BinaryFile root;
  root.objects = {marker(8, 0) + bytesOf(5, 1)};
  EXPECT_FALSE(listIn(root.bytes())) << "a UID cannot be the root";
}

TEST(BinaryPropertyList, RefusesTypesThatNoValueHas) {
  for (const unsigned type : {0x7U, 0x9U, 0xBU, 0xCU, 0xEU, 0xFU}) {
    EXPECT_FALSE(valueOf(marker(type, 0))) << type;
    EXPECT_FALSE(valueOf(marker(type, 1) + bytesOf(1, 2))) << type;
  }
}

TEST(BinaryPropertyList, ReadsArraysAndDictionariesInAnyWidthOfReferencesAndOffsets) {
  for (std::size_t width = 1; width <= 8; ++width) {
    BinaryFile file;
    file.referenceWidth = width;
    file.offsetWidth = 9 - width;
    file.objects = {
        file.dictionary({1, 2, 3, 4}), ascii("a"),   ascii("d"),    file.array({5, 5, 6}),
        file.dictionary({}),           marker(0, 9), file.array({})};
    const Dictionary expected{{"a", Value::Array{true, true, Value::Array{}}}, {"d", Dictionary{}}};
    EXPECT_EQ(listIn(file.bytes()), expected) << width;
  }
}

TEST(BinaryPropertyList, ReadsManyEntries) {
  BinaryFile file;
  std::vector<std::uint64_t> references;
  Dictionary expected;
  file.objects = {""};
  for (std::uint64_t i = 0; i < 300; ++i) {
    references.push_back(1 + i);
    file.objects.push_back(ascii(std::to_string(i)));
    expected.insert_or_assign(std::to_string(i), false);
  }
  references.resize(600, 301);
  file.objects.push_back(marker(0, 8));
  file.objects[0] = file.dictionary(references);
  EXPECT_EQ(listIn(file.bytes()), expected);
}

TEST(BinaryPropertyList, TakesTheLaterOfTwoValuesUnderOneKey) {
  BinaryFile file;
  file.objects = {file.dictionary({1, 2, 3, 4}), ascii("k"), ascii("k"), marker(0, 8),
                  marker(0, 9)};
  EXPECT_EQ(listIn(file.bytes()), (Dictionary{{"k", true}}));
}

TEST(BinaryPropertyList, LeavesOutAValueThatCannotBeCarriedAndKeepsTheOthers) {
  for (const std::string& object :
       {marker(6, 1) + "\xD8\x3D"s, ascii("\x80"), marker(3, 3) + bytesOf(~0ULL, 8), marker(0, 0),
        marker(1, 4) + bytesOf(1, 8) + bytesOf(0, 8), marker(8, 8) + bytesOf(5, 9)}) {
    BinaryFile file;
    file.objects = {file.dictionary({1, 2, 3, 4, 5, 6}),
                    ascii("a"),
                    ascii("k"),
                    ascii("l"),
                    marker(0, 9),
                    object,
                    file.array({5, 4})};
    const platform::ListReading reading = readBinary(file.bytes());
    EXPECT_EQ(reading.state, platform::ListState::partial);
    EXPECT_EQ(reading.dictionary, (Dictionary{{"a", true}, {"l", Value::Array{true}}}));
  }
}

TEST(BinaryPropertyList, SaysWhatIsWrongAndAtWhichByte) {
  using enum platform::ListState;
  const auto expect = [](const std::string& bytes, platform::ListState state, std::string_view what,
                         std::size_t byte) {
    const platform::ListReading reading = read(bytes);
    EXPECT_EQ(reading.state, state) << what;
    EXPECT_EQ(reading.fault.what, what);
    EXPECT_EQ(reading.fault.byte, byte) << what;
    EXPECT_EQ(reading.fault.line, 0U) << what;
  };
  expect("bplist00", damaged, "the file's frame is damaged, or cut off", 0);
  BinaryFile file;
  file.objects = {file.array({})};
  expect(file.bytes(), otherRoot, "its root is not a dictionary", 8);
  file.objects = {file.dictionary({1, 9}), ascii("k")};
  expect(file.bytes(), damaged, "a reference leads to no object", 13);
  file.objects = {file.dictionary({1, 2}), ascii("k"), marker(7, 0)};
  expect(file.bytes(), damaged, "a reference leads to no object", 15);
  file.objects = {file.dictionary({1, 0}), ascii("k")};
  expect(file.bytes(), tooLarge, "it holds too many values, or too large ones", 13);
}

TEST(BinaryPropertyList, LeavesOutKeysThatAreNotTextsAndTheirValues) {
  for (const std::string& key : {marker(0, 9), marker(1, 0) + "\x01", marker(4, 1) + "k",
                                 marker(0xA, 0), marker(0xD, 0), ascii("\x80")}) {
    BinaryFile file = fileWith(marker(0, 9));
    file.objects[1] = key;
    EXPECT_EQ(listIn(file.bytes()), Dictionary());
    EXPECT_EQ(read(file.bytes()).state, platform::ListState::partial);
  }
}

TEST(BinaryPropertyList, AcceptsOnlyADictionaryAtTheRoot) {
  for (const std::string& root : {marker(0, 9), ascii("k"), marker(0xA, 0), marker(4, 0)}) {
    BinaryFile file;
    file.objects = {root};
    EXPECT_FALSE(listIn(file.bytes()));
  }
  BinaryFile file;
  file.objects = {marker(0xD, 0)};
  EXPECT_EQ(listIn(file.bytes()), Dictionary{});
  EXPECT_EQ(read(file.bytes()).dictionary, Dictionary{}) << "the first bytes name the binary form";
}

TEST(BinaryPropertyList, RefusesOtherVersionsOfTheForm) {
  const std::string bytes = fileWith(marker(0, 9)).bytes();
  for (const std::string_view head : {"bplist01", "bplist10", "bplist16", "Bplist00", "xplist00"}) {
    std::string other = bytes;
    other.replace(0, head.size(), head);
    EXPECT_FALSE(listIn(other)) << head;
    EXPECT_FALSE(listIn(other)) << head;
  }
}

TEST(BinaryPropertyList, RefusesTrailersThatLeadOutOfTheFile) {
  const BinaryFile file = fileWith(marker(0, 9));
  const auto with = [&](auto change) {
    Trailer trailer = file.trailer();
    change(trailer);
    return listIn(file.body() + file.table() + trailer.bytes()).has_value();
  };
  constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
  EXPECT_TRUE(with([](Trailer&) {}));
  for (const std::uint64_t wrong : {std::uint64_t{0}, std::uint64_t{9}, std::uint64_t{255}}) {
    EXPECT_FALSE(with([&](Trailer& trailer) { trailer.offsetWidth = wrong; })) << wrong;
    EXPECT_FALSE(with([&](Trailer& trailer) { trailer.referenceWidth = wrong; })) << wrong;
  }
  for (const std::uint64_t wrong : {std::uint64_t{4}, huge / 4, huge / 4 + 1, huge / 2 + 1, huge}) {
    EXPECT_FALSE(with([&](Trailer& trailer) { trailer.count = wrong; })) << wrong;
    EXPECT_FALSE(with([&](Trailer& trailer) { trailer.root = wrong; })) << wrong;
  }
  EXPECT_FALSE(with([](Trailer& trailer) { trailer.count = 0; }));
  EXPECT_FALSE(with([](Trailer& trailer) { trailer.count = 2; })) << "the value lies after the end";
  for (const std::uint64_t wrong : {std::uint64_t{0}, std::uint64_t{7}, std::uint64_t{8}, huge,
                                    huge - 31, std::uint64_t{1} << 63}) {
    EXPECT_FALSE(with([&](Trailer& trailer) { trailer.tableOffset = wrong; })) << wrong;
  }
}

TEST(BinaryPropertyList, RefusesOffsetsAndReferencesThatLeadNowhere) {
  const BinaryFile file = fileWith(marker(0, 9));
  for (const std::uint64_t offset : {std::uint64_t{0}, std::uint64_t{7}, file.trailer().tableOffset,
                                     std::uint64_t{0xFFFFFFFF}}) {
    const std::string table = file.table().substr(0, 8) + bytesOf(offset, 4);
    EXPECT_FALSE(listIn(file.body() + table + file.trailer().bytes())) << offset;
  }
  for (const std::uint64_t reference : {3U, 255U, 0xFFFFU}) {
    BinaryFile wrong = file;
    wrong.objects[0] = wrong.dictionary({1, reference});
    EXPECT_FALSE(listIn(wrong.bytes())) << "value " << reference;
    wrong.objects[0] = wrong.dictionary({reference, 2});
    EXPECT_FALSE(listIn(wrong.bytes())) << "key " << reference;
  }
}

TEST(BinaryPropertyList, RefusesCountsThatOverflowWhenMultiplied) {
  for (const unsigned type : {0x4U, 0x5U, 0x6U, 0xAU, 0xDU}) {
    for (const std::uint64_t count :
         {~0ULL, ~0ULL / 2 + 1, ~0ULL / 4 + 1, ~0ULL / 16 + 1, 1ULL << 32}) {
      const std::string object = marker(type, 15) + marker(1, 3) + bytesOf(count, 8) + "abcd";
      EXPECT_FALSE(valueOf(object)) << type << ' ' << count;
    }
  }
}

TEST(BinaryPropertyList, RefusesReferencesInACircle) {
  BinaryFile itself = fileWith("");
  itself.objects[2] = itself.array({2});
  EXPECT_FALSE(listIn(itself.bytes()));
  BinaryFile root = fileWith("");
  root.objects[2] = root.dictionary({1, 0});
  EXPECT_FALSE(listIn(root.bytes()));
  BinaryFile wide = fileWith("");
  wide.objects[2] = wide.array(std::vector<std::uint64_t>(1000, 2));
  EXPECT_FALSE(listIn(wide.bytes()));
  BinaryFile late = fileWith("");
  std::vector<std::uint64_t> items(30'000, 1);
  items.push_back(2);
  late.objects[2] = late.array(items);
  EXPECT_FALSE(listIn(late.bytes())) << "each round brings 30,000 texts";
}

TEST(BinaryPropertyList, ReadsNestingUpToTheBoundAndRefusesItBeyond) {
  const auto nested = [](std::size_t levels) {
    BinaryFile file = fileWith("");
    file.referenceWidth = 4;
    file.objects = {file.dictionary({1, 2}), ascii("k")};
    for (std::size_t level = 2; level < levels; ++level) {
      file.objects.push_back(file.array({level + 1}));
    }
    file.objects.push_back(file.array({}));
    return listIn(file.bytes());
  };
  EXPECT_TRUE(nested(bounds.levels));
  EXPECT_FALSE(nested(bounds.levels + 1));
  EXPECT_FALSE(nested(100'000));
  BinaryFile uid = fileWith(marker(8, 0) + "\x05");
  for (std::size_t level = 1; level < bounds.levels; ++level) {
    uid.objects.insert(uid.objects.begin() + 2, "");
  }
  for (std::size_t number = 2; number + 1 < uid.objects.size(); ++number) {
    uid.objects[number] = uid.array({number + 1});
  }
  EXPECT_FALSE(listIn(uid.bytes())) << "a UID is read as a dictionary, so it is a level too";
}

/// `depth` arrays, each holding the next one twice, with `object` at the end: 2^(depth+1) + 1 keys
/// and values. Then an object that nothing refers to, to make the file `bytes` long.
std::string doubling(std::size_t depth, const std::string& object, std::size_t bytes = 0) {
  BinaryFile file = fileWith("");
  for (std::size_t number = 2; number < 2 + depth; ++number) {
    file.objects.resize(number);
    file.objects.push_back(file.array({number + 1, number + 1}));
  }
  file.objects.push_back(object);
  const std::size_t size = file.bytes().size();
  if (bytes > size) file.objects.back().append(bytes - size, '\0');
  return file.bytes();
}

TEST(BinaryPropertyList, CountsASharedObjectAtEachReference) {
  constexpr std::size_t large = bounds.nodes + (std::size_t{1} << 20);
  EXPECT_TRUE(listIn(doubling(20, marker(0, 9), large))) << "two million values";
  EXPECT_FALSE(listIn(doubling(21, marker(0, 9), large))) << "more than four million";
  EXPECT_FALSE(listIn(doubling(500, marker(0, 9), large)));
  const std::string half(bounds.contentBytes / 8 - 1, 'x');
  EXPECT_TRUE(listIn(doubling(3, ascii(half))));
  EXPECT_FALSE(listIn(doubling(4, ascii(half))));
  const std::string data = counted(4, half.size()) + half;
  EXPECT_TRUE(listIn(doubling(3, data)));
  EXPECT_FALSE(listIn(doubling(4, data)));
}

TEST(BinaryPropertyList, RefersToNoMoreValuesThanTheFileHasBytes) {
  const std::size_t values = (std::size_t{1} << 11) + 1;
  EXPECT_FALSE(listIn(doubling(10, marker(0, 9))));
  EXPECT_FALSE(listIn(doubling(10, marker(0, 9), values - 1)));
  EXPECT_TRUE(listIn(doubling(10, marker(0, 9), values)));
}

TEST(BinaryPropertyList, ASmallFileTakesLittleMemoryWhateverItRefersTo) {
  for (const std::size_t depth : {std::size_t{7}, std::size_t{20}, std::size_t{21}}) {
    BinaryFile file;
    file.referenceWidth = file.offsetWidth = 1;
    file.objects = {file.dictionary({1, 2}), ascii("k")};
    for (std::uint64_t number = 2; number < 2 + depth; ++number) {
      file.objects.push_back(file.array({number + 1, number + 1}));
    }
    file.objects.push_back(file.array({}));
    const std::string bytes = file.bytes();
    ASSERT_LT(bytes.size(), 234U);
    const tests::CountedAllocations counted;
    EXPECT_FALSE(listIn(bytes)) << depth;
    EXPECT_LT(counted.bytes(), std::size_t{1} << 20) << depth;
    EXPECT_GT(counted.bytes(), bytes.size()) << "the allocations are counted";
  }
}

TEST(BinaryPropertyList, ReadsFilesThatReferToTheirScalarsAgainAndAgain) {
  for (const std::string& object : {marker(0, 9), ascii("text"), marker(1, 0) + "\x01",
                                    marker(4, 1) + "x", marker(8, 0) + "\x05"}) {
    BinaryFile file = fileWith("");
    file.referenceWidth = 1;
    file.objects = {file.dictionary({1, 2}), ascii("k"),
                    file.array(std::vector<std::uint64_t>(10'000, 3)), object};
    EXPECT_TRUE(listIn(file.bytes()));
  }
}

TEST(BinaryPropertyList, CountsASharedKeyAtEachReference) {
  const std::string key(std::size_t{1} << 20, 'k');
  const auto withEntries = [&](std::size_t count) {
    BinaryFile file;
    std::vector<std::uint64_t> references(count, 1);
    references.resize(2 * count, 2);
    file.objects = {file.dictionary(references), ascii(key), marker(0, 9)};
    return listIn(file.bytes());
  };
  EXPECT_EQ(withEntries(32), (Dictionary{{key, true}}));
  EXPECT_FALSE(withEntries(33));
}

TEST(BinaryPropertyList, GivesAnAnswerForEveryTruncationAndEveryChangedByte) {
  BinaryFile file;
  file.objects = {file.dictionary({1, 2, 3, 4}),
                  ascii("a"),
                  ascii("b"),
                  file.array({1, 5}),
                  marker(1, 3) + bytesOf(1, 8),
                  marker(4, 2) + "\x01\x02"};
  const std::string bytes = file.bytes();
  ASSERT_TRUE(listIn(bytes));
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(listIn(std::string_view(bytes).substr(0, size))) << size;
  }
  int refused = 0;
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    for (int value = 0; value < 256; ++value) {
      std::string changed = bytes;
      changed[index] = static_cast<char>(value);
      if (!listIn(changed)) ++refused;
    }
  }
  EXPECT_GT(refused, 5000);
}

TEST(BinaryPropertyList, ThrowsForEveryFailedAllocationAndLeavesNothingBehind) {
  const std::string longText(100, 'x');
  BinaryFile file;
  file.objects = {file.dictionary({1, 2, 3, 4}),
                  ascii("a"),
                  ascii(longText),
                  file.array({1, 2, 5}),
                  file.dictionary({1, 6}),
                  marker(4, 2) + "\x01\x02",
                  marker(6, 1) + "\x20\xAC"};
  const std::string bytes = file.bytes();
  const auto expected = listIn(bytes);
  ASSERT_TRUE(expected);
  EXPECT_GT(tests::failuresThrown([&] { return listIn(bytes); }, expected), 10);
}

}  // namespace
}  // namespace wenlolib::plist
