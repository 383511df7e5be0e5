#include "platform/posix/AtomicFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <set>
#include <thread>

#include "platform/posix/Child.h"
#include "platform/posix/TemporaryFolder.h"
#include "platform/posix/WatchedCalls.h"

namespace wenlolib::tests {
namespace {

using platform::Outcome;
using platform::Publication;
using platform::Step;
using platform::posix::writeAtomically;
using Names = std::vector<std::string>;

class AtomicFile : public testing::Test {
 protected:
  TemporaryFolder folder;
  WatchedCalls calls;
  std::string path = folder / "file";

  Outcome replace(std::string_view bytes = "new") {
    return writeAtomically(calls, path, bytes, 0666, Publication::replacing);
  }
  Outcome publish(std::string_view bytes = "new") {
    return writeAtomically(calls, path, bytes, 0666, Publication::asNew);
  }
};

/// Opens no folder, but notes which one was to be opened.
class AskedForFolder : public WatchedCalls {
 public:
  std::string asked;
  int openFolder(const char* path) override {
    asked = path;
    errno = EACCES;
    return -1;
  }
};

TEST_F(AtomicFile, IsMadeInTheFolderOfItsTarget) {
  const struct {
    const char *path, *folder;
  } table[] = {{"/a/b/file", "/a/b"}, {"/a/file", "/a"}, {"/file", "/"},
               {"a/file", "a"},       {"file", "."},     {"//file", "/"}};
  for (const auto& row : table) {
    AskedForFolder asked;
    EXPECT_EQ(writeAtomically(asked, row.path, "bytes", 0666, Publication::replacing),
              Outcome::failed);
    EXPECT_EQ(asked.asked, row.folder) << row.path;
  }
}

/// Notes the names under which files are made.
class NotedNames : public WatchedCalls {
 public:
  Names names;
  int create(int folder, const char* name) override {
    names.push_back(name);
    return WatchedCalls::create(folder, name);
  }
};

TEST_F(AtomicFile, IsUnfinishedUnderANameOfRandomDigits) {
  NotedNames noted;
  constexpr int files = 40;
  for (int i = 0; i < files; ++i) {
    EXPECT_EQ(writeAtomically(noted, path, "", 0666, Publication::replacing), Outcome::written);
  }
  const std::string_view prefix = ".wenlolib-";
  std::set<char> first, second;
  for (const std::string& name : noted.names) {
    ASSERT_EQ(name.size(), prefix.size() + 32 + 4) << name;
    for (std::size_t i = prefix.size(); i < prefix.size() + 32; i += 2) {
      first.insert(name[i]);
      second.insert(name[i + 1]);
    }
  }
  EXPECT_EQ(std::set<std::string>(noted.names.begin(), noted.names.end()).size(), files);
  EXPECT_EQ(std::string(first.begin(), first.end()), "0123456789ABCDEF");
  EXPECT_EQ(std::string(second.begin(), second.end()), "0123456789ABCDEF");
}

/// What a power cut leaves depends on this order: a file gets its name only when it is on the disk.
TEST_F(AtomicFile, IsFlushedBeforeItTakesItsName) {
  ASSERT_EQ(replace(), Outcome::written);
  EXPECT_EQ(calls.journal, (Names{"openFolder", "create", "write", "changeMode", "flush", "close",
                                  "rename", "close"}));
}

TEST_F(AtomicFile, AsNewToo) {
  ASSERT_EQ(publish(), Outcome::written);
  EXPECT_EQ(calls.journal, (Names{"openFolder", "create", "write", "changeMode", "flush", "close",
                                  "renameWithoutReplacing", "close"}));
}

TEST_F(AtomicFile, HoldsTheBytesWithTheModeWhateverTheMask) {
  const Mask mask(0777);
  ASSERT_EQ(replace("some\nbytes"), Outcome::written);
  EXPECT_EQ(readFile(path), "some\nbytes");
  EXPECT_EQ(modeOf(path), 0666U);
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

TEST_F(AtomicFile, OfNoBytesIsAFileToo) {
  ASSERT_EQ(replace(""), Outcome::written);
  EXPECT_EQ(std::filesystem::file_size(path), 0U);
  EXPECT_EQ(calls.count("flush"), 1);
}

TEST_F(AtomicFile, ReplacesALinkAndNotWhatItLeadsTo) {
  writeFile(folder / "target", "target");
  std::filesystem::create_symlink("target", path);
  ASSERT_EQ(replace(), Outcome::written);
  EXPECT_FALSE(std::filesystem::is_symlink(path));
  EXPECT_EQ(readFile(folder / "target"), "target");
}

TEST_F(AtomicFile, IsHiddenWhileItIsUnfinished) {
  Names seen;
  calls.beforePublishing = [&] { seen = namesIn(folder.path()); };
  ASSERT_EQ(replace(), Outcome::written);
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_TRUE(seen[0].starts_with(platform::posix::unfinishedPrefix)) << seen[0];
  EXPECT_GE(seen[0].size(), 32U + platform::posix::unfinishedPrefix.size());
}

TEST_F(AtomicFile, GoesOnAfterInterruptionsAndShortWrites) {
  writeFile(path, "old");
  calls.longestWrite = 3;
  for (const char* name : {"openFolder", "create", "write", "changeMode", "flush"}) {
    calls.interruptions[name] = 2;
  }
  ASSERT_EQ(replace("ten bytes!"), Outcome::written);
  EXPECT_EQ(readFile(path), "ten bytes!");
  EXPECT_EQ(calls.count("write"), 4 + 2);
  EXPECT_EQ(calls.count("flush"), 1 + 2);
}

TEST_F(AtomicFile, AnInterruptedCloseIsNotRepeated) {
  calls.interruptions["close"] = 1;
  ASSERT_EQ(replace(), Outcome::written);
  EXPECT_EQ(calls.count("close"), 2);  // the file's and the folder's
}

struct Failure {
  const char* call;
  int error;
  Step step;
};

TEST_F(AtomicFile, WhateverFailsTheEarlierFileStaysAndNothingElse) {
  for (const Failure& failure :
       {Failure{"openFolder", EACCES, Step::findFolder},
        Failure{"openFolder", EMFILE, Step::findFolder}, Failure{"create", EACCES, Step::makeFile},
        Failure{"create", ENOSPC, Step::makeFile}, Failure{"create", EROFS, Step::makeFile},
        Failure{"write", ENOSPC, Step::writeFile}, Failure{"write", EIO, Step::writeFile},
        Failure{"write", EDQUOT, Step::writeFile}, Failure{"flush", EIO, Step::flushFile},
        Failure{"flush", ENOSPC, Step::flushFile}, Failure{"close", EIO, Step::writeFile},
        Failure{"close", EDQUOT, Step::writeFile}, Failure{"rename", EACCES, Step::nameFile},
        Failure{"rename", EIO, Step::nameFile}}) {
    writeFile(path, "old");
    calls.failing = {{failure.call, failure.error}};
    calls.journal.clear();
    const Outcome outcome = replace();
    EXPECT_EQ(outcome, Outcome::failed) << failure.call;
    EXPECT_EQ(outcome.reason.step, failure.step) << failure.call;
    EXPECT_EQ(outcome.reason.error, failure.error) << failure.call;
    EXPECT_EQ(readFile(path), "old") << failure.call;
    EXPECT_EQ(namesIn(folder.path()), Names{"file"}) << failure.call;
    EXPECT_GT(calls.count(failure.call), 0);
  }
}

TEST_F(AtomicFile, WhateverFailsNothingIsPublishedAsNew) {
  for (const char* call : {"openFolder", "create", "write", "flush", "close"}) {
    calls.failing = {{call, EIO}};
    EXPECT_EQ(publish(), Outcome::failed) << call;
    EXPECT_EQ(namesIn(folder.path()), Names{}) << call;
  }
  calls.failing = {{"renameWithoutReplacing", EIO}, {"link", EIO}, {"rename", EIO}};
  EXPECT_EQ(publish(), Outcome::failed);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(AtomicFile, AFileSystemWithoutPermissionsIsGoodEnough) {
  calls.failing = {{"changeMode", EPERM}};
  EXPECT_EQ(replace(), Outcome::written);
  EXPECT_EQ(readFile(path), "new");
}

TEST_F(AtomicFile, AWriteThatMakesNoHeadwayFails) {
  calls.longestWrite = 0;
  EXPECT_EQ(replace(), Outcome::failed);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(AtomicFile, DescriptorsAreGivenBackWhateverFails) {
  const auto before = namesIn("/proc/self/fd").size();
  for (const char* call : {"create", "write", "flush", "close", "rename"}) {
    calls.failing = {{call, EIO}};
    EXPECT_EQ(replace(), Outcome::failed);
  }
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

TEST_F(AtomicFile, AsNewATakenNameStaysWithWhoeverHasIt) {
  writeFile(path, "old");
  EXPECT_EQ(publish(), Outcome::taken);
  EXPECT_EQ(readFile(path), "old");
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

TEST_F(AtomicFile, AsNewANameTakenAtTheLastMomentIsTaken) {
  calls.beforePublishing = [&] { writeFile(path, "faster"); };
  EXPECT_EQ(publish(), Outcome::taken);
  EXPECT_EQ(readFile(path), "faster");
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

TEST_F(AtomicFile, AsNewALinkServesWhereRenamingCannot) {
  for (const int error : {ENOSYS, EINVAL}) {
    std::filesystem::remove(path);
    calls.failing = {{"renameWithoutReplacing", error}};
    calls.journal.clear();
    EXPECT_EQ(publish(), Outcome::written);
    EXPECT_EQ(readFile(path), "new");
    EXPECT_EQ(namesIn(folder.path()), Names{"file"});
    EXPECT_EQ(std::filesystem::hard_link_count(path), 1U);
    EXPECT_EQ(calls.count("rename"), 0);
    EXPECT_EQ(publish("newer"), Outcome::taken);
    EXPECT_EQ(readFile(path), "new");
    EXPECT_EQ(namesIn(folder.path()), Names{"file"});
  }
}

/// Over a network, a request may be repeated if its first answer was lost.
class RepeatedLink : public WatchedCalls {
 public:
  int link(int folder, const char* from, const char* to) override {
    static_cast<void>(WatchedCalls::link(folder, from, to));
    return WatchedCalls::link(folder, from, to);
  }
};

TEST_F(AtomicFile, AsNewALinkThatThisWriterMadeIsNotAnotherWriters) {
  RepeatedLink repeated;
  repeated.failing = {{"renameWithoutReplacing", EINVAL}};
  EXPECT_EQ(writeAtomically(repeated, path, "new", 0666, Publication::asNew), Outcome::written);
  EXPECT_EQ(readFile(path), "new");
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
  EXPECT_EQ(writeAtomically(repeated, path, "newer", 0666, Publication::asNew), Outcome::taken);
  EXPECT_EQ(readFile(path), "new");
}

/// A file system without exclusive renames and without links.
class AtomicFileUnderClaims : public AtomicFile {
 protected:
  AtomicFileUnderClaims() { calls.failing = {{"renameWithoutReplacing", EINVAL}, {"link", EPERM}}; }

  const std::string claim = folder / ".wenlolib-file.tmp";

  void leaveClaim(long seconds) const {
    writeFile(claim, "");
    const timespec then{::time(nullptr) - seconds, 0};
    const timespec times[] = {then, then};
    ASSERT_EQ(::utimensat(AT_FDCWD, claim.c_str(), times, 0), 0);
  }
};

TEST_F(AtomicFileUnderClaims, AsNewAFileIsRenamedAndTheClaimIsGone) {
  Names seen;
  calls.beforePublishing = [&] { seen = namesIn(folder.path()); };
  EXPECT_EQ(publish(), Outcome::written);
  EXPECT_EQ(readFile(path), "new");
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
  EXPECT_EQ(seen.size(), 2U);
  EXPECT_EQ(std::ranges::count(seen, ".wenlolib-file.tmp"), 1);
}

TEST_F(AtomicFileUnderClaims, AsNewATakenNameStaysWithWhoeverHasIt) {
  writeFile(path, "old");
  EXPECT_EQ(publish(), Outcome::taken);
  EXPECT_EQ(readFile(path), "old");
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

TEST_F(AtomicFileUnderClaims, AsNewANameTakenAtTheLastMomentIsTaken) {
  calls.beforePublishing = [&] { writeFile(path, "faster"); };
  EXPECT_EQ(publish(), Outcome::taken);
  EXPECT_EQ(readFile(path), "faster");
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

TEST_F(AtomicFileUnderClaims, ANameThatAnotherWriterHasClaimedIsTaken) {
  leaveClaim(55);
  EXPECT_EQ(publish(), Outcome::taken);
  EXPECT_EQ(namesIn(folder.path()), Names{".wenlolib-file.tmp"});
}

TEST_F(AtomicFileUnderClaims, AClaimOlderThanAMinuteDoesNotCount) {
  leaveClaim(65);
  EXPECT_EQ(publish(), Outcome::written);
  EXPECT_EQ(readFile(path), "new");
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

TEST_F(AtomicFileUnderClaims, AnOldClaimIsLeftToTheWriterThatIsRemovingIt) {
  leaveClaim(65);
  calls.failing["lock"] = EWOULDBLOCK;
  EXPECT_EQ(publish(), Outcome::taken);
  EXPECT_EQ(namesIn(folder.path()), Names{".wenlolib-file.tmp"});
}

/// A claim that cannot be made must not look like another writer's. Otherwise every number would
/// look taken, and in the end the last record would be replaced.
class UnclaimableNames : public WatchedCalls {
 public:
  int create(int folder, const char* name) override {
    if (std::string_view(name) != ".wenlolib-file.tmp") return WatchedCalls::create(folder, name);
    errno = ENOSPC;
    return -1;
  }
};

TEST_F(AtomicFileUnderClaims, AClaimThatCannotBeMadeFails) {
  UnclaimableNames unclaimable;
  unclaimable.failing = calls.failing;
  EXPECT_EQ(writeAtomically(unclaimable, path, "new", 0666, Publication::asNew), Outcome::failed);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(AtomicFileUnderClaims, AsNewTheLongestNameIsWrittenToo) {
  for (const std::size_t length : {240U, 241U, 242U, 255U}) {
    path = folder / (std::string(length - 2, 'n') + "_1");
    EXPECT_EQ(publish(), Outcome::written) << length;
    EXPECT_EQ(publish(), Outcome::taken) << length;
  }
  EXPECT_EQ(namesIn(folder.path()).size(), 4U);
}

TEST_F(AtomicFileUnderClaims, NoRecordOfManyWritersIsLost) {
  constexpr int writers = 8, each = 40;
  std::vector<std::thread> threads;
  for (int writer = 0; writer < writers; ++writer) {
    threads.emplace_back([&, writer] {
      WatchedCalls own;
      own.failing = calls.failing;
      int number = 0;
      for (int i = 0; i < each; ++i) {
        const std::string bytes = std::to_string(writer) + "." + std::to_string(i);
        Outcome outcome = Outcome::taken;
        while (outcome == Outcome::taken) {
          outcome = writeAtomically(own, folder / std::to_string(++number), bytes, 0666,
                                    Publication::asNew);
        }
        EXPECT_EQ(outcome, Outcome::written);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::set<std::string> found;
  for (const std::string& name : namesIn(folder.path())) found.insert(readFile(folder / name));
  EXPECT_EQ(found.size(), std::size_t{writers * each});
}

TEST_F(AtomicFile, AsNewADanglingLinkIsReplaced) {
  for (const bool renames : {true, false}) {
    std::filesystem::remove(path);
    std::filesystem::create_symlink("nowhere", path);
    if (!renames) calls.failing = {{"renameWithoutReplacing", ENOSYS}};
    EXPECT_EQ(publish(), Outcome::written);
    EXPECT_FALSE(std::filesystem::is_symlink(path));
    EXPECT_EQ(readFile(path), "new");
    EXPECT_EQ(namesIn(folder.path()), Names{"file"});
  }
}

TEST_F(AtomicFile, AsNewALinkThatCannotBeFollowedIsReplaced) {
  writeFile(folder / "plain", "plain");
  for (const char* target : {"file", "plain/below"}) {
    for (const bool renames : {true, false}) {
      std::filesystem::remove(path);
      std::filesystem::create_symlink(target, path);
      calls.failing.clear();
      if (!renames) calls.failing = {{"renameWithoutReplacing", ENOSYS}};
      EXPECT_EQ(publish(), Outcome::written) << target;
      EXPECT_FALSE(std::filesystem::is_symlink(path)) << target;
      EXPECT_EQ(readFile(path), "new") << target;
      EXPECT_EQ(namesIn(folder.path()), (Names{"file", "plain"})) << target;
    }
  }
  EXPECT_EQ(readFile(folder / "plain"), "plain");
}

TEST_F(AtomicFile, AsNewALinkToAFileIsTaken) {
  writeFile(folder / "plain", "plain");
  std::filesystem::create_symlink("plain", path);
  EXPECT_EQ(publish(), Outcome::taken);
  EXPECT_TRUE(std::filesystem::is_symlink(path));
  EXPECT_EQ(readFile(path), "plain");
}

TEST_F(AtomicFile, AsNewAFolderIsTaken) {
  std::filesystem::create_directory(path);
  EXPECT_EQ(publish(), Outcome::taken);
  EXPECT_EQ(replace(), Outcome::failed);
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

TEST_F(AtomicFile, PathsThatNameNoFileFail) {
  EXPECT_EQ(writeAtomically(calls, folder / "", "x", 0666, Publication::replacing),
            Outcome::failed);
  EXPECT_EQ(writeAtomically(calls, "", "x", 0666, Publication::replacing), Outcome::failed);
  EXPECT_EQ(writeAtomically(calls, folder / "no/file", "x", 0666, Publication::replacing),
            Outcome::failed);
  EXPECT_EQ(namesIn(folder.path()), Names{});
}

TEST_F(AtomicFile, APathWithoutASlashMeansTheWorkingFolder) {
  const std::string answer = inChild([&] {
    if (::chdir(folder.path().c_str()) != 0) return "no working folder";
    const auto outcome = writeAtomically(calls, "file", "new", 0666, Publication::replacing);
    return outcome == Outcome::written ? "written" : "not written";
  });
  EXPECT_EQ(answer, "written");
  EXPECT_EQ(readFile(path), "new");
}

TEST_F(AtomicFile, BeyondTheFileSizeLimitFailsAndEndsNobody) {
  writeFile(path, "old");
  const std::string answer = inChild([&]() -> std::string {
    const rlimit limit{100, 100};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return notPermitted;
    const bool refused = replace(std::string(101, 'x')) == Outcome::failed;
    const bool fits = replace(std::string(100, 'y')) == Outcome::written;
    return std::string(refused ? "refused" : "written") + (fits ? " fits" : " does not fit");
  });
  EXPECT_EQ(answer, "refused fits");
  EXPECT_EQ(readFile(path), std::string(100, 'y'));
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

/// A host with another thread that prints between the steps on the open file.
class PrintingHost : public WatchedCalls {
 public:
  ssize_t write(int file, const void* bytes, std::size_t length) override {
    print();
    const ssize_t written = WatchedCalls::write(file, bytes, length);
    print();
    return written;
  }
  int flush(int file) override {
    const int result = WatchedCalls::flush(file);
    print();
    return result;
  }

 private:
  static void print() {
    std::thread([] {
      for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
        static_cast<void>(!::write(stream, "JUNK", 4));
      }
    }).join();
  }
};

TEST_F(AtomicFile, HoldsNothingOfWhatAHostPrintsToItsClosedStreams) {
  for (const Publication publication : {Publication::replacing, Publication::asNew}) {
    std::filesystem::remove(path);
    const std::string answer = inChild([&] {
      for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::close(number);
      PrintingHost host;
      const auto outcome = writeAtomically(host, path, "new", 0666, publication);
      return outcome == Outcome::written ? "written" : "not written";
    });
    EXPECT_EQ(answer, "written");
    EXPECT_EQ(readFile(path), "new");
    EXPECT_EQ(namesIn(folder.path()), Names{"file"});
  }
}

/// Prints all the time, to standard streams that the host has closed.
class PrintingThread {
 public:
  PrintingThread() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::close(number);
  }
  ~PrintingThread() {
    done_ = true;
    thread_.join();
  }
  PrintingThread(const PrintingThread&) = delete;
  PrintingThread& operator=(const PrintingThread&) = delete;

 private:
  std::atomic<bool> done_ = false;
  std::thread thread_{[this] {
    while (!done_) {
      for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        static_cast<void>(!::write(stream, "JUNK", 4));
      }
    }
  }};
};

TEST_F(AtomicFile, HoldsNothingOfWhatAHostPrintsToItsClosedStreamsAllTheTime) {
  const std::string answer = inChild([&] {
    const PrintingThread printing;
    platform::posix::SystemCalls plain;
    int torn = 0;
    for (int i = 0; i < 300; ++i) {
      const auto outcome = writeAtomically(plain, path, "new", 0666, Publication::replacing);
      if (outcome != Outcome::written || readFile(path) != "new") ++torn;
    }
    return std::to_string(torn) + " torn";
  });
  EXPECT_EQ(answer, "0 torn");
  EXPECT_EQ(namesIn(folder.path()), Names{"file"});
}

TEST_F(AtomicFile, LeavesNothingWhereOnlyAStandardDescriptorIsFree) {
  const TemporaryFolder own;
  const std::string answer = inChild([&]() -> std::string {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = std::min<rlim_t>(64, limit.rlim_max);
    ::setrlimit(RLIMIT_NOFILE, &limit);
    int last = -1;
    for (int next = last; (next = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)) >= 0;) last = next;
    // One number is free for the folder. The file itself gets that of a closed standard stream.
    for (const int number : {last, STDIN_FILENO, STDOUT_FILENO}) ::close(number);
    platform::posix::SystemCalls plain;
    const Outcome outcome =
        writeAtomically(plain, own / "file", "new", 0666, Publication::replacing);
    return outcome == Outcome::failed ? "failed" : "written";
  });
  EXPECT_EQ(answer, "failed");
  EXPECT_EQ(namesIn(own.path()), Names());
}

}  // namespace
}  // namespace wenlolib::tests
