#include "platform/apple/ApplePrograms.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <atomic>
#include <cerrno>
#include <filesystem>

#include "platform/posix/Child.h"
#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

using Status = std::optional<std::int32_t>;

Status runShell(const std::string& script, bool wait = true) {
  static const platform::posix::Root root("");
  return platform::apple::ApplePrograms(root).run("/bin/sh", {"-c", script}, wait);
}

bool hasChildren() {
  return ::waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

bool appears(const std::string& path) {
  for (int i = 0; i < 3000 && !std::filesystem::exists(path); ++i) ::usleep(10'000);
  return std::filesystem::exists(path);
}

std::string shown(const Status& status) {
  return status ? std::to_string(*status) : "nothing";
}

TEST(ApplePrograms, AnswerTheirExitStatusOrSignal) {
  for (const int status : {0, 1, 7, 255}) {
    EXPECT_EQ(runShell("exit " + std::to_string(status)), status);
  }
  EXPECT_EQ(runShell("kill -KILL $$"), SIGKILL);
  EXPECT_FALSE(hasChildren());
}

TEST(ApplePrograms, GetArgumentsAndEnvironment) {
  const platform::posix::Root root("");
  platform::apple::ApplePrograms programs(root);
  const std::string script =
      "test $# = 2 && test \"$1\" = 'a b' && test \"$2\" = '' && "
      "test -n \"$PATH\"";
  EXPECT_EQ(programs.run("/bin/sh", {"-c", script, "name", "a b", ""}, true), 0);
}

TEST(ApplePrograms, ThatCannotBeStartedGiveNothing) {
  const TemporaryFolder folder;
  const platform::posix::Root root(folder.path());
  platform::apple::ApplePrograms programs(root);
  writeFile(folder / "not executable", "#!/bin/sh\n");
  for (const char* name : {"/not executable", "/missing", "/"}) {
    EXPECT_EQ(programs.run(name, {}, true), std::nullopt) << name;
    EXPECT_EQ(programs.run(name, {}, false), std::nullopt) << name;
  }
  EXPECT_EQ(programs.run(std::string("/bin\0", 5), {}, true), std::nullopt);
  EXPECT_EQ(programs.run("/bin/sh", {"-c", std::string("exit 0\0 x", 9)}, true), std::nullopt);
  EXPECT_FALSE(hasChildren());
}

TEST(ApplePrograms, NotWaitedForRunOnByThemselves) {
  const TemporaryFolder folder;
  const std::string script = "cd '" + folder.path() +
                             "'; for i in $(seq 3000); do"
                             " test -e go && exec touch done; sleep 0.01; done";
  EXPECT_EQ(runShell(script, false), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(folder / "done"));
  EXPECT_FALSE(hasChildren());
  writeFile(folder / "go", "");
  EXPECT_TRUE(appears(folder / "done"));
}

TEST(ApplePrograms, HaveAStatusWhereTheHostIgnoresItsChildren) {
  EXPECT_EQ(inChild([] {
              ::signal(SIGCHLD, SIG_IGN);
              const std::string status = shown(runShell("exit 7"));
              return status + (::signal(SIGCHLD, SIG_DFL) == SIG_IGN ? " ignored" : " changed");
            }),
            "7 ignored");
}

void reapEverything(int) {
  const int error = errno;
  while (::waitpid(-1, nullptr, WNOHANG) > 0) {
  }
  errno = error;
}

TEST(ApplePrograms, HaveAStatusWhereTheHostReapsWhateverItFinds) {
  EXPECT_EQ(inChild([] {
              struct sigaction action {};
              action.sa_handler = reapEverything;
              ::sigaction(SIGCHLD, &action, nullptr);
              std::string statuses;
              for (int i = 0; i < 10; ++i) statuses += shown(runShell("exit 7"));
              return statuses;
            }),
            "7777777777");
}

TEST(ApplePrograms, AreNotStartedWhereNoDescriptorIsLeft) {
  EXPECT_EQ(inChild([] {
              while (::dup(0) >= 0) {
              }
              return shown(runShell("exit 7"));
            }),
            "nothing");
}

}  // namespace
}  // namespace wenlolib::tests
