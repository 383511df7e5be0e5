#include "platform/linux/LoadedFrom.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/posix/Child.h"

namespace wenlolib::tests {
namespace {

using platform::gnulinux::loadedFrom;

TEST(LoadedFrom, IsThisProgramWithLinksResolved) {
  EXPECT_EQ(loadedFrom(), Text(std::filesystem::read_symlink("/proc/self/exe").string()));
}

TEST(LoadedFrom, DoesNotDependOnTheWorkingFolder) {
  const Text before = loadedFrom();
  const std::string after = inChild(
      [] { return ::chdir("/") == 0 ? loadedFrom().value_or("(null)") : "no such folder"; });
  EXPECT_EQ(before, Text(after));
}

/// A program started by a relative path cannot tell from its name where it is. The kernel can.
TEST(LoadedFrom, IsFoundAfterAStartByARelativePath) {
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  const std::string answer = inChild([&]() -> std::string {
    if (::chdir(program.parent_path().c_str()) != 0) return "no such folder";
    const std::string command =
        "./" + program.filename().string() + " --gtest_filter=LoadedFrom.IsThisProgram* >/dev/null";
    return ::system(command.c_str()) == 0 ? "passed" : "failed";
  });
  EXPECT_EQ(answer, "passed");
}

}  // namespace
}  // namespace wenlolib::tests
