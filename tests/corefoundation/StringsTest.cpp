// What the port takes for granted of Core Foundation's strings and identifiers.
#include <CoreFoundation/CoreFoundation.h>

#include <set>
#include <string>

#include "base/Utf8.h"
#include "platform/apple/AppleServices.h"
#include "platform/apple/Objects.h"
#include "platform/apple/StubTest.h"

namespace wenlolib::tests {
namespace {

using platform::apple::Owned;

Text textOf(const std::u16string& units) {
  const Owned<CFStringRef> string(CFStringCreateWithCharacters(
      nullptr, reinterpret_cast<const UniChar*>(units.data()), static_cast<CFIndex>(units.size())));
  return platform::apple::textOf(string.get());
}

/// The three bytes of a character from U+0800 to U+FFFF, and what is shorter before it.
std::string utf8(char16_t unit) {
  const auto byte = [](unsigned value) { return std::string(1, static_cast<char>(value)); };
  if (unit < 0x80) return byte(unit);
  const std::string last = byte(0x80U | (unit & 0x3FU));
  if (unit < 0x800) return byte(0xC0U | unit >> 6U) + last;
  return byte(0xE0U | unit >> 12U) + byte(0x80U | (unit >> 6U & 0x3FU)) + last;
}

TEST(CoreFoundationStrings, GiveEveryCharacterOfTheBasicPlane) {
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const bool isHalf = unit >= 0xD800 && unit <= 0xDFFF;
    const auto character = static_cast<char16_t>(unit);
    const Text text = textOf(std::u16string(u"a") + character + u"b");
    ASSERT_EQ(text, isHalf ? Text() : Text("a" + utf8(character) + "b")) << std::hex << unit;
  }
}

TEST(CoreFoundationStrings, GivePairsAndRefuseHalves) {
  EXPECT_EQ(textOf(u"\U0001F600"), "\xF0\x9F\x98\x80");
  EXPECT_EQ(textOf(u"\U0010FFFF"), "\xF4\x8F\xBF\xBF");
  EXPECT_EQ(textOf(u""), "");
  const char16_t high = 0xD83D, low = 0xDE00;
  for (const std::u16string& broken : {std::u16string{high},
                                       {low},
                                       {low, high},
                                       {high, high, low},
                                       {high, low, low},
                                       {u'x', high},
                                       {low, u'x'}}) {
    EXPECT_EQ(textOf(broken), std::nullopt);
  }
}

TEST(CoreFoundationStrings, AreGivenWholeWhateverTheirLength) {
  for (const std::size_t length : {1U, 1000U, 1'000'000U}) {
    const Text text = textOf(std::u16string(length, u'€'));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), 3 * length);
    EXPECT_TRUE(isUtf8(*text));
  }
}

TEST(CoreFoundationIdentifiers, NeverRepeat) {
  platform::apple::AppleUuids uuids;
  std::set<std::string> seen;
  for (int i = 0; i < 3000; ++i) seen.insert(uuids.create().value());
  EXPECT_EQ(seen.size(), 3000U);
}

}  // namespace
}  // namespace wenlolib::tests
