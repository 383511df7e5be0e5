// No call changes the locale, the file-creation mask, the working folder, the signals or the
// environment.
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "endtoend/Operations.h"
#include "endtoend/World.h"
#include "platform/posix/Child.h"
#include "platform/posix/Environment.h"
#include "product/process_state.h"

namespace wenlolib::tests {
namespace {

/// Gives the state unusual values: a call that sets any of them to a usual value is noticed.
void makeStateUnusual(const std::string& folder) {
  if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr || ::chdir(folder.c_str()) != 0) {
    throw std::runtime_error("no such locale or folder");
  }
  ::umask(0137);
  std::signal(SIGCHLD, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  sigprocmask(SIG_BLOCK, &blocked, nullptr);
}

/// Names the first call that changed something, and what it changed; "" if none did.
std::string changeBy(const std::vector<Operation>& operations) {
  const auto before = std::make_unique<ProcessState>();
  const auto after = std::make_unique<ProcessState>();
  for (const Operation& operation : operations) {
    takeState(before.get());
    try {
      operation.call();
    } catch (const std::exception& problem) {
      return std::string(operation.name) + ": " + problem.what();
    }
    takeState(after.get());
    if (const char* change = changeOf(before.get(), after.get())) {
      return std::string(operation.name) + " changes " + change;
    }
  }
  return "";
}

/// All services are the port's own. They take the user from the environment.
class StateOfTheProcess : public WorldTest {
 protected:
  StateOfTheProcess() {
    world.services = world.port.services();
    world.writePreferences(agreedPreferences(world.services.clock->now(), 100));
    std::filesystem::create_directories(world.real("/bin"));
    writeFile(world.real("/bin/answer"), "#!/bin/sh\nexit 7\n");
    ::chmod(world.real("/bin/answer").c_str(), 0755);
  }

  std::string changeInChild(const std::vector<Operation>& operations) {
    return inChild([&] {
      makeStateUnusual(world.root.path());
      return changeBy(operations);
    });
  }

 private:
  Variable home_{"HOME", "/Users/ada"};
  Variable locale_{"LC_ALL", "de_DE.UTF-8"};
};

TEST_F(StateOfTheProcess, IsLeftAloneByTheToolkit) {
  EXPECT_EQ(changeInChild(toolkitOperations()), "");
}

TEST_F(StateOfTheProcess, IsLeftAloneByTheRecord) {
  EXPECT_EQ(changeInChild(recordOperations()), "");
}

TEST_F(StateOfTheProcess, IsSeenToChangeWhereACallChangesIt) {
  EXPECT_EQ(changeInChild({{"umask", [] { ::umask(022); }}}),
            "umask changes the file-creation mask");
  EXPECT_EQ(changeInChild({{"chdir", [] { std::filesystem::current_path("/"); }}}),
            "chdir changes the working folder");
  EXPECT_EQ(changeInChild({{"setlocale", [] { std::setlocale(LC_ALL, "C"); }}}),
            "setlocale changes the locale");
  EXPECT_EQ(changeInChild({{"signal", [] { std::signal(SIGPIPE, SIG_DFL); }}}),
            "signal changes a signal's action");
  EXPECT_EQ(changeInChild({{"setenv", [] { ::setenv("HOME", "/", 1); }}}),
            "setenv changes the environment");
}

}  // namespace
}  // namespace wenlolib::tests
