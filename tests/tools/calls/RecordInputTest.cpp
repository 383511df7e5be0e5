#include "calls/RecordInput.h"

#include <gtest/gtest.h>

#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

TEST(ContentsInput, IsReadUpToItsBound) {
  const TemporaryFolder folder;
  const std::string file = folder / "contents";
  writeFile(file, "12345678");
  EXPECT_EQ(tools::readContents(file, 8).contents, "12345678");
  EXPECT_EQ(tools::readContents(file, 8).complaint, "");
  const auto refused = tools::readContents(file, 7);
  EXPECT_EQ(refused.contents, "");
  EXPECT_NE(refused.complaint.find("too large"), std::string::npos) << refused.complaint;
}

TEST(ContentsInput, OfUnknownSizeIsReadUpToItsBoundAsWell) {
  // The kernel makes these files while they are read, and gives no size before.
  const std::string version = readFile("/proc/version");
  ASSERT_FALSE(version.empty());
  EXPECT_EQ(tools::readContents("/proc/version", version.size()).contents, version);
  EXPECT_EQ(tools::readContents("/proc/version").contents, version);
  const auto refused = tools::readContents("/proc/version", version.size() - 1);
  EXPECT_EQ(refused.contents, "");
  EXPECT_NE(refused.complaint.find("too large"), std::string::npos) << refused.complaint;
  EXPECT_NE(tools::readContents("/proc/self/status", 10).complaint.find("too large"),
            std::string::npos);
  EXPECT_GT(tools::readContents("/proc/self/status").contents.size(), 100U);
}

TEST(ContentsInput, NamesTheFirstByteThatIsNotText) {
  const TemporaryFolder folder;
  const std::string file = folder / "contents";
  const std::pair<std::string, const char*> table[] = {
      {"\xFF", "byte 0"}, {"ab\xC3", "byte 2"}, {"\xC3\xA4\xE2\x82\xAC\x80", "byte 5"}};
  for (const auto& [bytes, place] : table) {
    writeFile(file, bytes);
    const auto input = tools::readContents(file);
    EXPECT_NE(input.complaint.find(place), std::string::npos) << input.complaint;
  }
}

}  // namespace
}  // namespace wenlolib::tests
