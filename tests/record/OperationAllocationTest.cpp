// Every allocation of an operation fails in turn. Nothing may be thrown, and the answer must be the
// right one or the failing one.
#include <gtest/gtest.h>

#include <functional>

#include "support/FailingAllocations.h"
#include "support/PlatformTest.h"
#include "wenlolib/CommonTooWenlolib.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

constexpr long tooMany = 10000;

/// Runs `work` with each allocation failing in turn, until a run has no failure. Answers how many
/// allocations failed.
long failEach(const std::function<void()>& work, const std::function<void(bool)>& check) {
  for (long k = 1; k < tooMany; ++k) {
    FailingAllocations failing(k);
    work();
    failing.stop();
    check(failing.struck());
    if (!failing.struck()) return k - 1;
  }
  return tooMany;
}

class EveryOperation : public InstalledTest {
 protected:
  EveryOperation() {
    world.system.setVersion(10, 17, 0);
    world.propertyLists.add(versionListPath, {{"1003.1", "10.18.0"}, {"1003.0", "10.18.0"}});
    const std::string library = "/Users/ada/Library/Preferences/com.orvan.printing.Quillmere.";
    world.propertyLists.add(library + "TargetPrinterList.plist", {{"a", 1}});
    world.propertyLists.add(library + "SurveyInfo.plist", {{"b", 2}});
  }

  template <class Answer>
  void expectAnswerOr(const Answer& failing, const std::function<Answer()>& operation) {
    const Answer right = operation();
    EXPECT_FALSE(right == failing);
    Answer answer = failing;
    const long failed = failEach([&] { answer = operation(); },
                                 [&](bool struck) {
                                   if (struck) {
                                     EXPECT_TRUE(answer == right || answer == failing);
                                   } else {
                                     EXPECT_TRUE(answer == right);
                                   }
                                 });
    EXPECT_GT(failed, 0);
    EXPECT_LT(failed, tooMany);
  }
};

TEST_F(EveryOperation, TextsAreRightOrNull) {
  using Toolkit = CommonTooWenlolib;
  const std::string longName(50, 'n');
  const std::function<Text()> operations[] = {
      Toolkit::groupIdentifier,
      Toolkit::groupContainerDirPath,
      Toolkit::appSupportDirPath,
      Toolkit::prefDirPath,
      Toolkit::cacheDirPath,
      Toolkit::almDirPath,
      Toolkit::confDirPath,
      Toolkit::printerListPath,
      Toolkit::surveyInfoPath,
      [] { return Toolkit::pliDirPath(0); },
      [] { return Toolkit::pliDirPath(1); },
      [] { return Toolkit::WENLOLIBDirPath(1); },
      [] { return Toolkit::calendarWithTimeZoneFormatString(Instant(Seconds(1e9))); },
      [] { return Toolkit::dateFormatWithHourMinSec(Instant(Seconds(1e9))); },
  };
  int index = 0;
  for (const auto& operation : operations) {
    SCOPED_TRACE(index++);
    expectAnswerOr<Text>(std::nullopt, operation);
  }
}

TEST_F(EveryOperation, AReplacementIsRightOrNull) {
  const std::string string(100, 'a');
  const Text before("a");
  const Text after(std::string(60, 'b'));
  Text argument;
  Text answer;
  failEach(
      [&] {
        {
          const AllocationsSpared spared;
          argument = string;
        }
        answer = CommonTooWenlolib::replaceString(std::move(argument), before, after);
      },
      [&](bool struck) {
        if (struck && !answer) return;
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->size(), string.size() * after->size());
      });
}

TEST_F(EveryOperation, DecisionsAreRightOrNo) {
  for (const std::uint32_t option : {0U, 1U, 2U}) {
    expectAnswerOr<bool>(false, [=] { return WENLOLIB::isSupported(option); });
  }
  expectAnswerOr<bool>(false, [] { return WENLOLIB::isSupportedPlm(0); });
}

TEST_F(EveryOperation, ADecisionAgainstARecordStaysNo) {
  const auto expectNo = [](const std::function<bool()>& decision) {
    bool answer = false;
    const long failed = failEach([&] { answer = decision(); }, [&](bool) { EXPECT_FALSE(answer); });
    EXPECT_GT(failed, 0);
  };
  world.propertyLists.add(preferencePath, agreedPreferences(world.clock.time, 4000));
  expectNo([] { return WENLOLIB::isSupported(1); });
  expectNo([] { return WENLOLIB::isSupported(3); });
  expectNo([] { return WENLOLIB::isSupportedPlm(1); });
}

