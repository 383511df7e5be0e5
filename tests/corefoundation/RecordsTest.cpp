// Whole records on Apple's own Core Foundation, and no object of it left behind.
#include <CoreFoundation/CoreFoundation.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <set>
#include <utility>

#include "platform/apple/AppleCrypto.h"
#include "platform/apple/ApplePlatform.h"
#include "platform/apple/Objects.h"
#include "platform/apple/StubTest.h"
#include "platform/posix/TemporaryFolder.h"
#include "support/HostInstallation.h"
#include "wenlolib/Receiver.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

using platform::apple::Owned;

class CoreFoundationRecords : public PortTest {
 protected:
  CoreFoundationRecords() {
    world.gestalt = {{0x73797331, 10}, {0x73797332, 15}, {0x73797333, 7}};
    world.container = {true, container};
    stubs::useLocaleSetting("de_DE");
    for (const std::string& folder : {printerLogFolder, applicationFolder, configurationFolder}) {
      std::filesystem::create_directories(root.path() + folder);
    }
    const Dictionary preferences = agreedPreferences(services.clock->now(), 100);
    writeFile(root.path() + preferencePath, services.propertyLists->asXml(preferences).value());
  }

  TemporaryFolder root;
  platform::apple::ApplePlatform port{root.path()};
  const platform::Platform& services = port.services();

 private:
  platform::Substitute substitute_{services};
};

const Dictionary newerPrinter = {{"DeviceID", "MFG:Orvan;"}, {"NEWTAGTYPE", true}};
const Dictionary olderPrinter = {{"DeviceID", "MFG:Orvan;"}, {"SN", "123"}, {"ROMVER", "1.0"}};

TEST_F(CoreFoundationRecords, AreSoundInAllLayouts) {
  EXPECT_TRUE(WENLOLIB::writeAppInfoWithContents("usage \xE2\x82\xAC", "App", 1));
  EXPECT_TRUE(WENLOLIB::writePrinterLogInfoWithContents("log", "New", 0, newerPrinter));
  EXPECT_TRUE(WENLOLIB::writePrinterLogInfoWithContents("log", "Old", 0, olderPrinter));
  std::set<receiver::Layout> layouts;
  for (const std::string& folder : {applicationFolder, printerLogFolder}) {
    for (const std::string& name : namesIn(root.path() + folder)) {
      const std::string path = root.path() + folder + "/" + name;
      const std::string bytes = readFile(path);
      const receiver::Report report = receiver::examine(bytes);
      EXPECT_TRUE(report.verdict.sound()) << name << ": " << report.verdict.explanation;
      ASSERT_TRUE(report.document);
      layouts.insert(report.document->layout);
      // For the verifier in another language, which runs afterwards.
      if (const char* kept = std::getenv("WENLOLIB_DOCUMENTS")) {
        std::filesystem::create_directories(kept);
        writeFile(std::string(kept) + "/" + name, bytes);
      }
    }
  }
  EXPECT_EQ(layouts.size(), 3U);
}

/// What reaches standard error meanwhile.
std::string printedDuring(const std::string& file, const std::function<void()>& work) {
  const int kept = ::dup(STDERR_FILENO);
  const int written = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  ::dup2(written, STDERR_FILENO);
  work();
  ::dup2(kept, STDERR_FILENO);
  ::close(kept);
  ::close(written);
  return readFile(file);
}

TEST_F(CoreFoundationRecords, PrintNothing) {
  const std::string log = root.path() + "/log";
  EXPECT_EQ(printedDuring(log, [] { fprintf(stderr, "seen"); }), "seen");
  for (const char* preferences :
       {"{ a = ", "{ a = (1, 2; }", "<plist><dict>", "bplist00", "\xFF"}) {
    EXPECT_EQ(printedDuring(log,
                            [&] {
                              writeFile(root.path() + preferencePath, preferences);
                              EXPECT_FALSE(WENLOLIB::writeAppInfoWithContents("usage", "App", 1));
                              EXPECT_TRUE(WENLOLIB::writeAppInfoWithContents("usage", "App", 2));
                            }),
              "");
  }
}

/// How many bytes more are allocated after 3,000 calls than before. Caches fill in the first calls.
std::size_t growth(const std::function<void()>& call) {
  const auto allocatedAfter = [&](int calls) {
    for (int i = 0; i < calls; ++i) call();
    stubs::world().calls = std::vector<std::string>();  // the stubs' own list
    return mallinfo2().uordblks;
  };
  const std::size_t before = allocatedAfter(200);
  const std::size_t after = allocatedAfter(3000);
  return after > before ? after - before : 0;
}

/// Less than the smallest object that each call could leave behind.
constexpr std::size_t tolerated = 3000 * 16;

TEST_F(CoreFoundationRecords, LeaveNothingBehind) {
  EXPECT_LT(growth([] { WENLOLIB::writeAppInfoWithContents("usage", "App", 1); }), tolerated);
  const auto printerLog = [&] {
    WENLOLIB::writePrinterLogInfoWithContents("log", "New", 0, newerPrinter);
    std::filesystem::remove(root.path() + printerLogFolder + "/New_1.PLM");
  };
  EXPECT_LT(growth(printerLog), tolerated);
}

TEST_F(CoreFoundationRecords, EachServiceLeavesNothingBehind) {
  std::uint8_t bytes[9] = {1, 2, 3};
  platform::apple::TransformCipher cipher;
  const std::pair<const char*, std::function<void()>> operations[] = {
      {"the clock", [&] { services.clock->now(); }},
      {"local time", [&] { services.calendar->localTime(services.clock->now()); }},
      {"a date by directives", [&] { services.calendar->formatted(services.clock->now(), "%z"); }},
      {"the locale", [&] { services.user->locale(); }},
      {"an identifier", [&] { services.uuids->create(); }},
      {"the digest", [&] { services.digest->md5(bytes); }},
      {"the cipher", [&] { cipher.rc4(bytes, bytes, bytes); }},
      {"a bundle", [&] { services.bundles->informationAt(hostBundle); }},
      {"a property list", [&] { services.propertyLists->read(preferencePath); }},
      {"the system", [&] { services.system->gestalt(platform::Selector::majorVersion); }},
      {"the container", [&] { services.user->groupContainer("group"); }},
  };
  for (const auto& [name, call] : operations) EXPECT_LT(growth(call), tolerated) << name;
}

TEST_F(CoreFoundationRecords, ALeakWouldBeSeen) {
  const UniChar character = 'x';
  EXPECT_GT(growth([&] { CFStringCreateWithCharacters(nullptr, &character, 1); }), tolerated);
}

}  // namespace
}  // namespace wenlolib::tests
