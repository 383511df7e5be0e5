// What creating a document answers, and what it leaves in the record.
#include <gtest/gtest.h>

#include <new>

#include "support/ExpectedDocument.h"
#include "support/FailingAllocations.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

class DocumentCreation : public InstalledTest {
 protected:
  const std::string path = printerLogFolder + "/App_1.PLM";
  const std::string month = applicationFolder + "/Quillmere_Log_App_2403.ALM";
  std::shared_ptr<WENLOLIB> record = WENLOLIB::initWithContents("contents", "App");
};

TEST_F(DocumentCreation, ARefusedDocumentIsTrueAndNoFileIsWritten) {
  world.faults.failAlways("xml.serialised");
  const auto before = world.files.all();
  EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(world.files.all(), before);
  EXPECT_EQ(world.journal.count("files.writeAtomically"), 0U);
  EXPECT_EQ(world.journal.count("files.setPermissions"), 0U);
}

TEST_F(DocumentCreation, TheFileHoldsWhatTheXmlServiceAnswered) {
  world.xml.replacement = "<serialised/>";
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(world.files.bytesAt(path), "<serialised/>");
}

TEST_F(DocumentCreation, ARefusedDocumentLeavesTheEarlierOneOfTheRecord) {
  world.xml.replacement = "<earlier/>";
  EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
  world.faults.failAlways("xml.serialised");
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(world.files.bytesAt(path), "<earlier/>");
}

TEST_F(DocumentCreation, ARefusedDocumentLeavesTheEarlierOneWhateverTheRecordWasChangedTo) {
  ASSERT_TRUE(record->WENLOLIBCreateXMLDocument());
  const std::string earlier = world.xml.seen;
  record->setContents("other contents");
  record->setApplicationName("Other");
  record->setFileType(2);
  record->serOtherInfo(Dictionary{{"SN", "<b>"}});
  world.faults.failAlways("xml.serialised");
  EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(world.files.bytesAt(applicationFolder + "/Quillmere_Log_Other_2403.ALM"), earlier);
  EXPECT_EQ(contentsOf(earlier), "contents");
}

TEST_F(DocumentCreation, ALackOfMemoryLeavesTheEarlierOneOfTheRecord) {
  world.xml.replacement = "<earlier/>";
  EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
  {
    FailingAllocations failing(1);
    EXPECT_FALSE(record->WENLOLIBCreateXMLDocument());
  }
  world.faults.failAlways("xml.serialised");
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(world.files.bytesAt(path), "<earlier/>");
}

TEST_F(DocumentCreation, ALackOfMemoryWhileWritingLeavesTheEarlierOneToo) {
  record->setFileType(2);
  long k = 1;
  for (; k < 1000; ++k) {
    world.faults.forgive();
    world.files.remove(month);
    world.xml.replacement = "<earlier/>";
    ASSERT_TRUE(record->WENLOLIBCreateXMLDocument());
    world.xml.replacement = "<later/>";
    world.journal.clear();
    FailingAllocations failing(k);
    const bool answer = record->writeAppInfo();
    failing.stop();
    if (world.journal.count("xml.serialised") > 0) break;
    EXPECT_FALSE(answer) << k;
    world.faults.failAlways("xml.serialised");
    EXPECT_TRUE(record->writeAppInfo());
    EXPECT_EQ(world.files.bytesAt(month), "<earlier/>") << k;
  }
  EXPECT_GT(k, 3);
  EXPECT_LT(k, 1000);
}

TEST_F(DocumentCreation, AWrittenDocumentIsGoneFromTheRecord) {
  EXPECT_TRUE(record->writeAppInfo());
  world.faults.failAlways("xml.serialised");
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(world.files.at(printerLogFolder + "/App_2.PLM"), std::nullopt);
}

TEST_F(DocumentCreation, EveryCallMakesANewDocument) {
  EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
  const std::string first = world.xml.seen;
  world.clock.time += Seconds(1);
  EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
  EXPECT_NE(world.xml.seen, first);
  EXPECT_TRUE(record->writeAppInfo());
  EXPECT_EQ(elementIn(world.files.bytesAt(path), "Date"), "2024-03-15T09:05:08+09:00");
}

TEST_F(DocumentCreation, TheWholeOrderOfCalls) {
  record->setFileType(2);
  world.user.container = {true, "/C"};
  EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
  const std::string configuration =
      "/C/Library/Application Support/QMR/Config/com.orvan.printing.WENLOLIB.Conf.plist";
  const Journal::Lines expected = {
      "system.gestalt sys1", "system.gestalt sys2", "system.gestalt sys3", "clock.now",
      // the date, from its components
      "system.gestalt sys1", "system.gestalt sys2", "system.gestalt sys3", "calendar.localTime",
      // key and cipher
      "digest.md5", "cipher.rc4",
      // the probes
      "bundles.ownInformation", "system.gestalt sys1", "system.gestalt sys2", "system.gestalt sys3",
      "user.locale", "user.groupContainer K7MW2PL9QD.QX.common",
      "propertyLists.read " + configuration, "uuids.create", "files.kindAt " + configuration,
      "propertyLists.asXml", "files.writeAtomically " + configuration + " asNew",
      "files.kindAt " + configuration,
      // checksum and serialisation
      "digest.md5", "xml.serialised"};
  EXPECT_EQ(world.journal.lines(), expected);
}

TEST_F(DocumentCreation, ALackOfAnyWorkingBufferAnswersBeforeAnythingIsAsked) {
  record->setContents(std::string(1000, 'c'));
  for (const long k : {1, 2, 3}) {
    world.journal.clear();
    FailingAllocations failing(k);
    const bool made = record->WENLOLIBCreateXMLDocument();
    failing.stop();
    EXPECT_FALSE(made) << k;
    EXPECT_EQ(world.journal.lines(), Journal::Lines()) << k;
  }
}

TEST_F(DocumentCreation, ContentsOf2GiBAreRefusedBeforeTheBuffersAreMade) {
  if constexpr (sizeof(std::size_t) < 8)
    GTEST_SKIP() << "a 32-bit process cannot hold contents of 2 GiB";
  Text contents;
  try {
    contents.emplace(std::size_t{1} << 31, 'c');
  } catch (const std::bad_alloc&) {
    GTEST_SKIP() << "there is not enough memory for the contents";
  }
  record->setContents(std::move(contents));
  CountedAllocations counted;
  const bool made = record->WENLOLIBCreateXMLDocument();
  counted.stop();
  EXPECT_FALSE(made);
  EXPECT_LT(counted.largest(), std::size_t{1} << 20);
  EXPECT_TRUE(world.journal.lines().empty());
  EXPECT_FALSE(record->writeAppInfo());
  EXPECT_EQ(world.journal.count("files.kindAt " + path), 1U);  // the contents were not null
  EXPECT_EQ(world.journal.count("files.writeAtomically"), 0U);
}

}  // namespace
}  // namespace wenlolib::tests
