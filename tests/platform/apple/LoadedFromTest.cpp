#include "platform/apple/LoadedFrom.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "platform/posix/Child.h"
#include "platform/posix/PosixPropertyLists.h"
#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

Text bundleAround(const std::string& object) {
  return platform::posix::bundleAround(object, platform::apple::codeFolder);
}

TEST(LoadedFrom, IsThisProgram) {
  const Text file = platform::apple::loadedFrom();
  ASSERT_TRUE(file);
  EXPECT_TRUE(std::filesystem::equivalent(*file, "/proc/self/exe")) << *file;
}

TEST(LoadedFrom, LeadsToTheBundleAroundTheFolderForCode) {
  EXPECT_EQ(bundleAround("/P/WENLOLIB.bundle/Contents/MacOS/WENLOLIB"), "/P/WENLOLIB.bundle");
  EXPECT_EQ(bundleAround("/P/WENLOLIB.bundle/Contents/Linux/WENLOLIB"), std::nullopt);
}

TEST(LoadedFrom, LeadsToTheBundleByARelativeNameToo) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder / "A.bundle/Contents/MacOS");
  writeFile(folder / "A.bundle/Contents/MacOS/A", "");
  struct Case {
    const char *from, *name, *bundle;
  };
  for (const Case& each : {Case{"", "A.bundle/Contents/MacOS/A", "A.bundle"},
                           {"A.bundle", "Contents/MacOS/A", "."},
                           {"A.bundle/Contents/MacOS", "A", "../.."}}) {
    const std::string answer = inChild([&] {
      std::filesystem::current_path(folder / each.from);
      const Text found = bundleAround(each.name);
      const bool isFound = found && std::filesystem::equivalent(*found, each.bundle);
      return std::string(isFound ? "found" : "lost");
    });
    EXPECT_EQ(answer, "found") << each.name;
  }
}

}  // namespace
}  // namespace wenlolib::tests
