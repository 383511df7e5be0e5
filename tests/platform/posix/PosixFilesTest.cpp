#include "platform/posix/PosixFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

#include "platform/posix/Child.h"
#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;
using platform::Kind;
using platform::Outcome;
using platform::Publication;

class PosixFiles : public testing::Test {
 protected:
  TemporaryFolder folder;
  platform::posix::Root root{folder.path()};
  platform::posix::SystemCalls calls;
  platform::posix::PosixFiles files{root, calls};
};

TEST_F(PosixFiles, KindsAreThoseOfWhatALinkLeadsTo) {
  writeFile(folder / "file", "");
  std::filesystem::create_directory(folder / "folder");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  std::filesystem::create_symlink("folder", folder / "to folder");
  std::filesystem::create_symlink("file", folder / "to file");
  std::filesystem::create_symlink("circle", folder / "circle");
  EXPECT_EQ(files.kindAt("/file"), Kind::other);
  EXPECT_EQ(files.kindAt("/pipe"), Kind::other);
  EXPECT_EQ(files.kindAt("/to file"), Kind::other);
  EXPECT_EQ(files.kindAt("/folder"), Kind::folder);
  EXPECT_EQ(files.kindAt("/to folder"), Kind::folder);
  EXPECT_EQ(files.kindAt("/"), Kind::folder);
  EXPECT_EQ(files.kindAt("/missing"), Kind::nothing);
  EXPECT_EQ(files.kindAt("/dangling"), Kind::nothing);
  EXPECT_EQ(files.kindAt("/circle"), Kind::nothing);
  EXPECT_EQ(files.kindAt("/file/below"), Kind::nothing);
  EXPECT_EQ(files.kindAt("/file\0"s), Kind::nothing);
}

TEST_F(PosixFiles, AreLookedUpBelowTheRoot) {
  std::filesystem::create_directory(folder / "etc");
  EXPECT_EQ(files.kindAt("/etc"), Kind::folder);
  EXPECT_EQ(files.kindAt("/proc"), Kind::nothing);
  EXPECT_EQ(files.kindAt("etc"), Kind::folder);
  const platform::posix::Root system("");
  EXPECT_EQ(platform::posix::PosixFiles(system, calls).kindAt("/proc"), Kind::folder);
}

TEST_F(PosixFiles, AProgramIsAFileThatMayBeRun) {
  writeFile(folder / "program", "");
  ASSERT_EQ(::chmod((folder / "program").c_str(), 0755), 0);
  writeFile(folder / "text", "");
  ASSERT_EQ(::chmod((folder / "text").c_str(), 0666), 0);
  std::filesystem::create_symlink("program", folder / "link");
  std::filesystem::create_directory(folder / "folder");
  EXPECT_TRUE(files.isExecutable("/program"));
  EXPECT_TRUE(files.isExecutable("/link"));
  EXPECT_FALSE(files.isExecutable("/text"));
  EXPECT_FALSE(files.isExecutable("/folder"));
  EXPECT_FALSE(files.isExecutable("/missing"));
  EXPECT_FALSE(files.isExecutable("/program\0"s));
}

class PosixFilesUnderMasks : public PosixFiles, public testing::WithParamInterface<mode_t> {};

TEST_P(PosixFilesUnderMasks, FilesAreOpenToAll) {
  const Mask mask(GetParam());
  ASSERT_EQ(files.writeAtomically("/file", "x", 0666, Publication::replacing), Outcome::written);
  ASSERT_EQ(files.writeAtomically("/new", "x", 0666, Publication::asNew), Outcome::written);
  EXPECT_EQ(modeOf(folder / "file"), 0666U);
  EXPECT_EQ(modeOf(folder / "new"), 0666U);
}

TEST_P(PosixFilesUnderMasks, FoldersAreTheOwnersAlone) {
  const Mask mask(GetParam());
  ASSERT_FALSE(files.createFolder("/a/b/c", 0700).hasFailed());
  EXPECT_EQ(modeOf(folder / "a"), 0700U);
  EXPECT_EQ(modeOf(folder / "a/b"), 0700U);
  EXPECT_EQ(modeOf(folder / "a/b/c"), 0700U);
}

INSTANTIATE_TEST_SUITE_P(Masks, PosixFilesUnderMasks, testing::Values(0, 022, 077, 0777),
                         testing::PrintToStringParamName());

