// Names of documents, and finding them.
#include "reading/DocumentFiles.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace wenlolib {
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
  PassedOver inEmpty;
  while (const auto candidate = walk.next()) {
    if (candidate->nothing) inEmpty = candidate->passed;
    found.push_back(candidate->path.starts_with(folder) ? candidate->path.substr(folder.size())
                                                        : candidate->path);
  }
  EXPECT_EQ(found, (std::vector<std::string>{"/10.ALM", "/9.ALM", "/B.PLM", "/b/a.ALM", "/b.ALM",
                                             "/c.PLM", "/\xC3\xA9.ALM", "/empty", "-"}));
  EXPECT_EQ(inEmpty.otherEnding, 1U);
  EXPECT_EQ(walk.passedOver().otherEnding, 2U);
  EXPECT_EQ(walk.passedOver().links, 1U);
  EXPECT_EQ(walk.passedOver().unfinished, 1U);
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
      const DocumentReading reading =
          readDocument({"/proc/version", "", true, regular}, buffer, nullptr);
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
  const DocumentReading reading = readDocument({file, "", true, false}, buffer, nullptr);
  EXPECT_EQ(reading.complaint, "");
  EXPECT_EQ(reading.bytes, "");
  std::filesystem::remove(file);
}

}  // namespace
}  // namespace wenlolib
