#include "platform/apple/LoadedFrom.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <tuple>

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
  for (const auto& [from, name, bundle] : {std::tuple("", "A.bundle/Contents/MacOS/A", "A.bundle"),
                                           {"A.bundle", "Contents/MacOS/A", "."},
                                           {"A.bundle/Contents/MacOS", "A", "../.."}}) {
    const std::string answer = inChild([&, from = from, name = name, bundle = bundle] {
      std::filesystem::current_path(folder / from);
      const Text found = bundleAround(name);
      return std::string(found && std::filesystem::equivalent(*found, bundle) ? "found" : "lost");
    });
    EXPECT_EQ(answer, "found") << name;
  }
}

}  // namespace
}  // namespace wenlolib::tests
