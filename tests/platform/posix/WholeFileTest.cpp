#include "platform/posix/WholeFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>

#include "platform/posix/Child.h"
#include "platform/posix/TemporaryFolder.h"
#include "support/FailingAllocations.h"

namespace wenlolib::tests {
namespace {

using platform::Reason;
using platform::Step;

std::optional<std::string> readWhole(const std::string& file, std::size_t bound) {
  return platform::posix::readWhole(file, bound).bytes;
}

class ReadWhole : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::string path = folder / "file";
};

TEST_F(ReadWhole, GivesAllOfAFile) {
  using namespace std::string_literals;
  for (const std::string& bytes : {""s, "x"s, "a\0b\n"s, std::string(300'000, 'z')}) {
    writeFile(path, bytes);
    EXPECT_EQ(readWhole(path, 1 << 20), bytes);
  }
}

TEST_F(ReadWhole, TakesAFileAtTheBoundAndNoneAbove) {
  writeFile(path, std::string(1000, 'x'));
  EXPECT_EQ(readWhole(path, 1000), std::string(1000, 'x'));
  EXPECT_EQ(readWhole(path, 999), std::nullopt);
  writeFile(path, "");
  EXPECT_EQ(readWhole(path, 0), "");
}

TEST_F(ReadWhole, FollowsLinks) {
  writeFile(path, "bytes");
  std::filesystem::create_symlink("file", folder / "link");
  EXPECT_EQ(readWhole(folder / "link", 10), "bytes");
}

TEST_F(ReadWhole, GivesNothingForWhatIsNotAFile) {
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  EXPECT_EQ(readWhole(path, 10), std::nullopt);
  EXPECT_EQ(readWhole(folder / "pipe", 10), std::nullopt);
  EXPECT_EQ(readWhole(folder.path(), 1 << 20), std::nullopt);
  EXPECT_EQ(readWhole(folder / "dangling", 10), std::nullopt);
  EXPECT_EQ(readWhole("/dev/zero", 1 << 20), std::nullopt);
  EXPECT_EQ(readWhole("/dev/null", 1 << 20), std::nullopt);
  EXPECT_EQ(readWhole("", 10), std::nullopt);
}

TEST_F(ReadWhole, GivesNothingForASparseGigabyteAndAsksForNoMemory) {
  writeFile(path, "x");
  ASSERT_EQ(::truncate(path.c_str(), off_t{1} << 30), 0);
  const CountedAllocations counted;
  EXPECT_EQ(readWhole(path, std::size_t{16} << 20), std::nullopt);
  EXPECT_LT(counted.largest(), std::size_t{1} << 20);
}

TEST_F(ReadWhole, GivesAllOfAFileWhoseSizeIsNotToldBeforehand) {
  const auto status = readWhole("/proc/self/status", 1 << 20);
  ASSERT_TRUE(status);
  EXPECT_NE(status->find("Pid:"), std::string::npos);
  EXPECT_EQ(readWhole("/proc/self/status", 16), std::nullopt);
}

/// The bytes of a file of the kernel's that stays as it is and shows no size.
std::string madeUpAsItIsRead(const char* file) {
  struct stat status {};
  EXPECT_EQ(::stat(file, &status), 0);
  EXPECT_EQ(status.st_size, 0);
  return readFile(file);
}

TEST_F(ReadWhole, KeepsToItsBoundForAFileThatShowsNoSize) {
  for (const char* file : {"/proc/version", "/proc/self/limits"}) {
    const std::string all = madeUpAsItIsRead(file);
    ASSERT_GT(all.size(), 1U) << file;
    EXPECT_EQ(readWhole(file, all.size() + 1), all);
    EXPECT_EQ(readWhole(file, all.size()), all);
    EXPECT_EQ(readWhole(file, all.size() - 1), std::nullopt);
    EXPECT_EQ(platform::posix::readWhole(file, all.size() - 1).reason.error, EFBIG);
    EXPECT_EQ(readWhole(file, 0), std::nullopt);
  }
}

/// Pages whose protections alternate: each is a line in the kernel's list of this process's memory.
class ManyMappings {
 public:
  ManyMappings() {
    start_ = ::mmap(nullptr, length, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    for (std::size_t at = 0; start_ != MAP_FAILED && at < length; at += 2 * page) {
      EXPECT_EQ(::mprotect(static_cast<char*>(start_) + at, page, PROT_READ), 0);
    }
  }
  ~ManyMappings() {
    if (start_ != MAP_FAILED) ::munmap(start_, length);
  }
  ManyMappings(const ManyMappings&) = delete;
  ManyMappings& operator=(const ManyMappings&) = delete;

 private:
  const std::size_t page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t length = 400 * page;
  void* start_ = nullptr;
};

TEST_F(ReadWhole, ReadsOnWhereTheKernelHandsAFileOutInPieces) {
  const ManyMappings many;
  const auto maps = readWhole("/proc/self/maps", 1 << 20);
  ASSERT_TRUE(maps);
  EXPECT_GT(maps->size(), 400U * 20);
  EXPECT_NE(maps->find("[stack]"), std::string::npos);  // one of the last lines
  EXPECT_EQ(maps->back(), '\n');
  EXPECT_EQ(readWhole("/proc/self/maps", 4096), std::nullopt);
  EXPECT_EQ(readWhole("/proc/self/maps", 10'000), std::nullopt);
}

TEST_F(ReadWhole, ThrowsWhereReadingFails) {
  EXPECT_THROW(static_cast<void>(readWhole("/proc/self/mem", 1 << 20)), std::system_error);
}

TEST_F(ReadWhole, GivesNothingForASocket) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(readWhole(path, 10), std::nullopt);
  ::close(socket);
}

/// Another process that holds a lease on a file: whoever opens it is told to try again.
class Lease {
 public:
  /// The lease is given up `seconds` after the kernel asks for it.
  Lease(const std::string& path, double seconds) {
    int ready[2];
    if (::pipe(ready) != 0) return;
    holder_ = ::fork();
    if (holder_ == 0) {
      sigset_t asked;
      ::sigemptyset(&asked);
      ::sigaddset(&asked, SIGIO);
      ::sigprocmask(SIG_BLOCK, &asked, nullptr);
      const int file = ::open(path.c_str(), O_RDWR);
      const char held = ::fcntl(file, F_SETLEASE, F_WRLCK) == 0 ? 'y' : 'n';
      static_cast<void>(!::write(ready[1], &held, 1));
      ::sigwaitinfo(&asked, nullptr);
      ::usleep(static_cast<useconds_t>(seconds * 1e6));
      ::_exit(0);
    }
    char held = 'n';
    static_cast<void>(!::read(ready[0], &held, 1));
    held_ = held == 'y';
    ::close(ready[0]);
    ::close(ready[1]);
  }
  ~Lease() {
    ::kill(holder_, SIGKILL);
    ::waitpid(holder_, nullptr, 0);
  }
  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;
  [[nodiscard]] bool held() const { return held_; }

 private:
  pid_t holder_ = -1;
  bool held_ = false;
};

TEST_F(ReadWhole, WaitsForALeaseThatIsGivenUp) {
  writeFile(path, "bytes");
  const Lease lease(path, 0.2);
  if (!lease.held()) GTEST_SKIP() << "this file system gives no leases";
  EXPECT_EQ(readWhole(path, 10), "bytes");
}

TEST_F(ReadWhole, ThrowsWhereALeaseIsNotGivenUp) {
  writeFile(path, "bytes");
  const Lease lease(path, 60);
  if (!lease.held()) GTEST_SKIP() << "this file system gives no leases";
  EXPECT_THROW(static_cast<void>(readWhole(path, 10)), std::system_error);
}

TEST_F(ReadWhole, GivesABeginningOfAFileThatGrows) {
  writeFile(path, "x");
  const std::string piece(5000, 'x');
  constexpr std::size_t pieces = 200;
  std::atomic<bool> done = false;
  std::thread writer([&] {
    std::ofstream file(path, std::ios::app);
    for (std::size_t i = 0; i < pieces; ++i) {
      file.write(piece.data(), static_cast<std::streamsize>(piece.size())).flush();
      ::usleep(100);
    }
    done = true;
  });
  std::size_t largest = 0;
  while (!done) {
    const auto bytes = readWhole(path, 2'000'000);
    EXPECT_TRUE(bytes);
    if (!bytes) break;
    EXPECT_EQ(bytes->find_first_not_of('x'), std::string::npos);
    EXPECT_GE(bytes->size(), largest);
    largest = bytes->size();
  }
  writer.join();
  EXPECT_GT(largest, 0U);
  EXPECT_EQ(readWhole(path, 2'000'000)->size(), 1 + pieces * piece.size());
}

TEST_F(ReadWhole, SaysWhyThereIsNothing) {
  const auto expect = [](const std::string& file, Step step, int error) {
    const Reason reason = platform::posix::readWhole(file, 3).reason;
    EXPECT_EQ(reason.step, step) << file;
    EXPECT_EQ(reason.error, error) << file;
  };
  writeFile(path, "bytes");
  std::filesystem::create_symlink("loop", folder / "loop");
  expect(path, Step::readFile, EFBIG);
  expect(folder.path(), Step::openFile, EISDIR);
  expect(folder / "missing", Step::openFile, ENOENT);
  expect(path + "/below", Step::openFile, ENOTDIR);
  expect(folder / "loop", Step::openFile, ELOOP);
  expect("/dev/null", Step::openFile, 0);
}

TEST_F(ReadWhole, LeavesNoDescriptorOpen) {
  writeFile(path, "bytes");
  const auto before = namesIn("/proc/self/fd").size();
  for (int round = 0; round < 100; ++round) {
    EXPECT_EQ(readWhole(path, 5), "bytes");
    EXPECT_EQ(readWhole(path, 4), std::nullopt);
    EXPECT_EQ(readWhole(folder.path(), 4), std::nullopt);
  }
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

bool limitDescriptors(rlim_t count) {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return false;
  limit.rlim_cur = std::min(count, limit.rlim_max);
  return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

/// What a child that reads a file is told. An exception ends the shortage first, since a sanitizer
/// needs a descriptor to handle one.
std::string told(const std::string& path) {
  try {
    return readWhole(path, 1 << 20).value_or("(nothing)");
  } catch (const std::system_error& problem) {
    if (!limitDescriptors(RLIM_INFINITY)) return notPermitted;
    const bool shortage = problem.code() == std::error_code(EMFILE, std::generic_category());
    return shortage ? "(a shortage)" : "(another problem)";
  }
}

TEST_F(ReadWhole, ThrowsWhereThereIsNoDescriptorLeft) {
  writeFile(path, "bytes");
  const std::string missing = folder / "missing";
  const auto toldInAShortage = [](const std::string& file) {
    return inChild([&] { return limitDescriptors(0) ? told(file) : notPermitted; });
  };
  EXPECT_EQ(toldInAShortage(path), "(a shortage)");
  EXPECT_EQ(toldInAShortage(missing), "(a shortage)");
}

/// A host that reads from its closed standard input must not advance in a file that is being read.
TEST_F(ReadWhole, ThrowsWhereOnlyAStandardDescriptorIsLeft) {
  writeFile(path, "bytes");
  const std::string answer = inChild([&] {
    if (!limitDescriptors(64)) return notPermitted;
    while (::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) >= 0) {
    }
    ::close(STDIN_FILENO);
    return told(path) + (::fcntl(STDIN_FILENO, F_GETFD) < 0 ? "" : " and a descriptor left open");
  });
  EXPECT_EQ(answer, "(a shortage)");
}

TEST_F(ReadWhole, GivesAllOfAFileWhereTheStandardDescriptorsAreClosed) {
  writeFile(path, "bytes");
  const std::string answer = inChild([&] {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::close(number);
    const std::string answers = told(path) + told(path) + told(folder.path());
    return answers + (::fcntl(STDIN_FILENO, F_GETFD) < 0 ? "" : " and a descriptor left open");
  });
  EXPECT_EQ(answer, "bytesbytes(nothing)");
}

}  // namespace
}  // namespace wenlolib::tests
