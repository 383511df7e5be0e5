// What happens to a record and to its file when it is written.
#include <gtest/gtest.h>

#include <new>

#include "platform/Forwarding.h"
#include "record/MonthFiles.h"
#include "support/ExpectedDocument.h"
#include "support/PlatformTest.h"

namespace wenlolib::tests {
namespace {

class RecordFile : public InstalledTest {
 protected:
  const std::string file = monthFile("2403");
};

TEST_F(RecordFile, HoldsTheDocumentAndNothingElse) {
  EXPECT_TRUE(applicationRecord()->writeAppInfo());
  ExpectedDocument expected;
  expected.contents = "contents";
  EXPECT_EQ(world.files.bytesAt(file), expected.text());
}

TEST_F(RecordFile, IsReadableAndWritableForEveryone) {
  EXPECT_TRUE(applicationRecord()->writeAppInfo());
  EXPECT_EQ(world.files.at(file)->mode, 0666U);
  EXPECT_TRUE(WENLOLIB::initWithContents("contents", "App")->writeAppInfo());
  EXPECT_EQ(world.files.at(printerLogFolder + "/App_1.PLM")->mode, 0666U);
}

TEST_F(RecordFile, IsReplacedByTheNextRecordOfTheSameMonth) {
  world.clock.time = dateOf(2026, 11, 3);
  EXPECT_TRUE(applicationRecord("first")->writeAppInfo());
  world.clock.time = dateOf(2026, 11, 29);
  EXPECT_TRUE(applicationRecord("second")->writeAppInfo());
  EXPECT_EQ(contentsOf(world.files.bytesAt(monthFile("2611"))), "second");
  world.clock.time = dateOf(2026, 12, 1);
  EXPECT_TRUE(applicationRecord("third")->writeAppInfo());
  EXPECT_EQ(contentsOf(world.files.bytesAt(monthFile("2611"))), "second");
  EXPECT_EQ(contentsOf(world.files.bytesAt(monthFile("2612"))), "third");
}

TEST_F(RecordFile, WithoutContentsOrNameNothingIsAsked) {
  for (const std::uint32_t fileType : {1U, 2U}) {
    for (const auto& record :
         {WENLOLIB::init(), WENLOLIB::initWithContents("contents"),
          WENLOLIB::initWithContents(std::nullopt, "App"),
          WENLOLIB::initWithContents("\xFF", "App"), WENLOLIB::initWithContents("c", "\xFF")}) {
      record->setFileType(fileType);
      EXPECT_FALSE(record->writeAppInfo());
    }
  }
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(RecordFile, EmptyContentsAndNameAreWritten) {
  EXPECT_TRUE(applicationRecord("", "")->writeAppInfo());
  EXPECT_EQ(contentsOf(world.files.bytesAt(monthFile("2403", ""))), "");
  EXPECT_TRUE(WENLOLIB::initWithContents("", "")->writeAppInfo());
  EXPECT_TRUE(world.files.at(printerLogFolder + "/_1.PLM"));
}

TEST_F(RecordFile, AFailedWriteLeavesTheEarlierFileButOpensItsPermissions) {
  world.files.addFile(file, "earlier", 0600);
  world.faults.failAlways("files.writeAtomically");
  EXPECT_FALSE(applicationRecord()->writeAppInfo());
  EXPECT_EQ(world.files.bytesAt(file), "earlier");
  EXPECT_EQ(world.files.at(file)->mode, 0666U);
}

TEST_F(RecordFile, AFailedWriteDropsTheDocumentToo) {
  world.faults.fail("files.writeAtomically", 1);
  const auto record = applicationRecord();
  EXPECT_FALSE(record->writeAppInfo());
  world.faults.failAlways("xml.serialised");
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(world.journal.count("files.writeAtomically"), 1U);
}

/// Every write runs out of memory.
class ThrowingWrites : public platform::ForwardingFiles {
 public:
  using ForwardingFiles::ForwardingFiles;
  int tried = 0;
  platform::Outcome writeAtomically(const std::string&, std::string_view, std::uint32_t,
                                    platform::Publication) override {
    ++tried;
    throw std::bad_alloc();
  }
};

TEST_F(RecordFile, AWriteThatThrowsIsAFailedWrite) {
  world.files.addFile(file, "earlier", 0600);
  ThrowingWrites files(world.files);
  world.services.files = &files;
  const auto record = applicationRecord();
  EXPECT_FALSE(record->writeAppInfo());
  EXPECT_EQ(world.files.bytesAt(file), "earlier");
  EXPECT_EQ(world.files.at(file)->mode, 0666U);
  world.faults.failAlways("xml.serialised");
  EXPECT_TRUE(record->writeAppInfo());  // its document is gone
  EXPECT_EQ(files.tried, 1);
}

TEST_F(RecordFile, AFailedWriteWithoutAnEarlierFileSetsNoPermissions) {
  world.faults.failAlways("files.writeAtomically");
  EXPECT_FALSE(applicationRecord()->writeAppInfo());
  EXPECT_EQ(world.journal.count("files.setPermissions"), 0U);
  EXPECT_EQ(world.files.at(file), std::nullopt);
}

TEST_F(RecordFile, AFolderInItsPlaceStaysAndKeepsItsPermissions) {
  world.files.addFolder(file, 0755);
  EXPECT_FALSE(applicationRecord()->writeAppInfo());
  EXPECT_EQ(world.files.at(file)->mode, 0755U);
  EXPECT_EQ(world.journal.count("files.setPermissions"), 0U);
}

TEST_F(RecordFile, AFailedPermissionChangeIsOfNoConsequence) {
  world.faults.failAlways("files.setPermissions");
  EXPECT_TRUE(applicationRecord()->writeAppInfo());
  EXPECT_TRUE(verifies(world.files.bytesAt(file)));
}

TEST_F(RecordFile, AWriteThatFailsOnceSucceedsTheNextTime) {
  world.faults.fail("files.writeAtomically", 1);
  const auto record = applicationRecord();
  EXPECT_FALSE(record->writeAppInfo());
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(contentsOf(world.files.bytesAt(file)), "contents");
}

}  // namespace
}  // namespace wenlolib::tests
