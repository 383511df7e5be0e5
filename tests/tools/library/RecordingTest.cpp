// Compares previews with what is then recorded, on real files.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "library/Recording.h"
#include "library/ToolPlatform.h"
#include "platform/Forwarding.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/posix/TemporaryFolder.h"
#include "record/HeaderValues.h"
#include "support/HostInstallation.h"
#include "wenlolib/version.h"

namespace wenlolib::tests {
namespace {

using tools::RecordRequest;

/// Kind, mode and bytes of every file and folder below a root.
std::map<std::string, std::string> treeOf(const std::string& root) {
  std::map<std::string, std::string> tree;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const bool folder = entry.is_directory();
    const auto mode = static_cast<unsigned>(entry.status().permissions());
    tree[entry.path().string()] =
        std::to_string(mode) + " " + (folder ? "folder" : readFile(entry.path().string()));
  }
  return tree;
}

const std::string marchFile = applicationFolder + "/Quillmere_Log_App_2403.ALM";

/// Real files below the test's own root, with a host that is allowed to record. The clock stands
/// still. At first no identifier is stored.
class Preview : public testing::Test {
 protected:
  Preview() {
    services.system = &memory.system;
    services.clock = &memory.clock;
    services.user = &memory.user;
    services.bundles = &bundles;
    memory.user.container = {true, container};
    for (const std::string& folder : {printerLogFolder, applicationFolder, configurationFolder}) {
      std::filesystem::create_directories(real(folder));
    }
    writeList(preferencePath, agreedPreferences(memory.clock.time, 100));
  }

  [[nodiscard]] std::string real(const std::string& path) const { return root.path() + path; }

  void writeList(const std::string& path, const Dictionary& list) {
    writeFile(real(path), services.propertyLists->asXml(list).value());
  }

  void storeIdentifier() { writeList(identifierPath, {{"WENLIBUUID", identifier}, {"Other", 7}}); }

  static RecordRequest application(std::string contents, std::uint32_t option = 1) {
    return {RecordKind::application, "App", option, {}, std::move(contents)};
  }
  static RecordRequest printerLog(Dictionary printer, std::string contents = "jobs=3") {
    return {RecordKind::printerLog, "App", 0, std::move(printer), std::move(contents)};
  }

  const std::string identifier = "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}";
  TemporaryFolder root;
  MemoryPlatform memory;
  platform::gnulinux::LinuxPlatform port{root.path()};
  tools::BuildBundles bundles{*port.services().bundles};
  platform::Platform services = port.services();
};

TEST_F(Preview, IsByteForByteWhatIsThenRecorded) {
  storeIdentifier();
  std::string large;
  for (int i = 0; i < 100000; ++i) large += "Größe A4, 印刷 " + std::to_string(i) + "\n";
  const Dictionary identity = {{"DeviceID", "MFG:Orvan;MDL:QX 200;"}, {"SN", "4711"}};
  const RecordRequest requests[] = {
      application("pages=12"),
      application("", 0),
      application(large, 2),
      application(std::string("a\0b", 3), 17),
      printerLog({}),
      printerLog(identity),
      printerLog(identity, large),
      printerLog({{"NEWTAGTYPE", true}, {"SN", "<b>"}}),
      printerLog({{"SN", "A&B < C"}}),  // the preview and the record mend it
  };
  for (const RecordRequest& request : requests) {
    const auto before = treeOf(root.path());
    const auto shown = tools::preview(services, request).document;
    EXPECT_EQ(treeOf(root.path()), before);
    ASSERT_TRUE(shown);
    EXPECT_FALSE(shown->exampleIdentifier);
    const auto recorded = tools::record(services, request);
    ASSERT_TRUE(recorded.answer);
    ASSERT_TRUE(recorded.document && recorded.document->outcome == platform::Outcome::written);
    EXPECT_EQ(shown->path, recorded.document->path);
    EXPECT_EQ(shown->bytes.size(), recorded.document->size);
    EXPECT_TRUE(shown->bytes == readFile(real(shown->path))) << shown->path;
    EXPECT_NE(shown->bytes.find(identifier), std::string::npos);
  }
}

TEST_F(Preview, CarriesTheVersionOfThisBuildInApplicationUsage) {
  const std::string version = twoComponents(WENLOLIB_VERSION);
  ASSERT_FALSE(version.empty());
  const auto shown = tools::preview(services, application("x")).document;
  ASSERT_TRUE(shown);
  EXPECT_NE(shown->bytes.find("<Version>" + version + "</Version>"), std::string::npos)
      << shown->bytes;
}

TEST_F(Preview, WithoutAStoredIdentifierShowsAnExampleAndMakesNone) {
  const Dictionary files[] = {{}, {{"WENLIBUUID", "NOTDETERMINED"}}, {{"Other", 7}}};
  for (const Dictionary& file : files) {
    if (!file.empty()) writeList(identifierPath, file);
    const auto before = treeOf(root.path());
    const auto shown = tools::preview(services, application("x")).document;
    EXPECT_EQ(treeOf(root.path()), before);
    ASSERT_TRUE(shown);
    EXPECT_TRUE(shown->exampleIdentifier);
    EXPECT_NE(shown->bytes.find(std::string("<ID>{") + tools::exampleUuid + "}</ID>"),
              std::string::npos);
  }
}

TEST_F(Preview, NeedsNoFolderAndMakesNone) {
  std::filesystem::remove_all(real(container));
  const auto before = treeOf(root.path());
  for (const RecordRequest& request : {application("x"), printerLog({})}) {
    EXPECT_TRUE(tools::preview(services, request).document);
  }
  EXPECT_EQ(treeOf(root.path()), before);
}

TEST_F(Preview, LeavesTheModeOfAnOlderFileAlone) {
  writeFile(real(marchFile), "older");
  std::filesystem::permissions(real(marchFile), std::filesystem::perms(0600));
  const auto before = treeOf(root.path());
  ASSERT_TRUE(tools::preview(services, application("x")).document);
  EXPECT_EQ(treeOf(root.path()), before);
}

TEST_F(Preview, TakesTheNumberThatIsFree) {
  writeFile(real(printerLogFolder + "/App_1.PLM"), "");
  const auto shown = tools::preview(services, printerLog({})).document;
  ASSERT_TRUE(shown);
  EXPECT_EQ(shown->path, printerLogFolder + "/App_2.PLM");
}

TEST_F(Preview, TellsWhetherAnOlderRecordIsReplaced) {
  storeIdentifier();
  for (const bool older : {false, true}) {
    const auto shown = tools::preview(services, application("x")).document;
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->replacing, older);
    const auto recorded = tools::record(services, application("x"));
    ASSERT_TRUE(recorded.written());
    EXPECT_EQ(recorded.document->replacing, older);
  }
  const auto log = tools::record(services, printerLog({}));
  ASSERT_TRUE(log.written());
  EXPECT_FALSE(log.document->replacing);
}

