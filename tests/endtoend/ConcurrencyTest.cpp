// Several writers in one folder, and a reader that never sees part of a file.
#include <unistd.h>

#include <set>

#include "endtoend/KeepingFiles.h"
#include "endtoend/World.h"
#include "endtoend/Writers.h"
#include "support/ExpectedDocument.h"

namespace wenlolib::tests {
namespace {

struct NamedRunner {
  const char* name;
  Runner run;
};

void PrintTo(const NamedRunner& runner, std::ostream* stream) {
  *stream << runner.name;
}

/// On a busy machine the writers may end before the reader gets its turn, so there are more rounds.
constexpr int mostRounds = 50;

class Concurrency : public WorldTest, public testing::WithParamInterface<NamedRunner> {
 protected:
  /// The C library sets up the zone's names at the first local time, under a lock that the thread
  /// sanitizer does not see. So this asks for a local time before the threads start.
  void SetUp() override { ASSERT_TRUE(world.services.calendar->localTime(Instant())); }

  int run(RecordKind kind, const std::function<void()>& meanwhile) {
    return GetParam().run([&](int writer) { return writeAll(kind, writer); }, meanwhile);
  }
};

TEST_P(Concurrency, NoPrinterLogIsLostAndNoneTorn) {
  EXPECT_EQ(run(RecordKind::printer, [] { ::usleep(1000); }), 0);
  std::multiset<std::string> expected;
  for (int writer = 0; writer < writers; ++writer) {
    for (int record = 0; record < recordsEach; ++record) {
      expected.insert(contentsOfRecord(writer, record));
    }
  }
  std::multiset<std::string> found;
  for (int number = 1; number <= records; ++number) {
    const std::string path = world.real(printerLog(number));
    const std::string document = readFile(path);
    EXPECT_TRUE(verifies(document)) << number;
    found.insert(contentsOf(document));
  }
  EXPECT_TRUE(found == expected);
  EXPECT_EQ(world.printerLogs().size(), std::size_t{records});
}

TEST_P(Concurrency, AReaderOfTheMonthsFileSeesNoPart) {
  KeepingFiles files(*world.services.files);
  world.services.files = &files;
  ASSERT_TRUE(recordAs(RecordKind::application, "the first"));
  const std::string path = world.real(marchFile);
  int seen = 0;
  int torn = 0;
  std::set<std::string> different;
  for (int round = 0; round < mostRounds && different.size() < 2; ++round) {
    const int failed = run(RecordKind::application, [&] {
      const std::string document = readFile(path);
      ++seen;
      if (!verifies(document)) ++torn;
      different.insert(document);
    });
    EXPECT_EQ(failed, 0);
  }
  EXPECT_EQ(torn, 0) << "of " << seen;
  EXPECT_GT(different.size(), 1U) << "the reader never read while a writer wrote";
  EXPECT_EQ(namesIn(world.real(applicationFolder)).size(), 1U);
  EXPECT_TRUE(verifies(readFile(path)));
}

/// Makes a new identifier again and again, in a file so large that part of it would be noticed.
int rewriteConfiguration(World& world) {
  const Dictionary older = {{"WENLIBUUID", "NOTDETERMINED"}, {"other", std::string(50'000, 'x')}};
  const std::string xml = *world.services.propertyLists->asXml(older);
  int failed = 0;
  for (int round = 0; round < recordsEach; ++round) {
    // The port writes this, since it replaces files whole. A plain write would show parts.
    const auto outcome = world.services.files->writeAtomically(identifierPath, xml, 0666,
                                                               platform::Publication::replacing);
    if (outcome != platform::Outcome::written) ++failed;
    if (WENLOLIB::init()->getWENLOLIBId().size() != 38) ++failed;
  }
  return failed;
}

TEST_P(Concurrency, AReaderOfTheConfigurationSeesNoPart) {
  ASSERT_EQ(rewriteConfiguration(world), 0);
  int torn = 0;
  std::set<std::string> different;
  const auto work = [&](int) { return rewriteConfiguration(world); };
  for (int round = 0; round < mostRounds && different.size() < 2; ++round) {
    const int failed = GetParam().run(work, [&] {
      const Dictionary configuration = world.configuration();
      const bool whole = configuration.size() == 2 && configuration.contains("WENLIBUUID") &&
                         configuration.at("other").text()->size() == 50'000;
      if (!whole) ++torn;
      if (whole) different.insert(*configuration.at("WENLIBUUID").text());
    });
    EXPECT_EQ(failed, 0);
  }
  EXPECT_EQ(torn, 0);
  EXPECT_GT(different.size(), 1U) << "the reader never read while a writer wrote";
  EXPECT_EQ(namesIn(world.real(configurationFolder)).size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Writers, Concurrency,
                         testing::Values(NamedRunner{"Processes", inProcesses},
                                         NamedRunner{"Threads", inThreads}),
                         [](const auto& each) { return std::string(each.param.name); });

class NearTheLastNumber : public WorldTest {};

TEST_F(NearTheLastNumber, WritersThatFindNoFreeNumberReplaceTheLast) {
  KeepingFiles files(*world.services.files);
  world.services.files = &files;
  for (int number = 1; number <= 990; ++number) writeFile(world.real(printerLog(number)), "taken");
  EXPECT_EQ(inProcesses([](int writer) { return writeAll(RecordKind::printer, writer); },
                        [] { ::usleep(1000); }),
            0);
  EXPECT_EQ(world.printerLogs().size(), 999U);
  EXPECT_EQ(readFile(world.real(printerLog(990))), "taken");
  for (int number = 991; number <= 999; ++number) {
    EXPECT_TRUE(verifies(readFile(world.real(printerLog(number))))) << number;
  }
}

}  // namespace
}  // namespace wenlolib::tests
