// The words that say why a record is missing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "explain/Explanation.h"
#include "library/Recording.h"
#include "library/ToolPlatform.h"
#include "library/Wording.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

using platform::ListReading;
using platform::ListState;
using platform::Reason;
using platform::Step;
using tools::listTrouble;
using tools::whyNotWritten;

TEST(Reasons, AWriteThatFailedNamesStepErrorAndRemedy) {
  const struct {
    Reason reason;
    const char* text;
  } table[] = {
      {{Step::findFolder, ENOENT},
       "not written: opening the folder failed: No such file or directory. Its folder is missing."
       " wenlolib init makes PLM, ALM and Config. A \"/\" in the name leads into a sub-folder: make"
       " that yourself."},
      {{Step::findFolder, ENOTDIR},
       "not written: opening the folder failed: Not a directory. Part of its path is not a "
       "folder: move that part away."},
      {{Step::makeFile, EACCES},
       "not written: making the file failed: Permission denied. Let this user write in its "
       "folder."},
      {{Step::makeFile, EMFILE},
       "not written: making the file failed: Too many open files. Raise the limit on open files "
       "(ulimit -n)."},
      {{Step::makeFile, EROFS},
       "not written: making the file failed: Read-only file system. Remount the disk "
       "read-write."},
      {{Step::writeFile, ENOSPC},
       "not written: writing the file failed: No space left on device. Make room on the disk."},
      {{Step::writeFile, EDQUOT},
       "not written: writing the file failed: Disk quota exceeded. Make room on the disk."},
      {{Step::writeFile, EFBIG},
       "not written: writing the file failed: File too large. Raise the limit on file sizes "
       "(ulimit -f)."},
      {{Step::writeFile, 0}, "not written: writing the file failed"},
      {{Step::flushFile, EIO},
       "not written: writing the file to the disk failed: Input/output error"},
      {{Step::nameFile, ENAMETOOLONG},
       "not written: giving the file its name failed: File name too long. Choose a shorter name."},
      {{Step::nameFile, EISDIR},
       "not written: giving the file its name failed: Is a directory. A folder is in its place: "
       "move it away."},
      {{Step::takeRandomness, ENOSYS},
       "not written: asking the system for random bytes failed: Function not implemented"},
  };
  for (const auto& row : table) EXPECT_EQ(whyNotWritten(row.reason), row.text);
}

ListReading reading(ListState state, platform::ListFault fault = {}, Reason reason = {}) {
  ListReading list;
  list.state = state;
  list.fault = fault;
  list.reason = reason;
  return list;
}

TEST(Reasons, AListThatCannotBeReadIsNamedForWhatItIs) {
  const struct {
    ListReading list;
    const char* text;
  } table[] = {
      {reading(ListState::whole), ""},
      {reading(ListState::partial), "some values cannot be read and are left out"},
      {reading(ListState::notRead, {}, {Step::openFile, ENOENT}), "missing"},
      {reading(ListState::notRead, {}, {Step::openFile, EISDIR}), "a folder"},
      {reading(ListState::notRead, {}, {Step::openFile, 0}), "not a regular file"},
      {reading(ListState::notRead, {}, {Step::openFile, EACCES}),
       "not readable: opening the file failed: Permission denied"},
      {reading(ListState::notRead, {}, {Step::readFile, EIO}),
       "not readable: reading the file failed: Input/output error"},
      {reading(ListState::empty), "empty"},
      {reading(ListState::oldForm), "neither XML nor binary; the old form in braces is not read"},
      {reading(ListState::otherRoot), "a property list without a dictionary at its root"},
      {reading(ListState::damaged, {"a key has no value", 3, 40}),
       "damaged: a key has no value (line 3)"},
      {reading(ListState::damaged, {"a reference leads to no object", 0, 118}),
       "damaged: a reference leads to no object (byte 118)"},
      {reading(ListState::tooLarge), "larger than 16.0 MiB"},
      {reading(ListState::tooLarge, {"it holds too many values", 0, 8}),
       "too large: it holds too many values (byte 8)"},
  };
  for (const auto& row : table) EXPECT_EQ(listTrouble(row.list), row.text);
}

// A platform on which each service in turn gives no answer.

[[noreturn]] void giveNoAnswer(Step step) {
  throw platform::NoAnswer({step, EMFILE});
}