TEST_F(EveryOperation, AnOlderTagTypeStaysOld) {
  const auto record = WENLOLIB::init();
  record->serOtherInfo(Dictionary{{"NEWTAGTYPE", "NO" + std::string(50, 'o')}});
  bool answer = false;
  const long failed = failEach([&] { answer = record->isNewTagTypePrinter(); },
                               [&](bool) { EXPECT_FALSE(answer); });
  EXPECT_GT(failed, 0);
}

TEST_F(EveryOperation, NumbersAreRightOrUnknown) {
  using Toolkit = CommonTooWenlolib;
  expectAnswerOr<std::int32_t>(-1, [] { return Toolkit::getandcompLocalSupportVersion(30100); });
  expectAnswerOr<std::int32_t>(-1, Toolkit::moduleVersion);
  expectAnswerOr<std::int32_t>(-1, Toolkit::moduleVersionFromBundle);
}

TEST_F(EveryOperation, DictionariesAreRightOrNull) {
  using Toolkit = CommonTooWenlolib;
  expectAnswerOr<std::optional<Dictionary>>(std::nullopt, Toolkit::printerListDictionary);
  expectAnswerOr<std::optional<Dictionary>>(std::nullopt, Toolkit::surveyInfoDictionary);
}

TEST_F(EveryOperation, ProbesAreRightOrEmpty) {
  const auto record = WENLOLIB::initWithContents(std::string(50, 'c'), std::string(50, 'n'), 1);
  record->serOtherInfo(Dictionary{{"DeviceID", std::string(50, 'd')},
                                  {"SN", std::string(50, 's')},
                                  {"ROMVER", std::string(50, 'r')}});
  expectAnswerOr<std::string>("", [&] { return record->getCliantVersion(); });
  expectAnswerOr<std::string>("", [&] { return record->getCliantVersionforALM(); });
  expectAnswerOr<std::string>("", [&] { return record->getLocale(); });
  expectAnswerOr<std::string>("", [&] { return record->getDevId(); });
  expectAnswerOr<std::string>("", [&] { return record->getSerialNum(); });
  expectAnswerOr<std::string>("", [&] { return record->getRomVersion(); });
  expectAnswerOr<std::string>("", [] {
    const auto fresh = WENLOLIB::init();
    return fresh ? fresh->getWENLOLIBId() : std::string();
  });
  expectAnswerOr<Text>(std::nullopt, [&] { return record->contents(); });
  expectAnswerOr<Text>(std::nullopt, [&] { return record->applicationName(); });
}

TEST_F(EveryOperation, TheOSVersionIsRightOrEmpty) {
  world.system.setVersion(1'000'000'000, 1'000'000'000,
                          1'000'000'000);  // too long a text to need no memory
  const auto record = WENLOLIB::init();
  expectAnswerOr<std::string>("", [&] { return record->getOSVersion(); });
}

TEST_F(EveryOperation, AShortDateNeedsNoMemory) {
  Text answer;
  for (const bool withDay : {false, true}) {
    FailingAllocations failing(1, FailingAllocations::Span::onwards);
    answer = CommonTooWenlolib::calendarFormatString(dateOf(2024, 3, 15), withDay);
    failing.stop();
    EXPECT_EQ(answer, Text(withDay ? "240315" : "2403"));
  }
}

TEST_F(EveryOperation, ARecordIsBuiltOrNull) {
  std::shared_ptr<WENLOLIB> record;
  const long failed = failEach([&] { record = WENLOLIB::init(); },
                               [&](bool struck) { EXPECT_EQ(record == nullptr, struck); });
  EXPECT_GT(failed, 0);
}

TEST_F(EveryOperation, AFolderIsMadeLevelByLevelOrTheAnswerIsNo) {
  const Text path("/new/folder/with/a/long/enough/name");
  bool made = false;
  const long failed = failEach(
      [&] {
        {
          const AllocationsSpared spared;
          for (const char* level : {"/new/folder", "/new"}) world.files.remove(level);
        }
        made = CommonTooWenlolib::createDir(path);
      },
      [&](bool struck) {
        EXPECT_TRUE(made || struck);
        EXPECT_TRUE(!made || world.files.at(*path));
      });
  EXPECT_GT(failed, 0);
  EXPECT_LT(failed, tooMany);
}

TEST_F(EveryOperation, AProgramThatCannotBeRunForLackOfMemoryGivesZero) {
  world.files.addFile("/bin/tool", "", 0755);
  world.programs.exitStatus = 7;
  const Text path("/bin/tool");
  const std::optional<std::vector<std::string>> arguments({std::string(50, 'x')});
  expectAnswerOr<std::int32_t>(0, [&] { return WENLOLIB::createTask(path, arguments, 1); });
}

}  // namespace
}  // namespace wenlolib::tests
