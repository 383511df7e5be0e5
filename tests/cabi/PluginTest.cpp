#include "wenlolib/plugin.h"

#include <gtest/gtest.h>

#include <regex>
#include <span>
#include <string>
#include <vector>

#include "support/ExpectedDocument.h"
#include "support/FailingAllocations.h"
#include "support/PlatformTest.h"
#include "wenlolib/CommonTooWenlolib.h"
#include "wenlolib/version.h"

namespace wenlolib::tests {
namespace {

const std::string month = applicationFolder + "/Quillmere_Log_App_2403.ALM";
const std::string firstLog = printerLogFolder + "/App_1.PLM";

class Plugin : public InstalledTest {
 protected:
  /// The printer log that is written with these entries; "" if none is.
  std::string logWith(const WENLOLIBEntry* entries, std::size_t count) {
    world.files.remove(firstLog);
    const int answer =
        WENLOLIB_writePrinterLogInfoWithContents("contents", "App", 1, entries, count);
    const std::string document = world.files.bytesAt(firstLog);
    EXPECT_EQ(answer, document.empty() ? 0 : 1);
    return document;
  }
  std::string logWith(std::span<const WENLOLIBEntry> entries) {
    return logWith(entries.data(), entries.size());
  }

  /// Lets each allocation of `record` fail in turn, until none fails and `file` is there.
  template <class Record>
  void expectNoAtEveryShortage(Record record, const std::string& file) {
    long k = 1;
    for (bool struck = true; struck && k < 10'000; ++k) {
      world.files.remove(file);
      FailingAllocations failing(k);
      const int answer = record();
      failing.stop();
      EXPECT_LE(answer, world.files.at(file) ? 1 : 0) << k;
      struck = failing.struck();
    }
    EXPECT_GT(k, 20);
    EXPECT_LT(k, 10'000);
    EXPECT_TRUE(world.files.at(file));
  }
};

/// The printer log that the platform set up by `install` writes with these values.
std::string olderLog(const ExpectedPrinter& printer) {
  ExpectedDocument expected;
  expected.wrapper = "OrvanQXPrinter";
  expected.version = "2.1";
  expected.locale = "fr_FR";
  expected.printer = printer;
  expected.contents = "contents";
  return expected.text();
}

TEST_F(Plugin, ApplicationUsageIsSupportedByTheModeAndTheAgreement) {
  EXPECT_EQ(WENLOLIB_isSupported(0), 1);
  EXPECT_EQ(WENLOLIB_isSupported(1), 1);
  EXPECT_EQ(WENLOLIB_isSupported(0xFFFFFFF2U), 1);
  EXPECT_EQ(WENLOLIB_isSupported(3), 0);
  world.propertyLists.add(preferencePath, agreedPreferences(world.clock.time, 1440));
  EXPECT_EQ(WENLOLIB_isSupported(1), 0);
  EXPECT_EQ(WENLOLIB_isSupported(2), 1);
}

TEST_F(Plugin, PrinterLogsAreSupportedByTheInstallationDateAlone) {
  for (const std::uint32_t option : {0U, 3U, 0xFFFFFFFFU}) {
    EXPECT_EQ(WENLOLIB_isSupportedPlm(option), 1) << option;
  }
  world.propertyLists.add(preferencePath, agreedPreferences(world.clock.time, 3614));
  EXPECT_EQ(WENLOLIB_isSupportedPlm(1), 0);
}

/// Reading any of the arguments would end the process.
TEST_F(Plugin, ARefusedCallLooksAtNothingThatItIsHanded) {
  const auto* wild = reinterpret_cast<const char*>(std::uintptr_t{1});
  const auto* entries = reinterpret_cast<const WENLOLIBEntry*>(std::uintptr_t{8});
  EXPECT_EQ(WENLOLIB_writeAppInfoWithContents(wild, wild, 3), 0);
  world.propertyLists.add(preferencePath, agreedPreferences(world.clock.time, 3614));
  EXPECT_EQ(WENLOLIB_writePrinterLogInfoWithContents(wild, wild, 1, entries, 1000), 0);
}

TEST_F(Plugin, ARefusedCallCopiesNothing) {
  const std::string contents(1 << 20, 'c');
  const CountedAllocations counted;
  EXPECT_EQ(WENLOLIB_writeAppInfoWithContents(contents.c_str(), "App", 3), 0);
  EXPECT_LT(counted.largest(), contents.size());
}

TEST_F(Plugin, ApplicationUsageIsRecorded) {
  EXPECT_EQ(WENLOLIB_writeAppInfoWithContents("größer", "App", 2), 1);
  ExpectedDocument expected;
  expected.contents = "größer";
  EXPECT_EQ(world.files.bytesAt(month), expected.text());
}

TEST_F(Plugin, EmptyTextsAreTexts) {
  EXPECT_EQ(WENLOLIB_writeAppInfoWithContents("", "", 2), 1);
  EXPECT_TRUE(world.files.at(applicationFolder + "/Quillmere_Log__2403.ALM"));
}

TEST_F(Plugin, NullAndBytesThatAreNotUtf8AreRefusedAsContentsAndAsName) {
  const struct {
    const char *contents, *name;
  } table[] = {{nullptr, "App"},        {"contents", nullptr},   {nullptr, nullptr},
               {"\xFF", "App"},         {"contents", "App\xC3"}, {"\xC0\x80", "App"},
               {"\xED\xA0\x80", "App"}, {"contents", "\xF5\x80"}};
  const auto before = world.files.all();
  const WENLOLIBEntry entries[] = {{"SN", "s"}};
  for (const auto& row : table) {
    EXPECT_EQ(WENLOLIB_writeAppInfoWithContents(row.contents, row.name, 2), 0);
    EXPECT_EQ(WENLOLIB_writePrinterLogInfoWithContents(row.contents, row.name, 1, entries, 1), 0);
    EXPECT_EQ(WENLOLIB_writePrinterLogInfoWithContents(row.contents, row.name, 1, nullptr, 0), 0);
  }
  EXPECT_EQ(world.files.all(), before);
}

TEST_F(Plugin, ARefusedRecordAnswersNo) {
  const auto before = world.files.all();
  EXPECT_EQ(WENLOLIB_writeAppInfoWithContents("contents", "App", 3), 0);
  EXPECT_EQ(world.files.all(), before);
  world.files.remove(preferencePath);
  EXPECT_EQ(logWith(nullptr, 0), "");
}

TEST_F(Plugin, AFailedWriteAnswersNo) {
  world.faults.failAlways("files.writeAtomically");
  EXPECT_EQ(WENLOLIB_writeAppInfoWithContents("contents", "App", 2), 0);
  EXPECT_EQ(logWith(nullptr, 0), "");
}

TEST_F(Plugin, PrinterLogsAreRecordedWithTheirEntries) {
  const WENLOLIBEntry entries[] = {
      {"ROMVER", "r"}, {"", "no key"}, {"DeviceID", "d"}, {"sn", "another key"}, {"SN", "s"}};
  EXPECT_EQ(logWith(entries), olderLog({"d", "s", "r"}));
}

TEST_F(Plugin, AsManyEntriesAreReadAsTheCountSays) {
  const WENLOLIBEntry entries[] = {{"DeviceID", "d"}, {"SN", "s"}, {"ROMVER", "r"}};
  EXPECT_EQ(logWith(entries, 2), olderLog({"d", "s", ""}));
  EXPECT_EQ(logWith(entries, 0), olderLog({}));
}

TEST_F(Plugin, NullMeansNoEntriesWhateverTheirNumber) {
  for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{1000}, SIZE_MAX}) {
    EXPECT_EQ(logWith(nullptr, count), olderLog({})) << count;
  }
}

TEST_F(Plugin, EntriesWithNullOrBytesThatAreNotUtf8AreIgnored) {
  const WENLOLIBEntry entries[] = {{nullptr, "x"}, {"SN", nullptr},    {nullptr, nullptr},
                                   {"\xFF", "x"},  {"ROMVER", "\xFF"}, {"DeviceID", "d"}};
  EXPECT_EQ(logWith(entries), olderLog({"d", "", ""}));
}

TEST_F(Plugin, TheLastOfEqualKeysCounts) {
  const WENLOLIBEntry entries[] = {{"SN", "first"}, {"ROMVER", "r"}, {"SN", "second"},
                                   {"SN", "third"}, {"SN", nullptr}, {"SN", "\xFF"}};
  EXPECT_EQ(logWith(entries), olderLog({"", "third", "r"}));
  const WENLOLIBEntry emptied[] = {{"SN", "first"}, {"SN", ""}};
  EXPECT_EQ(logWith(emptied), olderLog({}));
}

TEST_F(Plugin, TagTypesAreReadAsTexts) {
  for (const char* text : {"YES", "yes", "Y", "true", "T", "t", "1", "9", "2x", "+1", "-1", " 1",
                           "007", " \t+00y", "Yellow"}) {
    const WENLOLIBEntry entries[] = {{"SN", "s"}, {"NEWTAGTYPE", text}};
    EXPECT_TRUE(logWith(entries).starts_with("<OrvanQX2Application")) << text;
  }
  for (const char* text :
       {"NO", "no", "false", "", "0", "000", "-0", "+", " ", "x1", "0x1", "on", "++1", "1\xFF"}) {
    const WENLOLIBEntry entries[] = {{"SN", "s"}, {"NEWTAGTYPE", text}};
    EXPECT_EQ(logWith(entries), olderLog({"", "s", ""})) << text;
  }
}

TEST_F(Plugin, WithoutMemoryTheAnswerIsNoAndNothingIsThrown) {
  const std::string longText(100, 'x');
  const WENLOLIBEntry entries[] = {{"SN", longText.c_str()}, {"ROMVER", "r"}};
  const auto usage = [&] { return WENLOLIB_writeAppInfoWithContents(longText.c_str(), "App", 2); };
  const auto log = [&] {
    return WENLOLIB_writePrinterLogInfoWithContents(longText.c_str(), "App", 1, entries,
                                                    std::size(entries));
  };
  expectNoAtEveryShortage(usage, month);
  expectNoAtEveryShortage(log, firstLog);
}

/// The header text for `string` in a buffer of this size, after checks of its end.
std::string headerText(const char* string, std::size_t size) {
  std::vector<char> buffer(size + 1, '#');
  const std::size_t length = WENLOLIB_convertStrToHeaderStr(string, buffer.data(), size);
  EXPECT_LT(length, size);
  EXPECT_EQ(std::string(buffer.data()).size(), length);
  EXPECT_EQ(buffer.back(), '#');
  return buffer.data();
}

TEST(HeaderText, IsWhatTheClassMakes) {
  for (const std::string text : {"", "QX 200", "<a> & \xFF\r\n", "gr\xC3\xB6\xC3"}) {
    EXPECT_EQ(headerText(text.c_str(), WENLOLIB_HEADER_STR_SIZE),
              CommonTooWenlolib::convertStrToHeaderStr(text));
  }
  EXPECT_EQ(headerText(std::string(2000, '<').c_str(), 4000), std::string(1023, '_'));
}

TEST(HeaderText, FitsEveryBuffer) {
  EXPECT_EQ(headerText("a\xC3\xB6"
                       "b",
                       5),
            "a\xC3\xB6"
            "b");
  EXPECT_EQ(headerText("a\xC3\xB6"
                       "b",
                       4),
            "a\xC3\xB6");
  EXPECT_EQ(headerText("a\xC3\xB6"
                       "b",
                       3),
            "a");
  EXPECT_EQ(headerText("a\xC3\xB6"
                       "b",
                       1),
            "");
  EXPECT_EQ(headerText(nullptr, 8), "");
  char untouched = '#';
  EXPECT_EQ(WENLOLIB_convertStrToHeaderStr("abc", &untouched, 0), 0U);
  EXPECT_EQ(untouched, '#');
  EXPECT_EQ(WENLOLIB_convertStrToHeaderStr("abc", nullptr, 8), 0U);
}

TEST(HeaderText, CanBeMadeInPlace) {
  char text[] = "<\xEF\xBF\xBF>\xC3\xB6&";
  EXPECT_EQ(WENLOLIB_convertStrToHeaderStr(text, text, sizeof text), 6U);
  EXPECT_STREQ(text, "___\xC3\xB6_");
}

TEST(PluginVersion, IsThreeNumbersAndStaysWhereItIs) {
  const char* version = WENLOLIB_version();
  ASSERT_NE(version, nullptr);
  EXPECT_TRUE(std::regex_match(version, std::regex("(0|[1-9]\\d*)(\\.(0|[1-9]\\d*)){2}")))
      << version;
  EXPECT_EQ(WENLOLIB_version(), version);
}

TEST(PluginVersion, IsThatOfTheHeadersAsTextAndAsANumber) {
  EXPECT_STREQ(WENLOLIB_version(), WENLOLIB_VERSION);
  EXPECT_EQ(CommonTooWenlolib::convertVersionStrToNum(WENLOLIB_VERSION), WENLOLIB_VERSION_NUMBER);
}

}  // namespace
}  // namespace wenlolib::tests
