#include "platform/apple/ApplePlatform.h"

#include <filesystem>

#include "platform/apple/StubTest.h"
#include "platform/posix/TemporaryFolder.h"
#include "support/HostInstallation.h"
#include "wenlolib/WENLOLIB.h"
#include "wenlolib/codec.h"

namespace wenlolib::tests {
namespace {

/// A host on the whole port, below the test's own root folder.
class ApplePlatform : public PortTest {
 protected:
  ApplePlatform() {
    world.gestalt = {{0x73797331, 10}, {0x73797332, 8}, {0x73797333, 5}};
    world.container = {true, container};
    stubs::useLocaleSetting("de_DE");
    for (const std::string& folder :
         {printerLogFolder, applicationFolder, configurationFolder, hostBundle + "/Contents"}) {
      std::filesystem::create_directories(root.path() + folder);
    }
    writeList(preferencePath, agreedPreferences(services.clock->now(), 100));
    writeList(hostBundle + "/Contents/Info.plist", {{"CFBundleShortVersionString", "2.1.4"}});
  }

  void writeList(const std::string& path, const Dictionary& entries) {
    writeFile(root.path() + path, services.propertyLists->asXml(entries).value());
  }

  TemporaryFolder root;
  platform::apple::ApplePlatform port{root.path()};
  const platform::Platform& services = port.services();

 private:
  platform::Substitute substitute_{services};
};

std::string between(const std::string& text, const std::string& start, const std::string& end) {
  const std::size_t before = text.find(start);
  if (before == std::string::npos) return "(missing)";
  const std::size_t at = before + start.size();
  return text.substr(at, text.find(end, at) - at);
}

TEST_F(ApplePlatform, RecordsFromEndToEnd) {
  EXPECT_TRUE(WENLOLIB::writePrinterLogInfoWithContents("hello", "App", 0, std::nullopt));
  const std::string document = readFile(root.path() + printerLogFolder + "/App_1.PLM");
  EXPECT_EQ(between(document, "<Version>", "<"), "2.1");
  EXPECT_EQ(between(document, "<OSVersion>", "<"), "M.10.8.5");
  EXPECT_EQ(between(document, "<Locale>", "<"), "de_DE");
  EXPECT_EQ(between(document, "<ID>{", "}</ID>").size(), 36U);
  EXPECT_EQ(between(document, "<Date>", ":"), "by the system");  // by directives on 10.8
  EXPECT_EQ(between(document, "<PLI C=\"", "\""), "R");
  EXPECT_EQ(between(document, "<PLI C=\"R\">", "<").size(), 10U);
  EXPECT_TRUE(std::filesystem::exists(root.path() + identifierPath));
}

TEST_F(ApplePlatform, ReadsListsAndBundlesBelowItsRoot) {
  const Dictionary entries = {{"key", Value::Array{1, true}}};
  writeList("/list", entries);
  EXPECT_EQ(services.propertyLists->read("/list").dictionary, entries);
  EXPECT_EQ(services.bundles->informationAt(hostBundle),
            (Dictionary{{"CFBundleShortVersionString", "2.1.4"}}));
  EXPECT_EQ(services.bundles->informationAt("/Applications/Other.app"), std::nullopt);
  EXPECT_EQ(services.bundles->ownInformation(), std::nullopt);  // this program has no bundle
}

TEST_F(ApplePlatform, RecordsByTheOtherCipherWhereTheServiceRefuses) {
  world.absent = {"SecKeyCreateFromData"};
  EXPECT_TRUE(WENLOLIB::writePrinterLogInfoWithContents("hello", "App", 0, std::nullopt));
  const std::string document = readFile(root.path() + printerLogFolder + "/App_1.PLM");
  EXPECT_EQ(between(document, "<PLI C=\"", "\""), "X");
}

TEST_F(ApplePlatform, RefusesWhereTheVersionIsUnknown) {
  world.gestalt.clear();
  EXPECT_FALSE(WENLOLIB::writePrinterLogInfoWithContents("hello", "App", 0, std::nullopt));
  EXPECT_TRUE(namesIn(root.path() + printerLogFolder).empty());
}

}  // namespace
}  // namespace wenlolib::tests
