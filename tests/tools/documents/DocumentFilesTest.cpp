// A thread of its own counts the documents.
#include "documents/DocumentFiles.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

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

TEST(ReadDocument, GivesAllOfAFileThatShowsNoSize) {
  std::ifstream stream("/proc/version");
  const std::string version(std::istreambuf_iterator<char>(stream), {});
  ASSERT_FALSE(version.empty());
  ASSERT_EQ(std::filesystem::file_size("/proc/version"), 0U);
  for (const bool regular : {false, true}) {
    for (const std::size_t held : {0U, 1U, 7U, 100'000U}) {
      std::string buffer(held, '?');
      const DocumentReading reading = readDocument({"/proc/version", "", true, regular}, buffer);
      EXPECT_EQ(reading.complaint, "");
      EXPECT_EQ(reading.bytes, version) << held;
    }
  }
}

TEST(ReadDocument, GivesAnEmptyFileAsOneWithoutBytes) {
  std::string file = testing::TempDir() + "wenlolib-empty-XXXXXX";
  ::close(mkstemp(file.data()));
  std::string buffer = "of the one before";
  errno = EINTR;  // of an earlier call: it must not keep the reading going at the end of the file
  const DocumentReading reading = readDocument({file, "", true, false}, buffer);
  EXPECT_EQ(reading.complaint, "");
  EXPECT_EQ(reading.bytes, "");
  std::filesystem::remove(file);
}

}  // namespace
}  // namespace wenlolib::tools
