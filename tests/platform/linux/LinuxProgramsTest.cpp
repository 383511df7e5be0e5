#include "platform/linux/LinuxPrograms.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "platform/posix/Child.h"
#include "platform/posix/TemporaryFolder.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

using Status = std::optional<std::int32_t>;

Status runShell(const std::string& script, bool wait = true) {
  static const platform::posix::Root root("");
  return platform::gnulinux::LinuxPrograms(root).run("/bin/sh", {"-c", script}, wait);
}

/// The number of this process's children, including ended ones that nobody has waited for.
int children() {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string process = entry.path().filename();
    if (process.find_first_not_of("0123456789") != std::string::npos) continue;
    const std::string stat = readFile(entry.path() / "stat");
    const std::size_t name = stat.rfind(") ");  // PID (NAME) STATE PARENT ...
    if (name == std::string::npos) continue;
    if (std::stol(stat.substr(name + 4)) == ::getpid()) ++count;
  }
  return count;
}

bool appears(const std::string& path) {
  for (int i = 0; i < 3000; ++i) {
    if (std::filesystem::exists(path)) return true;
    ::usleep(10'000);
  }
  return false;
}

TEST(LinuxPrograms, AnswerTheExitStatus) {
  for (const int status : {0, 1, 7, 127, 255}) {
    EXPECT_EQ(runShell("exit " + std::to_string(status)), status);
  }
}

TEST(LinuxPrograms, AnswerTheSignalThatEndedThem) {
  EXPECT_EQ(runShell("kill -KILL $$"), SIGKILL);
  EXPECT_EQ(runShell("kill -TERM $$"), SIGTERM);
}

TEST(LinuxPrograms, GetTheirArgumentsAsTheyAre) {
  const platform::posix::Root root("");
  platform::gnulinux::LinuxPrograms programs(root);
  const std::string script =
      "test $# = 3 && test \"$1\" = 'a b' && test \"$2\" = '' && "
      "test \"$3\" = '*\xFF'";
  EXPECT_EQ(programs.run("/bin/sh", {"-c", script, "name", "a b", "", "*\xFF"}, true), 0);
  EXPECT_EQ(programs.run("/bin/true", {}, true), 0);
}

TEST(LinuxPrograms, AreLookedUpBelowTheRoot) {
  const TemporaryFolder folder;
  const platform::posix::Root root(folder.path());
  platform::gnulinux::LinuxPrograms programs(root);
  writeFile(folder / "program", "#!/bin/sh\nexit 5\n");
  ASSERT_EQ(::chmod((folder / "program").c_str(), 0755), 0);
  EXPECT_EQ(programs.run("/program", {}, true), 5);
  EXPECT_EQ(programs.run("/bin/sh", {"-c", "exit 5"}, true), std::nullopt);
}

TEST(LinuxPrograms, ThatCannotBeStartedGiveNothing) {
  const TemporaryFolder folder;
  const platform::posix::Root root(folder.path());
  platform::gnulinux::LinuxPrograms programs(root);
  writeFile(folder / "not executable", "#!/bin/sh\n");
  writeFile(folder / "no interpreter", "#!/no/such/interpreter\n");
  writeFile(folder / "no format", "\x01\x02");
  ASSERT_EQ(::chmod((folder / "not executable").c_str(), 0644), 0);
  ASSERT_EQ(::chmod((folder / "no interpreter").c_str(), 0755), 0);
  ASSERT_EQ(::chmod((folder / "no format").c_str(), 0755), 0);
  for (const char* name : {"/not executable", "/no interpreter", "/no format", "/missing", "/"}) {
    EXPECT_EQ(programs.run(name, {}, true), std::nullopt) << name;
    EXPECT_EQ(programs.run(name, {}, false), std::nullopt) << name;
  }
  EXPECT_EQ(programs.run(std::string("/bin\0", 5), {}, true), std::nullopt);
  EXPECT_EQ(programs.run("/bin/sh", {"-c", std::string("exit 0\0 x", 9)}, true), std::nullopt);
  EXPECT_EQ(children(), 0);
}

TEST(LinuxPrograms, NotWaitedForRunOnByThemselves) {
  const TemporaryFolder folder;
  const std::string script = "cd '" + folder.path() +
                             "'; for i in $(seq 3000); do"
                             " test -e go && exec touch done; sleep 0.01; done";
  EXPECT_EQ(runShell(script, false), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(folder / "done"));
  EXPECT_EQ(children(), 0);
  writeFile(folder / "go", "");
  EXPECT_TRUE(appears(folder / "done"));
  EXPECT_EQ(children(), 0);
}

TEST(LinuxPrograms, LeaveNoChildBehind) {
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(runShell("exit 3", i % 2 == 0), i % 2 == 0 ? Status(3) : Status());
  EXPECT_EQ(children(), 0);
}

std::string shown(const Status& status) {
  return status ? std::to_string(*status) : "nothing";
}

TEST(LinuxPrograms, HaveAStatusWhereTheHostIgnoresItsChildren) {
  EXPECT_EQ(inChild([] {
              ::signal(SIGCHLD, SIG_IGN);
              const std::string status = shown(runShell("exit 7"));
              return status + (::signal(SIGCHLD, SIG_DFL) == SIG_IGN ? " ignored" : " changed");
            }),
            "7 ignored");
}

std::atomic<int> handled = 0;
std::atomic<int> reaped = 0;

void reapEverything(int) {
  const int error = errno;
  ++handled;
  while (::waitpid(-1, nullptr, WNOHANG) > 0) ++reaped;
  errno = error;
}

TEST(LinuxPrograms, HaveAStatusWhereTheHostReapsWhateverItFinds) {
  EXPECT_EQ(inChild([] {
              struct sigaction action {};
              action.sa_handler = reapEverything;
              ::sigaction(SIGCHLD, &action, nullptr);
              std::string statuses;
              for (int i = 0; i < 10; ++i) statuses += shown(runShell("exit 7"));
              static_cast<void>(runShell("exit 7", false));
              ::usleep(100'000);
              return statuses + " handled " + std::to_string(handled) + " reaped " +
                     std::to_string(reaped);
            }),
            "7777777777 handled 0 reaped 0");
}

TEST(LinuxPrograms, HaveAStatusWhereAThreadOfTheHostWaitsForAnyChild) {
  EXPECT_EQ(inChild([] {
              std::atomic<bool> done = false;
              std::atomic<int> found = 0;
              std::thread waiting([&] {
                while (!done) {
                  if (::waitpid(-1, nullptr, WNOHANG) > 0) ++found;
                }
              });
              std::string statuses;
              for (int i = 0; i < 10; ++i) statuses += shown(runShell("exit 7"));
              done = true;
              waiting.join();
              return statuses + " found " + std::to_string(found);
            }),
            "7777777777 found 0");
}

/// The process's whole signal state, as text.
std::string signalState() {
  sigset_t blocked;
  ::sigprocmask(SIG_SETMASK, nullptr, &blocked);
  std::string state;
  for (int number = 1; number <= 64; ++number) {
    struct sigaction action {};
    static_cast<void>(::sigaction(number, nullptr, &action));
    const auto handler = reinterpret_cast<std::uintptr_t>(action.sa_handler);
    state += std::to_string(handler) + ":" + std::to_string(action.sa_flags) +
             (sigismember(&blocked, number) == 1 ? "b " : " ");
  }
  return state;
}

TEST(LinuxPrograms, LeaveTheHostsSignalsAsTheyAre) {
  EXPECT_EQ(inChild([]() -> std::string {
              sigset_t some;
              sigemptyset(&some);
              sigaddset(&some, SIGUSR1);
              ::sigprocmask(SIG_SETMASK, &some, nullptr);
              ::signal(SIGUSR2, SIG_IGN);
              ::signal(SIGALRM, reapEverything);
              const std::string before = signalState();
              const bool ran = runShell("exit 7") == 7 && !runShell("exit 7", false);
              return ran && signalState() == before ? "the same" : "changed";
            }),
            "the same");
}

TEST(LinuxPrograms, HaveTheSignalMaskOfTheirCaller) {
  EXPECT_EQ(inChild([] {
              sigset_t some;
              sigemptyset(&some);
              sigaddset(&some, SIGUSR1);
              ::sigprocmask(SIG_SETMASK, &some, nullptr);
              // Not through the shell, which begins with a mask of its own.
              const platform::posix::Root root("");
              return shown(platform::gnulinux::LinuxPrograms(root).run(
                  "/bin/grep", {"-q", "^SigBlk:.*0000000000000200$", "/proc/self/status"}, true));
            }),
            "0");
}

TEST(LinuxPrograms, LeaveNoDescriptorOpenAndInheritNone) {
  const TemporaryFolder folder;
  const std::string count = "ls /proc/self/fd | wc -l > '" + (folder / "count") + "'";
  ASSERT_EQ(::system(count.c_str()), 0);
  const std::string expected = readFile(folder / "count");
  const auto before = namesIn("/proc/self/fd").size();
  ASSERT_EQ(runShell(count), 0);
  EXPECT_EQ(readFile(folder / "count"), expected);
  static_cast<void>(runShell("exit 0", false));
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

TEST(LinuxPrograms, MayBeRunByManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::atomic<int> right = 0;
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([&right, thread] {
      for (int i = 0; i < 10; ++i) {
        if (runShell("exit " + std::to_string(10 * thread + i)) == 10 * thread + i) ++right;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 80);
  EXPECT_EQ(children(), 0);
}

/// Runs /bin/true again and again, without waiting for it, until `done`.
void runUnwaitedUntil(const std::atomic<bool>& done) {
  const platform::posix::Root root("");
  platform::gnulinux::LinuxPrograms programs(root);
  while (!done) EXPECT_EQ(programs.run("/bin/true", {}, false), std::nullopt);
}

/// Two threads get in each other's way only when both start a program at once, so many programs are
/// started all the time. Those that are waited for end when they have read a byte, which is written
/// last. If a call waits for them by mistake, they end after a minute.
TEST(LinuxPrograms, NotWaitedForReturnAtOnceThoughOtherThreadsWaitForTheirs) {
  const TemporaryFolder folder;
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int bytes = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(bytes, 0);
  const std::string readOne =
      "exec timeout 60 dd if='" + pipe + "' of=/dev/null bs=1 count=1 status=none";
  std::atomic<bool> done = false;
  std::vector<std::thread> threads;
  std::thread starting([&] {
    for (int thread = 0; thread < 60; ++thread) {
      threads.emplace_back([&] { EXPECT_EQ(runShell(readOne), 0); });
      ::usleep(10'000);
    }
    done = true;
  });
  runUnwaitedUntil(done);
  starting.join();
  const std::string enough(threads.size(), 'x');
  EXPECT_EQ(::write(bytes, enough.data(), enough.size()), static_cast<ssize_t>(enough.size()));
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(::close(bytes), 0);
}

/// A copy of the process, with all its descriptors, even those of a call under way. It lives until
/// it is killed, or for a minute if a call waits for it.
pid_t copyOfTheProcess() {
  const pid_t child = ::fork();
  if (child == 0) {
    ::alarm(60);
    for (;;) ::pause();
  }
  return child;
}

TEST(LinuxPrograms, NotWaitedForReturnAtOnceThoughTheHostForksMeanwhile) {
  std::atomic<bool> done = false;
  std::vector<pid_t> copies;
  std::thread forking([&] {
    for (int count = 0; count < 100; ++count) {
      copies.push_back(copyOfTheProcess());
      ::usleep(5'000);
    }
    done = true;
  });
  runUnwaitedUntil(done);
  forking.join();
  for (const pid_t copy : copies) {
    ASSERT_GT(copy, 0);
    EXPECT_EQ(::kill(copy, SIGKILL), 0);
    int status = 0;
    EXPECT_EQ(::waitpid(copy, &status, 0), copy);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  }
}

/// Old kernels can only close descriptors one by one.
bool closesRanges() {
#ifdef SYS_close_range
  return ::syscall(SYS_close_range, ~0U, ~0U, 0U) == 0;
#else
  return false;
#endif
}

/// Waits until the pipe has no writer left. False if it still has one after five seconds.
bool atItsEnd(int pipe) {
  pollfd reading{pipe, POLLIN, 0};
  return ::poll(&reading, 1, 5'000) == 1 && (reading.revents & (POLLIN | POLLHUP)) == POLLHUP;
}

TEST(LinuxPrograms, KeepNothingOpenThatTheHostClosesWhileTheyRun) {
  if (!closesRanges()) GTEST_SKIP() << "the kernel cannot close a range of descriptors";
  const TemporaryFolder folder;
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  // One number below that of the go-between's own pipe, and one above it.
  const int high = ::fcntl(ends[1], F_DUPFD_CLOEXEC, 200);
  ASSERT_GE(high, 200);
  Status status;
  std::thread waiting([&] {
    status = runShell("cd '" + folder.path() +
                      "'; touch running; for i in $(seq 1500); do"
                      " test -e end && exit 7; sleep 0.01; done");
  });
  EXPECT_TRUE(appears(folder / "running"));
  EXPECT_EQ(::close(ends[1]), 0);
  EXPECT_EQ(::close(high), 0);
  EXPECT_TRUE(atItsEnd(ends[0]));
  writeFile(folder / "end", "");
  waiting.join();
  EXPECT_EQ(status, 7);
  EXPECT_EQ(::close(ends[0]), 0);
}

TEST(CreateTask, WaitsForAFlagOfExactlyOne) {
  EXPECT_EQ(WENLOLIB::createTask("/bin/sh", {{"-c", "exit 7"}}, 1), 7);
  EXPECT_EQ(WENLOLIB::createTask("/bin/sh", {{"-c", "exit 7"}}, 0), 0);
  EXPECT_EQ(WENLOLIB::createTask("/bin/sh", {{"-c", "exit 7"}}, 2), 0);
  EXPECT_EQ(WENLOLIB::createTask("/bin/false", std::nullopt, 1), 1);
}

TEST(CreateTask, AnswersZeroForWhatIsNotAProgram) {
  const TemporaryFolder folder;
  writeFile(folder / "text", "#!/bin/sh\nexit 7\n");
  ASSERT_EQ(::chmod((folder / "text").c_str(), 0644), 0);
  writeFile(folder / "broken", "#!/no/such/interpreter\n");
  ASSERT_EQ(::chmod((folder / "broken").c_str(), 0755), 0);
  EXPECT_EQ(WENLOLIB::createTask(std::nullopt, std::nullopt, 1), 0);
  EXPECT_EQ(WENLOLIB::createTask(folder / "text", std::nullopt, 1), 0);
  EXPECT_EQ(WENLOLIB::createTask(folder / "broken", std::nullopt, 1), 0);
  EXPECT_EQ(WENLOLIB::createTask(folder / "missing", std::nullopt, 1), 0);
  EXPECT_EQ(WENLOLIB::createTask(folder.path(), std::nullopt, 1), 0);
}

TEST(LinuxPrograms, TellTheirOwnStatusWhateverAHostPrintsToItsClosedStreams) {
  const std::string answer = inChild([] {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::close(number);
    std::atomic<bool> done = false;
    std::thread printing([&] {
      while (!done) {
        for (int stream = 0; stream <= 2; ++stream) static_cast<void>(!::write(stream, "JUNK", 4));
      }
    });
    int wrong = 0;
    for (int i = 0; i < 200; ++i) {
      if (runShell("exit 7") != 7) ++wrong;
    }
    done = true;
    printing.join();
    return std::to_string(wrong) + " wrong";
  });
  EXPECT_EQ(answer, "0 wrong");
}

}  // namespace
}  // namespace wenlolib::tests
