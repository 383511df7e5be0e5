// The in-memory platform does what the platform's interfaces promise.
#include "support/MemoryPlatform.h"

#include <gtest/gtest.h>

#include <limits>

namespace wenlolib::tests {
namespace {

using platform::Kind;
using platform::Outcome;
using platform::Publication;

Outcome write(MemoryPlatform& world, const char* path, Publication publication) {
  return world.files.writeAtomically(path, "new", 0666, publication);
}

TEST(MemoryFiles, WritesOnlyIntoAFolderThatIsThere) {
  MemoryPlatform world;
  EXPECT_EQ(write(world, "/a/file", Publication::replacing), Outcome::failed);
  EXPECT_EQ(write(world, "relative", Publication::replacing), Outcome::failed);
  world.files.addFolder("/a");
  EXPECT_EQ(write(world, "/a/file", Publication::replacing), Outcome::written);
  EXPECT_EQ(world.files.bytesAt("/a/file"), "new");
  EXPECT_EQ(world.files.at("/a/file")->mode, 0666U);
  EXPECT_EQ(write(world, "/a/file/below", Publication::replacing), Outcome::failed);
}

TEST(MemoryFiles, PublishesAsNewOnlyWhereNobodyHasTheName) {
  MemoryPlatform world;
  world.files.addFile("/a/file", "old");
  world.files.addFolder("/a/folder");
  world.files.addDanglingLink("/a/link");
  EXPECT_EQ(write(world, "/a/file", Publication::asNew), Outcome::taken);
  EXPECT_EQ(world.files.bytesAt("/a/file"), "old");
  EXPECT_EQ(write(world, "/a/folder", Publication::asNew), Outcome::taken);
  EXPECT_EQ(write(world, "/a/folder", Publication::replacing), Outcome::failed);
  EXPECT_EQ(world.files.kindAt("/a/link"), Kind::nothing);
  EXPECT_EQ(write(world, "/a/link", Publication::asNew), Outcome::written);
}

TEST(MemoryFiles, CreatesAFolderWithItsParents) {
  MemoryPlatform world;
  world.files.addFile("/file", "");
  EXPECT_FALSE(world.files.createFolder("/a/b", 0700).hasFailed());
  EXPECT_EQ(world.files.at("/a")->mode, 0700U);
  EXPECT_EQ(world.files.kindAt("/a/b"), Kind::folder);
  EXPECT_FALSE(world.files.createFolder("/a/b", 0777).hasFailed());
  EXPECT_EQ(world.files.at("/a/b")->mode, 0700U);
  EXPECT_TRUE(world.files.createFolder("/file/b", 0700).hasFailed());
  EXPECT_TRUE(world.files.createFolder("/file", 0700).hasFailed());
}

TEST(MemoryPropertyLists, ReadWhatTheyWrote) {
  MemoryPlatform world;
  const Dictionary dictionary = {{"a", 1}, {"b", Value::Array{true, "x"}}};
  world.files.addFile("/list", *world.propertyLists.asXml(dictionary));
  world.files.addFile("/other", "text");
  EXPECT_EQ(world.propertyLists.read("/list").dictionary, dictionary);
  EXPECT_EQ(world.propertyLists.read("/other").dictionary, std::nullopt);
  EXPECT_EQ(world.propertyLists.read("/missing").dictionary, std::nullopt);
}

TEST(MemoryCalendar, ShowsDatesOnBothSidesOfTheEpoch) {
  MemoryPlatform world;
  world.calendar.secondsFromGMT = 0;
  const auto shown = [&](double seconds) {
    return world.calendar.formatted(Instant(Seconds(seconds)), "%Y-%m-%d %H:%M:%S %y %z %%");
  };
  EXPECT_EQ(shown(0), Text("1970-01-01 00:00:00 70 +0000 %"));
  EXPECT_EQ(shown(-0.5), Text("1969-12-31 23:59:59 69 +0000 %"));
  EXPECT_EQ(shown(951782400.0), Text("2000-02-29 00:00:00 00 +0000 %"));
  EXPECT_EQ(shown(1710461107.9), Text("2024-03-15 00:05:07 24 +0000 %"));
  EXPECT_EQ(shown(std::numeric_limits<double>::infinity()), std::nullopt);
  EXPECT_EQ(shown(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

TEST(Faults, StrikeTheCallTheyArePlannedFor) {
  MemoryPlatform world;
  world.files.addFile("/a", "");
  world.faults.fail("files.kindAt", 2);
  EXPECT_EQ(world.files.kindAt("/a"), Kind::other);
  EXPECT_EQ(world.files.kindAt("/a"), Kind::nothing);
  EXPECT_EQ(world.files.kindAt("/a"), Kind::other);
  world.faults.failAlways("uuids.create");
  EXPECT_EQ(world.uuids.create(), std::nullopt);
  world.faults.forgive();
  EXPECT_EQ(world.uuids.create(), Text("00000000-0000-4000-8000-000000000001"));
}

TEST(Journal, KeepsEveryCallInOrder) {
  MemoryPlatform world;
  static_cast<void>(world.clock.now());
  static_cast<void>(world.system.gestalt(platform::Selector::systemArchitecture));
  static_cast<void>(world.files.createFolder("/a", 0700));
  static_cast<void>(write(world, "/a/b", Publication::asNew));
  static_cast<void>(world.programs.run("/bin/x", {"-a", "b"}, true));
  EXPECT_EQ(world.journal.lines(),
            (Journal::Lines{"clock.now", "system.gestalt sysa", "files.createFolder /a 0700",
                            "files.writeAtomically /a/b asNew", "programs.run /bin/x -a b wait"}));
}

/// Calls the functions by name, since a compiler may leave out a pair of new and delete
/// expressions.
void allocateAndFree() {
  ::operator delete(::operator new(1));
}

TEST(FailingAllocations, TheKthFailsAndNoOther) {
  const FailingAllocations failing(2);
  EXPECT_NO_THROW(allocateAndFree());
  EXPECT_THROW(allocateAndFree(), std::bad_alloc);
  EXPECT_NO_THROW(allocateAndFree());
}

TEST(FailingAllocations, FailOnwardsWhereAskedFor) {
  int* first = nullptr;
  int* second = nullptr;
  {
    const FailingAllocations failing(1, FailingAllocations::Span::onwards);
    first = new (std::nothrow) int(1);
    second = new (std::nothrow) int(1);
  }
  EXPECT_EQ(first, nullptr);
  EXPECT_EQ(second, nullptr);
  EXPECT_NO_THROW(allocateAndFree());
}

}  // namespace
}  // namespace wenlolib::tests
