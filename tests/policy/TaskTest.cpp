#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/Forwarding.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

using Arguments = std::vector<std::string>;

class CreateTask : public PlatformTest {
 protected:
  CreateTask() {
    world.files.addFile("/bin/tool", "", 0755);
    world.files.addFile("/bin/text", "", 0644);
    world.files.addFolder("/bin/folder");
    world.programs.exitStatus = 7;
  }
};

TEST_F(CreateTask, WaitsForTheExitStatusWhenTheFlagIsExactlyOne) {
  EXPECT_EQ(WENLOLIB::createTask("/bin/tool", Arguments{"-a", "b c"}, 1), 7);
  EXPECT_EQ(world.journal.lines(),
            (Journal::Lines{"files.isExecutable /bin/tool", "programs.run /bin/tool -a b c wait"}));
}

TEST_F(CreateTask, AnswersZeroAtOnceForAnyOtherFlag) {
  for (const int flag : {0, 2, 255}) {
    world.journal.clear();
    EXPECT_EQ(WENLOLIB::createTask("/bin/tool", std::nullopt, static_cast<std::uint8_t>(flag)), 0);
    EXPECT_EQ(world.journal.linesOf("programs.run"), Journal::Lines{"programs.run /bin/tool"});
  }
}

TEST_F(CreateTask, NullMeansNoArguments) {
  EXPECT_EQ(WENLOLIB::createTask("/bin/tool", std::nullopt, 1), 7);
  EXPECT_EQ(world.journal.linesOf("programs.run"), Journal::Lines{"programs.run /bin/tool wait"});
}

TEST_F(CreateTask, WhatIsNotExecutableIsNotLaunched) {
  for (const char* path : {"/bin/text", "/bin/folder", "/bin/missing", ""}) {
    EXPECT_EQ(WENLOLIB::createTask(path, std::nullopt, 1), 0) << path;
  }
  EXPECT_EQ(world.journal.count("programs.run"), 0U);
}

TEST_F(CreateTask, ANullPathOrOneThatIsNotTextAsksNothing) {
  EXPECT_EQ(WENLOLIB::createTask(std::nullopt, std::nullopt, 1), 0);
  EXPECT_EQ(WENLOLIB::createTask("/bin/\xFF", std::nullopt, 1), 0);
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(CreateTask, AnArgumentThatIsNotTextIsHandedOnAsItIs) {
  EXPECT_EQ(WENLOLIB::createTask("/bin/tool", Arguments{"\xFF"}, 1), 7);
  EXPECT_EQ(world.journal.linesOf("programs.run"),
            Journal::Lines{"programs.run /bin/tool \xFF wait"});
}

TEST_F(CreateTask, AProgramThatCannotBeStartedGivesZero) {
  world.faults.failAlways("programs.run");
  EXPECT_EQ(WENLOLIB::createTask("/bin/tool", std::nullopt, 1), 0);
}

class ThrowingPrograms : public platform::ForwardingPrograms {
 public:
  using ForwardingPrograms::ForwardingPrograms;
  std::optional<std::int32_t> run(const std::string&, const Arguments&, bool) override {
    throw std::runtime_error("launch failed");
  }
};

TEST_F(CreateTask, AnExceptionOfTheLaunchNeverReachesTheCaller) {
  ThrowingPrograms programs(world.programs);
  world.services.programs = &programs;
  EXPECT_EQ(WENLOLIB::createTask("/bin/tool", std::nullopt, 1), 0);
}

}  // namespace
}  // namespace wenlolib::tests
