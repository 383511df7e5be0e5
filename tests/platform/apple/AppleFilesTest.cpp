#include "platform/apple/AppleSystemCalls.h"
#include "platform/apple/StubTest.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

using platform::Outcome;
using platform::Publication;

/// On a system that takes names relative to an open folder, and on an older one that does not.
class AppleFiles : public StubTest, public testing::WithParamInterface<bool> {
 protected:
  AppleFiles() {
    if (!GetParam()) world.absent = {"openat", "renameat"};
  }
  TemporaryFolder folder;
  platform::posix::Root root{folder.path()};
  platform::apple::AppleSystemCalls calls;
  platform::posix::PosixFiles files{root, calls};

  Outcome write(const std::string& name, std::string_view bytes, Publication publication) {
    return files.writeAtomically("/" + name, bytes, 0666, publication);
  }
  [[nodiscard]] bool askedForPaths() const { return !world.calls.empty(); }
};

TEST_P(AppleFiles, AreReplacedWhole) {
  EXPECT_EQ(write("file", "old", Publication::replacing), Outcome::written);
  EXPECT_EQ(write("file", "new", Publication::replacing), Outcome::written);
  EXPECT_EQ(readFile(folder / "file"), "new");
  EXPECT_EQ(modeOf(folder / "file"), mode_t{0666});
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"file"});
  EXPECT_EQ(askedForPaths(), !GetParam());
}

TEST_P(AppleFiles, AreFlushedThroughTheDrivesOwnCacheWhereTheFileSystemCan) {
  for (const int error : {0, ENOTSUP, EINVAL, ENOTTY, EIO}) {
    world.fullFlushError = error;
    world.fullFlushes = world.flushes = 0;
    EXPECT_EQ(write("file", "new", Publication::replacing), Outcome::written);
    EXPECT_EQ(world.fullFlushes, 1U);
    EXPECT_EQ(world.flushes, error == 0 ? 0U : 1U) << error;
    EXPECT_EQ(readFile(folder / "file"), "new");
  }
}

TEST_P(AppleFiles, AreFlushedFullyAfterASignal) {
  world.fullFlushInterrupts = 2;
  EXPECT_EQ(write("file", "new", Publication::replacing), Outcome::written);
  EXPECT_EQ(world.fullFlushes, 3U);
  EXPECT_EQ(world.flushes, 0U) << "the lesser flush does not stand in for one that was interrupted";
  world.fullFlushInterrupts = 1;
  world.fullFlushError = ENOTSUP;
  world.fullFlushes = 0;
  EXPECT_EQ(write("file", "newer", Publication::replacing), Outcome::written);
  EXPECT_EQ(world.fullFlushes, 2U);
  EXPECT_EQ(world.flushes, 1U);
  EXPECT_EQ(readFile(folder / "file"), "newer");
}

TEST_P(AppleFiles, StayAsTheyWereWhereNeitherFlushSucceeds) {
  writeFile(folder / "file", "old");
  world.fullFlushError = ENOTSUP;
  world.flushError = EIO;
  const Outcome outcome = write("file", "new", Publication::replacing);
  EXPECT_EQ(outcome, Outcome::failed);
  EXPECT_EQ(world.flushes, 1U);
  EXPECT_EQ(readFile(folder / "file"), "old");
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"file"});
}

TEST_P(AppleFiles, AreNewOnlyWhereTheNameIsFree) {
  EXPECT_EQ(write("file", "first", Publication::asNew), Outcome::written);
  EXPECT_EQ(write("file", "second", Publication::asNew), Outcome::taken);
  EXPECT_EQ(readFile(folder / "file"), "first");
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"file"});
}

TEST_P(AppleFiles, TakeTheNameOfADanglingLink) {
  ASSERT_EQ(::symlink("nowhere", (folder / "link").c_str()), 0);
  ASSERT_EQ(::symlink("link target", (folder / "good").c_str()), 0);
  writeFile(folder / "link target", "kept");
  EXPECT_EQ(write("link", "new", Publication::asNew), Outcome::written);
  EXPECT_EQ(readFile(folder / "link"), "new");
  EXPECT_EQ(write("good", "new", Publication::asNew), Outcome::taken);
  EXPECT_EQ(readFile(folder / "link target"), "kept");
}

TEST_P(AppleFiles, AreNotThereWithoutAFolder) {
  EXPECT_EQ(write("missing/file", "x", Publication::replacing), Outcome::failed);
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>());
}

TEST_P(AppleFiles, LeaveNothingWhereTheFoldersPathCannotBeFound) {
  writeFile(folder / "file", "old");
  refusingEachCall([&](const std::string& refused) {
    const Outcome outcome = write("file", "old", Publication::replacing);
    EXPECT_EQ(outcome, refused.empty() ? Outcome::written : Outcome::failed);
    EXPECT_EQ(readFile(folder / "file"), "old");
  });
}

INSTANTIATE_TEST_SUITE_P(, AppleFiles, testing::Bool(), [](const auto& each) {
  return each.param ? "Today" : "BeforeRelativeNames";
});

}  // namespace
}  // namespace wenlolib::tests