TEST_F(PosixFiles, AFolderThatIsThereKeepsItsPermissions) {
  std::filesystem::create_directory(folder / "a");
  ASSERT_EQ(::chmod((folder / "a").c_str(), 0751), 0);
  EXPECT_FALSE(files.createFolder("/a", 0700).hasFailed());
  EXPECT_FALSE(files.createFolder("/a/b/", 0700).hasFailed());
  EXPECT_FALSE(files.createFolder("/a//c", 0700).hasFailed());
  EXPECT_EQ(modeOf(folder / "a"), 0751U);
  EXPECT_EQ(namesIn(folder / "a"), (std::vector<std::string>{"b", "c"}));
}

TEST_F(PosixFiles, EveryLevelOfARelativePathIsMadeInTheWorkingFolder) {
  const std::string answer = inChild([&]() -> std::string {
    if (::chdir(folder.path().c_str()) != 0) return "no such folder";
    const platform::posix::Root noRoot("");
    platform::posix::PosixFiles relative(noRoot, calls);
    return relative.createFolder("a/b/c", 0700).hasFailed() ? "failed" : "made";
  });
  EXPECT_EQ(answer, "made");
  EXPECT_TRUE(std::filesystem::is_directory(folder / "a/b/c"));
}

TEST_F(PosixFiles, FoldersAreMadeByManyThreadsAtOnce) {
  for (int round = 0; round < 50; ++round) {
    const std::string path = "/" + std::to_string(round) + "/a/b/c/d";
    std::atomic<int> made = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
      threads.emplace_back([&] { made += files.createFolder(path, 0700).hasFailed() ? 0 : 1; });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(made, 8);
  }
}

TEST_F(PosixFiles, NoFolderIsMadeWhereAFileStands) {
  writeFile(folder / "file", "");
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  EXPECT_TRUE(files.createFolder("/file", 0700).hasFailed());
  EXPECT_TRUE(files.createFolder("/file/below", 0700).hasFailed());
  EXPECT_TRUE(files.createFolder("/dangling", 0700).hasFailed());
  EXPECT_TRUE(files.createFolder("/nul\0"s, 0700).hasFailed());
  EXPECT_EQ(namesIn(folder.path()), (std::vector<std::string>{"dangling", "file"}));
}

TEST_F(PosixFiles, PermissionsAreSetAsAsked) {
  writeFile(folder / "file", "");
  EXPECT_TRUE(files.setPermissions("/file", 0640));
  EXPECT_EQ(modeOf(folder / "file"), 0640U);
  EXPECT_FALSE(files.setPermissions("/missing", 0666));
  EXPECT_FALSE(files.setPermissions("/file\0"s, 0666));
}

/// Somebody else may have put a link to any file, or a second name of it, at a record's path.
TEST_F(PosixFiles, PermissionsAreSetOnlyOnAFileWithOneNameAndNotThroughALink) {
  writeFile(folder / "target", "");
  writeFile(folder / "twice", "");
  for (const char* name : {"target", "twice"}) {
    ASSERT_EQ(::chmod((folder / name).c_str(), 0600), 0);
  }
  std::filesystem::create_symlink("target", folder / "link");
  std::filesystem::create_hard_link(folder / "twice", folder / "second name");
  std::filesystem::create_directory(folder / "folder");
  ASSERT_EQ(::chmod((folder / "folder").c_str(), 0700), 0);
  for (const char* path : {"/link", "/twice", "/second name", "/folder"}) {
    EXPECT_FALSE(files.setPermissions(path, 0666)) << path;
  }
  EXPECT_EQ(modeOf(folder / "target"), 0600U);
  EXPECT_EQ(modeOf(folder / "twice"), 0600U);
  EXPECT_EQ(modeOf(folder / "folder"), 0700U);
}

TEST_F(PosixFiles, PermissionsAreSetOnAFileThatItsOwnerMayNotOpen) {
  writeFile(folder / "file", "");
  const std::string answer = inChild([&] {
    if (::chmod((folder / "file").c_str(), 0) != 0 ||
        ::chown(folder.path().c_str(), nobody, 0) != 0 ||
        ::chown((folder / "file").c_str(), nobody, 0) != 0 || !becomeUnprivileged()) {
      return notPermitted;
    }
    return std::string(files.setPermissions("/file", 0666) ? "set" : "not set");
  });
  if (answer == notPermitted) GTEST_SKIP() << "giving up rights is not permitted";
  EXPECT_EQ(answer, "set");
  EXPECT_EQ(modeOf(folder / "file"), 0666U);
}

TEST_F(PosixFiles, APathWithANulIsNeverWritten) {
  EXPECT_EQ(files.writeAtomically("/file\0more"s, "x", 0666, Publication::replacing),
            Outcome::failed);
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{});
}

}  // namespace
}  // namespace wenlolib::tests
