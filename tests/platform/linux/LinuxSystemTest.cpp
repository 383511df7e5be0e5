#include "platform/linux/LinuxSystem.h"

#include <gtest/gtest.h>
#include <sys/utsname.h>

#include <string>

#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using platform::Selector;
using platform::gnulinux::kernelVersion;

TEST(KernelVersion, IsTheNumbersThatAReleaseBeginsWith) {
  struct Case {
    const char* release;
    int major, minor, patch;
  };
  for (const Case& each : {Case{"6.1.0-18-amd64", 6, 1, 0},
                           {"5.15.167.4-microsoft-standard-WSL2", 5, 15, 167},
                           {"6.18-rc1", 6, 18, 0},
                           {"6.18", 6, 18, 0},
                           {"6.18.", 6, 18, 0},
                           {"6.18.x", 6, 18, 0},
                           {"6.18.-3", 6, 18, 0},
                           {"2.6.32-754.el6.x86_64", 2, 6, 32},
                           {"10.0.250+", 10, 0, 250},
                           {"007.08.09", 7, 8, 9},
                           {"6.6.99999999999", 6, 6, 0}}) {
    const auto version = kernelVersion(each.release);
    ASSERT_TRUE(version) << each.release;
    EXPECT_EQ(version->major, each.major) << each.release;
    EXPECT_EQ(version->minor, each.minor) << each.release;
    EXPECT_EQ(version->patch, each.patch) << each.release;
  }
}

TEST(KernelVersion, IsUnknownWithoutTwoNumbers) {
  for (const char* release : {"", "6", "6.", "6.x", "6-rc1", "x.1.2", ".1.2", "-6.1.2", "+6.1",
                              " 6.1.2", "6.-1", "6. 1", "99999999999.1", "6.99999999999"}) {
    EXPECT_FALSE(kernelVersion(release)) << release;
  }
}

TEST(LinuxSystem, AnswersWithTheRunningKernels) {
  utsname names{};
  ASSERT_EQ(uname(&names), 0);
  platform::gnulinux::LinuxSystem system;
  const auto major = system.gestalt(Selector::majorVersion);
  const auto minor = system.gestalt(Selector::minorVersion);
  ASSERT_TRUE(major && minor && system.gestalt(Selector::bugFixVersion));
  const std::string beginning = std::to_string(*major) + "." + std::to_string(*minor);
  EXPECT_TRUE(std::string(names.release).starts_with(beginning)) << names.release;
  EXPECT_LT(CommonTooWenlolib::systemVersionNum(), 100900);
}

TEST(LinuxSystem, KnowsIntelProcessorsAndNoOthers) {
  const auto code = platform::gnulinux::LinuxSystem().gestalt(Selector::systemArchitecture);
#if defined(__i386__) || defined(__x86_64__)
  EXPECT_EQ(code, 10);
#else
  EXPECT_EQ(code, std::nullopt);
#endif
}

TEST(LinuxSystem, KnowsNoOtherQuestion) {
  EXPECT_EQ(platform::gnulinux::LinuxSystem().gestalt(static_cast<Selector>(0x73797334)),
            std::nullopt);
}

}  // namespace
}  // namespace wenlolib::tests
