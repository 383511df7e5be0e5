#include <gtest/gtest.h>

#include "support/PlatformTest.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using platform::Kind;

class CreateDir : public PlatformTest {
 protected:
  CreateDir() { world.files.addFolder("/a", 0755); }

  Journal::Lines created() const { return world.journal.linesOf("files.createFolder"); }
};

TEST_F(CreateDir, MakesEveryMissingLevelForItsOwnerAlone) {
  EXPECT_TRUE(CommonTooWenlolib::createDir("/a/b/c"));
  EXPECT_EQ(created(),
            (Journal::Lines{"files.createFolder /a/b 0700", "files.createFolder /a/b/c 0700"}));
  EXPECT_EQ(world.files.at("/a")->mode, 0755U);
  EXPECT_EQ(world.files.at("/a/b")->mode, 0700U);
  EXPECT_EQ(world.files.at("/a/b/c")->mode, 0700U);
}

TEST_F(CreateDir, LeavesAnExistingFolderAsItIs) {
  EXPECT_TRUE(CommonTooWenlolib::createDir("/a"));
  EXPECT_EQ(world.journal.lines(), Journal::Lines{"files.kindAt /a"});
  EXPECT_EQ(world.files.at("/a")->mode, 0755U);
}

TEST_F(CreateDir, AFileAtThePathCountsAsThere) {
  world.files.addFile("/a/file", "text");
  EXPECT_TRUE(CommonTooWenlolib::createDir("/a/file"));
  EXPECT_EQ(world.files.bytesAt("/a/file"), "text");
  EXPECT_TRUE(created().empty());
}

TEST_F(CreateDir, FailsBelowAPlainFile) {
  world.files.addFile("/a/b", "text");
  EXPECT_FALSE(CommonTooWenlolib::createDir("/a/b/c"));
  EXPECT_EQ(world.files.bytesAt("/a/b"), "text");
  EXPECT_EQ(world.files.at("/a/b/c"), std::nullopt);
  EXPECT_EQ(created(),
            Journal::Lines{"files.createFolder /a/b/c 0700"});  // the file counts as there
}

TEST_F(CreateDir, NullAndBytesThatAreNotTextFail) {
  EXPECT_FALSE(CommonTooWenlolib::createDir(std::nullopt));
  EXPECT_FALSE(CommonTooWenlolib::createDir("/a/\xFF"));
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(CreateDir, StopsAtTheFirstFailureAndKeepsWhatWasMade) {
  world.faults.fail("files.createFolder", 2);
  EXPECT_FALSE(CommonTooWenlolib::createDir("/a/b/c/d"));
  EXPECT_EQ(created(),
            (Journal::Lines{"files.createFolder /a/b 0700", "files.createFolder /a/b/c 0700"}));
  EXPECT_EQ(world.files.kindAt("/a/b"), Kind::folder);
}

TEST_F(CreateDir, DoubledAndTrailingSlashesMakeNoLevels) {
  EXPECT_TRUE(CommonTooWenlolib::createDir("/n"));
  world.journal.clear();
  EXPECT_TRUE(CommonTooWenlolib::createDir("/n//m/"));
  EXPECT_EQ(created(), (Journal::Lines{"files.createFolder /n//m 0700"}));
}

TEST_F(CreateDir, AnEmptyPathHasNoLevelsToMake) {
  EXPECT_TRUE(CommonTooWenlolib::createDir(""));
  EXPECT_TRUE(created().empty());
}

TEST_F(CreateDir, ADanglingLinkIsAMissingLevel) {
  world.files.addDanglingLink("/a/link");
  static_cast<void>(CommonTooWenlolib::createDir("/a/link/c"));
  ASSERT_FALSE(created().empty());
  EXPECT_EQ(created().front(), "files.createFolder /a/link 0700");
}

}  // namespace
}  // namespace wenlolib::tests
