#include "platform/posix/Errors.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/LinuxSystem.h"
#include "platform/linux/LoadedFrom.h"
#include "platform/posix/BrokenCalls.h"
#include "platform/posix/Child.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixPropertyLists.h"
#include "platform/posix/TemporaryFolder.h"
#include "platform/posix/WholeFile.h"
#include "xml/Parser.h"

namespace wenlolib::tests {
namespace {

TEST(Errors, OnlyMissingOrForbiddenFilesAreAnswers) {
  for (const int error : {ENOENT, ENOTDIR, EACCES, EPERM, ELOOP, ENAMETOOLONG, EISDIR}) {
    EXPECT_TRUE(platform::posix::isAnswer(error)) << error;
    EXPECT_NO_THROW(platform::posix::throwUnlessAnswer(platform::Step::openFile, error)) << error;
  }
  for (const int error :
       {0, EINTR, EAGAIN, ENOMEM, EMFILE, ENFILE, EIO, ENOSPC, EDQUOT, ESTALE, EBUSY, EROFS}) {
    EXPECT_FALSE(platform::posix::isAnswer(error)) << error;
    EXPECT_THROW(platform::posix::throwUnlessAnswer(platform::Step::openFile, error),
                 std::system_error)
        << error;
  }
}

/// What a service answers in a child whose system calls are broken; "no answer" if it throws.
template <class Break, class Work>
std::string toldWhere(const Break& breaks, const Work& work) {
  return inChild([&]() -> std::string {
    if (!breaks()) return notPermitted;
    try {
      return work();
    } catch (const std::exception&) {
      return "no answer";
    }
  });
}

class CouldNotAnswer : public testing::TestWithParam<int> {
 protected:
  TemporaryFolder folder;
  platform::posix::Root root{folder.path()};
};

TEST_P(CouldNotAnswer, WhatIsAtAPath) {
  writeFile(folder / "file", "bytes");
  platform::posix::SystemCalls calls;
  platform::posix::PosixFiles files(root, calls);
  EXPECT_EQ(toldWhere([] { return breakLooking(GetParam()); },
                      [&] {
                        const bool nothing = files.kindAt("/file") == platform::Kind::nothing;
                        return nothing ? "nothing" : "something";
                      }),
            "no answer");
}

TEST_P(CouldNotAnswer, WhatAFileHolds) {
  writeFile(folder / "file", "bytes");
  const auto told = [&] {
    return platform::posix::readWhole(folder / "file", 100).bytes.value_or("nothing");
  };
  EXPECT_EQ(toldWhere(
                [] {
                  return breakCalls({SYS_openat, SYS_open}, GetParam());
                },
                told),
            "no answer");
  EXPECT_EQ(toldWhere([] { return breakLooking(GetParam()); }, told), "no answer");
  EXPECT_EQ(toldWhere(
                [] {
                  return breakCalls({SYS_pread64, SYS_read}, GetParam());
                },
                told),
            "no answer");
}

TEST_P(CouldNotAnswer, WhetherThereIsABundle) {
  std::filesystem::create_directories(folder / "A.bundle/Contents");
  platform::posix::PosixBundles bundles(
      root, {platform::gnulinux::codeFolder, platform::gnulinux::loadedFrom});
  EXPECT_EQ(
      toldWhere([] { return breakLooking(GetParam()); },
                [&] { return bundles.informationAt("/A.bundle") ? "a bundle" : "no bundle"; }),
      "no answer");
}

TEST_P(CouldNotAnswer, WhereALinkedLibraryLies) {
  std::filesystem::create_directories(folder / "A.bundle/Contents/Linux");
  writeFile(folder / "A.bundle/Contents/Linux/A", "");
  std::filesystem::create_symlink(folder / "A.bundle/Contents/Linux/A", folder / "libA.so");
  EXPECT_EQ(toldWhere(
                [] {
                  return breakCalls({SYS_readlink, SYS_readlinkat}, GetParam());
                },
                [&] {
                  return platform::posix::bundleAround(folder / "libA.so",
                                                       platform::gnulinux::codeFolder)
                      .value_or("null");
                }),
            "no answer");
}

TEST_P(CouldNotAnswer, WhichKernelRuns) {
  EXPECT_EQ(toldWhere([] { return breakCalls({SYS_uname}, GetParam()); },
                      [] { return platform::gnulinux::runningKernel() ? "known" : "unknown"; }),
            "no answer");
}

std::string readsXml() {
  xml::Parser parser("UTF-8");
  return parser.feed("<a/>", true) ? "well-formed" : "malformed";
}

TEST_P(CouldNotAnswer, WithRandomness) {
  const auto broken = [] { return breakCalls({SYS_getrandom}, GetParam()); };
  EXPECT_EQ(
      toldWhere(broken, [] { return platform::gnulinux::LinuxUuids().create().value_or("null"); }),
      "no answer");
  // The C library's own source of random bytes would end the process here.
  EXPECT_EQ(toldWhere(broken, readsXml), "well-formed");
}

INSTANTIATE_TEST_SUITE_P(Errors, CouldNotAnswer,
                         testing::Values(ENOMEM, EMFILE, ENFILE, EIO, ESTALE),
                         testing::PrintToStringParamName());

TEST(Errors, WithoutTheRightToRandomnessThereIsNoIdentifierButXmlIsRead) {
  const auto broken = [] { return breakCalls({SYS_getrandom}, EPERM); };
  EXPECT_EQ(
      toldWhere(broken, [] { return platform::gnulinux::LinuxUuids().create().value_or("null"); }),
      "null");
  EXPECT_EQ(toldWhere(broken, readsXml), "well-formed");
}

}  // namespace
}  // namespace wenlolib::tests
