// Names of documents, and finding and counting them.
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
#include <vector>

namespace wenlolib::tools {
namespace {

TEST(HostName, IsTheOneThatTheHostGave) {
  EXPECT_EQ(hostName("PLM/QX200_1.PLM"), "QX200");
  EXPECT_EQ(hostName("PLM/QX_200_17.PLM"), "QX_200");
  EXPECT_EQ(hostName("PLM/a/b_1.PLM"), "a/b");
  EXPECT_EQ(hostName("PLM/QX200.PLM"), "QX200");
  EXPECT_EQ(hostName("PLM/_.PLM"), "_");
  EXPECT_EQ(hostName("ALM/Quillmere_Log_Photo_Album_2611.ALM"), "Photo_Album");
  EXPECT_EQ(hostName("ALM/Quillmere_Log_a/b_10001.ALM"), "a/b");
  EXPECT_EQ(hostName("PLM/Quillmere_Log_x_1.PLM"), "Quillmere_Log_x");
}

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

TEST(DocumentWalk, GivesEachFolderInTheOrderOfBytesAndSaysWhatItPassedOver) {
  std::string folder = testing::TempDir() + "wenlolib-walk-XXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  std::filesystem::create_directory(folder + "/b");
  std::filesystem::create_directory(folder + "/empty");
  std::filesystem::create_directory_symlink(folder, folder + "/link");
  for (const char* name : {"/c.PLM", "/B.PLM", "/b/a.ALM", "/10.ALM", "/9.ALM", "/b.ALM",
                           "/\xC3\xA9.ALM", "/notes", "/.wenlolib-1.tmp", "/empty/a.txt"}) {
    std::ofstream(folder + name) << "x";
  }
  DocumentWalk walk({folder, folder + "/empty", "-"});
  std::vector<std::string> found;
  std::string complaint;
  while (const auto candidate = walk.next()) {
    if (candidate->nothing) complaint = candidate->complaint;
    found.push_back(candidate->path.starts_with(folder) ? candidate->path.substr(folder.size())
                                                        : candidate->path);
  }
  EXPECT_EQ(found, (std::vector<std::string>{"/10.ALM", "/9.ALM", "/B.PLM", "/b/a.ALM", "/b.ALM",
                                             "/c.PLM", "/\xC3\xA9.ALM", "/empty", "-"}));
  EXPECT_EQ(complaint,
            "no documents: there is no *.PLM and no *.ALM in this folder; passed over: 1 file with "
            "another ending");
  EXPECT_EQ(walk.passedOver().text(),
            "2 files with another ending, 1 link to a folder, 1 file that is unfinished");
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
