// Printer logs: one numbered file for each record.
#include <gtest/gtest.h>

#include "platform/Forwarding.h"
#include "support/ExpectedDocument.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

using platform::Outcome;
using platform::Publication;

std::string numbered(int number, const std::string& name = "App") {
  return printerLogFolder + "/" + name + "_" + std::to_string(number) + ".PLM";
}

bool writeRecord(const std::string& name = "App", const std::string& contents = "contents") {
  return WENLOLIB::initWithContents(contents, name)->writeAppInfo();
}

class Numbering : public InstalledTest {
 protected:
  bool isRecord(const std::string& path) const {
    return contentsOf(world.files.bytesAt(path)) == "contents";
  }
  void take(int first, int last) {
    for (int number = first; number <= last; ++number) world.files.addFile(numbered(number), "old");
  }
};

TEST_F(Numbering, BeginsWithOne) {
  EXPECT_TRUE(writeRecord());
  EXPECT_TRUE(isRecord(numbered(1)));
  EXPECT_TRUE(writeRecord());
  EXPECT_TRUE(isRecord(numbered(2)));
  EXPECT_EQ(world.files.at(numbered(3)), std::nullopt);
}

TEST_F(Numbering, TakesTheLowestFreeNumber) {
  take(2, 2);
  EXPECT_TRUE(writeRecord());
  EXPECT_TRUE(isRecord(numbered(1)));
  EXPECT_EQ(world.files.bytesAt(numbered(2)), "old");
  EXPECT_TRUE(writeRecord());
  EXPECT_TRUE(isRecord(numbered(3)));
}

TEST_F(Numbering, CountsEveryNameForItself) {
  take(1, 3);
  EXPECT_TRUE(writeRecord("Other"));
  EXPECT_TRUE(isRecord(numbered(1, "Other")));
}

TEST_F(Numbering, AFolderHasItsNumberTaken) {
  take(1, 2);
  world.files.addFolder(numbered(3));
  EXPECT_TRUE(writeRecord());
  EXPECT_TRUE(isRecord(numbered(4)));
  EXPECT_EQ(world.journal.linesOf("files.writeAtomically"),
            Journal::Lines{"files.writeAtomically " + numbered(4) + " asNew"});
}

TEST_F(Numbering, ADanglingLinkIsFree) {
  world.files.addDanglingLink(numbered(1));
  EXPECT_TRUE(writeRecord());
  EXPECT_TRUE(isRecord(numbered(1)));
}

TEST_F(Numbering, TheLastFreeNumberIs999) {
  take(1, 998);
  EXPECT_TRUE(writeRecord());
  EXPECT_TRUE(isRecord(numbered(999)));
  EXPECT_EQ(world.journal.linesOf("files.writeAtomically"),
            Journal::Lines{"files.writeAtomically " + numbered(999) + " asNew"});
}

TEST_F(Numbering, WithAllTaken999IsReplaced) {
  take(1, 999);
  EXPECT_TRUE(writeRecord());
  EXPECT_TRUE(isRecord(numbered(999)));
  EXPECT_EQ(world.files.bytesAt(numbered(998)), "old");
  EXPECT_EQ(world.files.at(numbered(1000)), std::nullopt);
  EXPECT_EQ(world.files.at(numbered(999))->mode, 0666U);
}

TEST_F(Numbering, AsksAtMostOnceForEachOf999Numbers) {
  take(1, 999);
  EXPECT_TRUE(writeRecord());
  EXPECT_EQ(world.journal.count("files.kindAt " + printerLogFolder),
            999U + 1U);  // and once for the mode
}

TEST_F(Numbering, WithAllTakenAndAFolderAt999TheWriteFails) {
  take(1, 998);
  world.files.addFolder(numbered(999), 0755);
  EXPECT_FALSE(writeRecord());
  EXPECT_EQ(world.files.at(numbered(999))->mode, 0755U);
}

/// Another writer takes each number in a set just before it is written.
class RacingFiles : public platform::ForwardingFiles {
 public:
  RacingFiles(MemoryFiles& files, int untilNumber)
      : ForwardingFiles(files), files_(files), until_(untilNumber) {}

  Outcome writeAtomically(const std::string& path, std::string_view bytes, std::uint32_t mode,
                          Publication publication) override {
    if (publication == Publication::asNew && next_ <= until_) {
      files_.addFile(path, "theirs");
      ++next_;
    }
    return platform::ForwardingFiles::writeAtomically(path, bytes, mode, publication);
  }

 private:
  MemoryFiles& files_;
  int next_ = 1;
  int until_;
};

TEST_F(Numbering, ANumberTakenInBetweenLeavesTheNextFreeOne) {
  RacingFiles racing(world.files, 1);
  world.services.files = &racing;
  take(2, 2);
  EXPECT_TRUE(writeRecord());
  EXPECT_EQ(world.files.bytesAt(numbered(1)), "theirs");
  EXPECT_EQ(world.files.bytesAt(numbered(2)), "old");
  EXPECT_TRUE(isRecord(numbered(3)));
}

TEST_F(Numbering, NoRecordIsLostToARaceForEveryNumber) {
  RacingFiles racing(world.files, 999);
  world.services.files = &racing;
  EXPECT_TRUE(writeRecord());
  for (int number = 1; number <= 998; ++number) {
    ASSERT_EQ(world.files.bytesAt(numbered(number)), "theirs");
  }
  EXPECT_TRUE(isRecord(numbered(999)));
}

TEST_F(Numbering, OnlyTheFileThatWasWrittenGetsItsPermissions) {
  RacingFiles racing(world.files, 1);
  world.services.files = &racing;
  EXPECT_TRUE(writeRecord());
  EXPECT_EQ(world.files.at(numbered(1))->mode, 0644U);
  EXPECT_EQ(world.journal.linesOf("files.setPermissions"),
            Journal::Lines{"files.setPermissions " + numbered(2) + " 0666"});
}

}  // namespace
}  // namespace wenlolib::tests
