// Only the file that was shown is deleted.
#include "records/Removal.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace wenlolib::tools {
namespace {

namespace fs = std::filesystem;

class RemoveRecord : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(mkdtemp(folder_.data()), nullptr);
    folder_ += "/";
    fs::create_directories(folder_ + "PLM/below");
  }
  void TearDown() override { fs::remove_all(folder_); }

  /// A record whose file has just been written and read.
  OwnRecord record(const std::string& place) {
    std::ofstream(folder_ + place) << "<OrvanQXPrinter ";
    std::string buffer;
    const RecordReading reading = readRecord(folder_, place, buffer);
    EXPECT_EQ(reading.complaint, "");
    return {0, place, reading.state};
  }

  std::string folder_ = testing::TempDir() + "wenlolib-removal-XXXXXX";
};

TEST_F(RemoveRecord, DeletesWhatWasRead) {
  for (const char* place : {"PLM/a_1.PLM", "PLM/below/a_1.PLM"}) {
    EXPECT_EQ(removeRecord(folder_, record(place)), "");
    EXPECT_FALSE(fs::exists(folder_ + place));
  }
}

TEST_F(RemoveRecord, TakesAFileThatIsGoneForDeleted) {
  const OwnRecord gone = record("PLM/a_1.PLM");
  fs::remove(folder_ + gone.place);
  EXPECT_EQ(removeRecord(folder_, gone), "");
}

TEST_F(RemoveRecord, LeavesWhatChanged) {
  const OwnRecord longer = record("PLM/a_1.PLM");
  std::ofstream(folder_ + longer.place, std::ios::app) << "x";
  const OwnRecord replaced = record("PLM/b_1.PLM");
  fs::rename(folder_ + replaced.place, folder_ + "PLM/older");
  std::ofstream(folder_ + replaced.place) << "<OrvanQXPrinter ";
  for (const OwnRecord& changed : {longer, replaced}) {
    EXPECT_EQ(removeRecord(folder_, changed), "changed since it was shown");
    EXPECT_TRUE(fs::exists(folder_ + changed.place));
  }
}

TEST_F(RemoveRecord, FollowsNoLink) {
  const OwnRecord inside = record("PLM/below/a_1.PLM");
  fs::rename(folder_ + "PLM/below", folder_ + "elsewhere");
  fs::create_directory_symlink(folder_ + "elsewhere", folder_ + "PLM/below");
  EXPECT_EQ(removeRecord(folder_, inside), "its folder is a link");
  EXPECT_TRUE(fs::exists(folder_ + "elsewhere/a_1.PLM"));

  const OwnRecord replaced = record("PLM/b_1.PLM");
  fs::rename(folder_ + replaced.place, folder_ + "b");
  fs::create_symlink(folder_ + "b", folder_ + replaced.place);
  EXPECT_EQ(removeRecord(folder_, replaced), "changed since it was shown");
  EXPECT_TRUE(fs::exists(folder_ + "b"));
}

}  // namespace
}  // namespace wenlolib::tools