TEST_F(Preview, AKeptRecordStaysAsItIsWithItsMode) {
  RecordRequest request = application("x");
  request.keep = true;
  storeIdentifier();
  EXPECT_TRUE(tools::record(services, request).written());
  std::filesystem::permissions(real(marchFile), std::filesystem::perms(0600));
  const auto before = treeOf(root.path());
  const auto kept = tools::record(services, request);
  EXPECT_FALSE(kept.answer);
  ASSERT_TRUE(kept.document);
  EXPECT_TRUE(kept.document->kept);
  EXPECT_EQ(treeOf(root.path()), before);
}

/// Does not find this month's file, like a look just before another writer makes it.
class TooEarly : public platform::ForwardingFiles {
 public:
  using ForwardingFiles::ForwardingFiles;
  platform::Kind kindAt(const std::string& path) override {
    if (path == marchFile) return platform::Kind::nothing;
    return platform::ForwardingFiles::kindAt(path);
  }
};

TEST_F(Preview, ARecordThatAnotherWriterHasJustMadeIsKeptToo) {
  storeIdentifier();
  writeFile(real(marchFile), "another's");
  const auto before = treeOf(root.path());
  TooEarly files(*services.files);
  services.files = &files;
  RecordRequest request = application("x");
  request.keep = true;
  const auto kept = tools::record(services, request);
  ASSERT_TRUE(kept.document);
  EXPECT_TRUE(kept.document->kept);
  EXPECT_EQ(treeOf(root.path()), before);
}

TEST_F(Preview, TheLastLogIsReplacedOrKept) {
  storeIdentifier();
  for (int number = 1; number <= 999; ++number) {
    writeFile(real(printerLogFolder + "/App_" + std::to_string(number) + ".PLM"), "older");
  }
  RecordRequest request = printerLog({});
  request.keep = true;
  const auto kept = tools::record(services, request);
  EXPECT_FALSE(kept.answer);
  ASSERT_TRUE(kept.document);
  EXPECT_TRUE(kept.document->kept);
  EXPECT_EQ(readFile(real(printerLogFolder + "/App_999.PLM")), "older");
  EXPECT_TRUE(tools::preview(services, printerLog({})).document->replacing);
  const auto replaced = tools::record(services, printerLog({}));
  ASSERT_TRUE(replaced.written());
  EXPECT_TRUE(replaced.document->replacing);
}

TEST_F(Preview, OfAValueThatCannotBeMendedIsNothingAndSoIsTheRecord) {
  const RecordRequest request = printerLog({{"SN", "<b>"}});
  EXPECT_FALSE(tools::preview(services, request).document);
  const auto recorded = tools::record(services, request);
  EXPECT_TRUE(recorded.answer);
  EXPECT_FALSE(recorded.document);
}

TEST_F(Preview, ARefusedRecordHasNoDocumentAndAFailedOneHasItsPath) {
  const auto refused = tools::record(services, application("x", 3));
  EXPECT_FALSE(refused.answer);
  EXPECT_FALSE(refused.document);
  std::filesystem::remove_all(real(applicationFolder));
  const auto failed = tools::record(services, application("x"));
  EXPECT_FALSE(failed.answer);
  ASSERT_TRUE(failed.document);
  EXPECT_EQ(failed.document->outcome, platform::Outcome::failed);
  EXPECT_EQ(failed.document->path, marchFile);
}

}  // namespace
}  // namespace wenlolib::tests
