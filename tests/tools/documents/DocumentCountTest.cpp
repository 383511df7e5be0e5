#include "documents/DocumentCount.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "documents/Jobs.h"

namespace wenlolib::tools {
namespace {

TEST(DocumentCount, CountsWhatIsFoundAndWhatIsNamed) {
  std::string folder = testing::TempDir() + "wenlolib-count-XXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  std::filesystem::create_directory(folder + "/below");
  for (const char* name : {"/a.PLM", "/b.txt", "/below/c.ALM", "/below/.wenlolib-1.tmp"}) {
    std::ofstream(folder + name) << "x";
  }
  const DocumentCount count({folder, folder + "/b.txt"});
  for (int i = 0; i < 10000 && !count.total(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_EQ(count.total(), 3U);
  std::filesystem::remove_all(folder);
}

TEST(PassedOverText, OnlyWhatThereIs) {
  EXPECT_EQ(passedOverText({}), "");
  EXPECT_EQ(passedOverText({2, 1, 1}),
            "2 files with another ending, 1 link to a folder, 1 file that is unfinished");
  EXPECT_EQ(passedOverText({0, 3, 0}), "3 links to a folder");
}

}  // namespace
}  // namespace wenlolib::tools