struct NoFiles : platform::ForwardingFiles {
  using ForwardingFiles::ForwardingFiles;
  platform::Kind kindAt(const std::string&) override { giveNoAnswer(Step::findFile); }
};
struct NoLists : platform::ForwardingPropertyLists {
  using ForwardingPropertyLists::ForwardingPropertyLists;
  ListReading read(const std::string&) override { giveNoAnswer(Step::openFile); }
};
struct NoBundles : platform::ForwardingBundles {
  using ForwardingBundles::ForwardingBundles;
  std::optional<Dictionary> informationAt(const std::string&) override {
    giveNoAnswer(Step::openFile);
  }
  std::optional<Dictionary> ownInformation() override { giveNoAnswer(Step::openFile); }
};
struct NoUser : platform::User {
  Text loginName() override { giveNoAnswer(Step::askUser); }
  Text homeFolder() override { giveNoAnswer(Step::askUser); }
  Text libraryFolder() override { giveNoAnswer(Step::askUser); }
  platform::Container groupContainer(std::string_view) override { giveNoAnswer(Step::askUser); }
  Text locale() override { giveNoAnswer(Step::askUser); }
};
struct NoSystem : platform::System {
  std::optional<std::int32_t> gestalt(platform::Selector) override {
    giveNoAnswer(Step::askSystem);
  }
};
struct NoClock : platform::Clock {
  Instant now() override { giveNoAnswer(Step::askClock); }
};
struct NoUuids : platform::Uuids {
  Text create() override { giveNoAnswer(Step::takeRandomness); }
};
struct NoCalendar : platform::Calendar {
  std::optional<platform::LocalTime> localTime(Instant) override { throw std::bad_alloc(); }
  Text formatted(Instant, std::string_view) override { throw std::bad_alloc(); }
};

class NoAnswers : public InstalledTest {
 protected:
  NoAnswers() { world.propertyLists.add(identifierPath, {}); }

  NoFiles files{world.files};
  NoLists lists{world.propertyLists};
  NoBundles bundles{world.bundles};
  NoUser user;
  NoSystem system;
  NoClock clock;
  NoUuids uuids;
  NoCalendar calendar;

  /// The platform with one of its services replaced by a broken one.
  template <class Service>
  platform::Platform with(Service* platform::Platform::*place, Service& broken) {
    platform::Platform services = world.services;
    services.*place = &broken;
    return services;
  }

  struct Case {
    platform::Platform services;
    std::string text;
  };
  const std::string tooMany = " failed: Too many open files";
  const std::string none = "the system gave no answer: ";
  std::vector<Case> cases{
      {with<platform::Files>(&platform::Platform::files, files),
       none + "looking for the file" + tooMany + " (" + preferencePath + ")"},
      {with<platform::PropertyLists>(&platform::Platform::propertyLists, lists),
       none + "opening the file" + tooMany + " (" + preferencePath + ")"},
      {with<platform::User>(&platform::Platform::user, user),
       none + "looking the user up" + tooMany},
      {with<platform::System>(&platform::Platform::system, system),
       none + "asking the system for its version" + tooMany},
      {with<platform::Clock>(&platform::Platform::clock, clock),
       none + "asking for the time" + tooMany},
  };
};

TEST_F(NoAnswers, OfTheDecisionAreToldAndCountAsARefusal) {
  for (const Case& one : cases) {
    const platform::Substitute substitute(one.services);
    const tools::Explanation explanation = tools::explain(RecordKind::application, 1);
    EXPECT_FALSE(explanation.allowed());
    EXPECT_EQ(explanation.unanswered, one.text);
    EXPECT_EQ(reasonCode(explanation), "no_answer");
    EXPECT_EQ(outcomeText(explanation, tools::Paint(false)),
              "refused: " + one.text + " (no_answer)");
    EXPECT_FALSE(WENLOLIB::isSupported(1)) << "so says the library";
  }
}

TEST_F(NoAnswers, OfARecordAreTold) {
  std::vector<Case> recorded = cases;
  recorded.push_back({with<platform::Bundles>(&platform::Platform::bundles, bundles),
                      none + "opening the file" + tooMany});
  recorded.push_back({with<platform::Uuids>(&platform::Platform::uuids, uuids),
                      none + "asking the system for random bytes" + tooMany});
  recorded.push_back({with<platform::Calendar>(&platform::Platform::calendar, calendar),
                      "there is not enough memory"});
  const tools::RecordRequest request{RecordKind::application, "App", 1, {}, "x"};
  for (const Case& one : recorded) {
    const tools::RecordOutcome outcome = tools::record(one.services, request);
    EXPECT_FALSE(outcome.answer) << one.text;
    EXPECT_FALSE(outcome.document) << one.text;
    ASSERT_TRUE(outcome.unanswered) << one.text;
    EXPECT_EQ(unansweredText(*outcome.unanswered), one.text);
  }
}

TEST_F(NoAnswers, OfAPreviewAreTold) {
  const tools::Preview preview =
      tools::preview(with<platform::Calendar>(&platform::Platform::calendar, calendar),
                     {RecordKind::application, "App", 1, {}, "x"});
  EXPECT_FALSE(preview.document);
  ASSERT_TRUE(preview.unanswered);
  EXPECT_EQ(unansweredText(*preview.unanswered), "there is not enough memory");
}

