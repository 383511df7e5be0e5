#include "record/HeaderValues.h"

#include <gtest/gtest.h>

#include <string_view>

#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

TEST(NormalisedLocale, LosesItsModifierAndAllButTwoComponents) {
  const struct {
    const char* locale;
    const char* result;
  } table[] = {
      {"en_US", "en_US"},
      {"en_US@currency=EUR", "en_US"},
      {"zh_Hans_CN", "zh_Hans"},
      {"sr_Latn_RS@calendar=gregorian", "sr_Latn"},
      {"de_DE_PREEURO", "de_DE"},
      {"a_b_c_d", "a_b"},
      {"en__US", "en_"},
      {"ja", "ja"},
      {"en-US", "en-US"},
      {"_", "_"},
      {"__", "_"},
      {"@x", ""},
      {"", ""},
      {"en@a_b_c", "en"},
      {"en_US@a@b", "en_US"},
      {"EN_us", "EN_us"},
      {"\xE6\x97\xA5_\xE6\x9C\xAC_x", "\xE6\x97\xA5_\xE6\x9C\xAC"},
  };
  for (const auto& row : table) EXPECT_EQ(normalisedLocale(row.locale), row.result) << row.locale;
}

TEST(NormalisedLocale, TextsLongerThan32767CharactersGiveNothing) {
  EXPECT_EQ(normalisedLocale(std::string(32767, 'x')), std::string(32767, 'x'));
  EXPECT_EQ(normalisedLocale(std::string(32768, 'x')), "");
  EXPECT_EQ(normalisedLocale("en_US@" + std::string(32768, 'x')), "");
}

std::string times(std::size_t count, std::string_view character) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += character;
  return text;
}

TEST(NormalisedLocale, LengthsCountInCharactersAndNotInBytes) {
  const char* const characters[] = {"\xC3\xA9", "\xC2\x80", "\xDF\xBF", "\xE6\x97\xA5",
                                    "\xEF\xBF\xBF"};
  for (const char* character : characters) {
    for (const std::size_t count : {20000U, 32767U}) {
      const std::string text = times(count, character);
      EXPECT_TRUE(normalisedLocale(text) == text) << count << " times " << character;
    }
    EXPECT_TRUE(normalisedLocale(times(32768, character)).empty()) << character;
  }
}

TEST(NormalisedLocale, CharactersBeyondTheBasicPlaneCountTwice) {
  for (const char* character : {"\xF0\x90\x80\x80", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"}) {
    const std::string most = times(16383, character) + "x";
    EXPECT_TRUE(normalisedLocale(most) == most) << character;
    EXPECT_TRUE(normalisedLocale(most + "x").empty()) << character;
    EXPECT_TRUE(normalisedLocale(times(16384, character)).empty()) << character;
  }
}

class SurveyLocale : public InstalledTest {
 protected:
  static std::string of(std::uint32_t option) {
    return WENLOLIB::initWithContents("c", "n", option)->getLocale();
  }
};

TEST_F(SurveyLocale, ComesFromTheSourceOfTheMode) {
  for (const std::uint32_t option : {0U, 2U, 16U, 18U, 0xFFFFFFF0U, 0xFFFFFFF2U}) {
    EXPECT_EQ(of(option), "en_US") << option;
  }
  for (const std::uint32_t option : {1U, 17U, 0xFFFFFFF1U})
    EXPECT_EQ(of(option), "fr_FR") << option;
  for (std::uint32_t mode = 3; mode <= 15; ++mode) {
    EXPECT_EQ(of(mode), "") << mode;
    EXPECT_EQ(of(mode + 16), "") << mode;
  }
}

TEST_F(SurveyLocale, EachModeAsksItsOwnSourceAlone) {
  static_cast<void>(of(0));
  EXPECT_EQ(world.journal.lines(), Journal::Lines{"user.locale"});
  world.journal.clear();
  static_cast<void>(of(1));
  EXPECT_EQ(world.journal.count("user.locale"), 0U);
  EXPECT_EQ(world.journal.count("propertyLists.read " + preferencePath), 1U);
  world.journal.clear();
  static_cast<void>(of(3));
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(SurveyLocale, AMissingLanguageHasNoFallback) {
  world.propertyLists.add(preferencePath, {{"Other", "fr_FR"}});
  EXPECT_EQ(of(1), "");
  world.files.remove(preferencePath);
  EXPECT_EQ(of(1), "");
  world.files.addFolder(preferencePath);
  EXPECT_EQ(of(1), "");
  world.files.remove(preferencePath);
  world.files.addFile(preferencePath, "no property list");
  EXPECT_EQ(of(1), "");
}

TEST_F(SurveyLocale, ALanguageThatIsNotTextCountsAsAbsent) {
  for (const Value& value : {Value(1), Value(true), Value(Value::Array{"fr_FR"}), Value("\xFF")}) {
    world.propertyLists.add(preferencePath, {{"LatestSelectedLanguage", value}});
    EXPECT_EQ(of(1), "");
  }
}

TEST_F(SurveyLocale, BothSourcesAreNormalised) {
  world.user.localeSetting = "zh_Hans_CN@x=y";
  world.propertyLists.add(preferencePath, {{"LatestSelectedLanguage", "sr_Latn_RS"}});
  EXPECT_EQ(of(0), "zh_Hans");
  EXPECT_EQ(of(1), "sr_Latn");
}

TEST_F(SurveyLocale, NoSettingOrOneThatIsNotTextGivesNothing) {
  world.user.localeSetting = std::nullopt;
  EXPECT_EQ(of(0), "");
  EXPECT_EQ(of(2), "");
  world.user.localeSetting = "\xFF";
  EXPECT_EQ(of(0), "");
}

}  // namespace
}  // namespace wenlolib::tests