class Faults : public InstalledTest {};

TEST_F(Faults, OfAWriteAreToldWithTheRecord) {
  world.faults.failAlways("files.writeAtomically");
  for (const RecordKind kind : enumerators<RecordKind>) {
    const tools::RecordOutcome outcome = tools::record(world.services, {kind, "App", 1, {}, "x"});
    ASSERT_TRUE(outcome.document);
    EXPECT_EQ(whyNotWritten(outcome.document->outcome.reason),
              "not written: writing the file failed: No space left on device. Make room on the "
              "disk.");
  }
}

TEST_F(Faults, OfAReadingAreToldAtTheirGate) {
  world.faults.failAlways("propertyLists.read");
  for (const RecordKind kind : enumerators<RecordKind>) {
    const tools::Explanation explanation = tools::explain(kind, 1);
    EXPECT_EQ(explanation.refusedBy, Gate::preferences);
    const auto step = std::ranges::find(explanation.steps, StepState::refused, &tools::Step::state);
    ASSERT_NE(step, explanation.steps.end());
    EXPECT_EQ(step->found, "not readable: opening the file failed: Permission denied");
  }
}

/// What the command's `record` says about a record that it makes now.
std::string told(const platform::Platform& services, RecordKind kind) {
  const tools::RecordOutcome outcome = tools::record(services, {kind, "App", 1, {}, "x"});
  if (outcome.document) {
    const platform::Outcome& written = outcome.document->outcome;
    return written == platform::Outcome::written ? "recorded" : whyNotWritten(written.reason);
  }
  if (outcome.answer) return "no document";
  if (outcome.unanswered) return unansweredText(*outcome.unanswered);
  return std::string(reasonCode(tools::explain(kind, 1)));
}

TEST_F(Faults, OfEveryKindAreToldWithTheRecord) {
  const std::string full =
      "not written: writing the file failed: No space left on device. Make room on the disk.";
  const std::vector<std::pair<const char*, std::string>> rows = {
      {"bundles.informationAt", "recorded"},
      {"bundles.ownInformation", "recorded"},
      {"calendar.formatted", "recorded"},
      {"calendar.localTime", "recorded"},
      {"cipher.rc4", "recorded"},
      {"clock.now", "recorded"},
      {"files.createFolder", "recorded"},
      {"files.isExecutable", "recorded"},
      {"files.kindAt", "no_preferences"},
      {"files.setPermissions", "recorded"},
      {"files.writeAtomically", full},
      {"programs.run", "recorded"},
      {"propertyLists.asXml", "recorded"},
      {"propertyLists.read", "no_preferences"},
      {"system.gestalt", "os_version_unknown"},
      {"user.groupContainer", "no_preferences"},
      {"uuids.create", "recorded"},
      {"xml.serialised", "no document"},
  };
  for (const auto& [fault, expected] : rows) {
    for (const RecordKind kind : enumerators<RecordKind>) {
      MemoryPlatform faulty;
      install(faulty);
      faulty.faults.failAlways(fault);
      const platform::Substitute substitute(faulty.services);
      EXPECT_EQ(told(faulty.services, kind), expected) << fault;
    }
  }
}

class PartialPreferences : public InstalledTest {};

TEST_F(PartialPreferences, AreToldByTheExplanation) {
  world.propertyLists.partial = true;
  const tools::Explanation explanation = tools::explain(RecordKind::application, 1);
  EXPECT_TRUE(explanation.allowed()) << "what was read counts";
  const auto step = std::ranges::find(explanation.steps, Gate::preferences, &tools::Step::gate);
  ASSERT_NE(step, explanation.steps.end());
  EXPECT_EQ(step->found, "a dictionary of 3 keys; some values cannot be read and are left out");
}

TEST_F(NoAnswers, AreNoneWhereAllIsWell) {
  const tools::RecordOutcome outcome =
      tools::record(world.services, {RecordKind::application, "App", 1, {}, "x"});
  EXPECT_TRUE(outcome.answer);
  EXPECT_FALSE(outcome.unanswered);
}

TEST(VersionText, SaysWhatAVersionWasReadAs) {
  EXPECT_EQ(tools::versionText(Text(), -1), "nothing");
  EXPECT_EQ(tools::versionText(Text("1.2.3"), 10203), "\"1.2.3\" (10203)");
  const std::string wrong = tools::versionText(Text("x"), -1);
  EXPECT_TRUE(wrong.starts_with("\"x\", which is")) << wrong;
}

}  // namespace
}  // namespace wenlolib::tests
