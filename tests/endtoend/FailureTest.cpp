// Writes that must fail: the earlier file stays whole, and no other file is left.
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <filesystem>

#include "endtoend/KeptDocuments.h"
#include "endtoend/World.h"
#include "platform/posix/Child.h"
#include "support/ExpectedDocument.h"

namespace wenlolib::tests {
namespace {

/// Compares a child's answer, or skips the test if the child was not permitted to try.
#define EXPECT_ANSWER(answer, expected)                               \
  do {                                                                \
    const std::string answered = (answer);                            \
    if (answered.starts_with(notPermitted)) GTEST_SKIP() << answered; \
    EXPECT_EQ(answered, expected);                                    \
  } while (false)

const std::string noMount = notPermitted + ": mounting a file system for this process alone";
const std::string noLessRights = notPermitted + ": giving up rights";

std::string shown(bool recorded) {
  return recorded ? "recorded" : "refused";
}

class Failures : public WorldTest {
 protected:
  ~Failures() override {
    for (const std::string& folder : {printerLogFolder, applicationFolder, configurationFolder}) {
      static_cast<void>(::chmod(world.real(folder).c_str(), 0755));
    }
  }

  /// What recording answers for a user without rights.
  std::string recordedUnprivileged(RecordKind kind) {
    return inChild([&] {
      const bool let = becomeUnprivileged() && ::access(world.root.path().c_str(), X_OK) == 0;
      return let ? shown(recordAs(kind, "newer")) : noLessRights;
    });
  }

  void makeReadOnly(const std::string& folder) {
    ASSERT_EQ(::chmod(world.real(folder).c_str(), 0555), 0);
  }

  /// Makes the user without rights the file's owner. An ordinary user owns it already.
  void giveAway(const std::string& path) {
    if (::geteuid() != 0) return;
    ASSERT_EQ(::chown(world.real(path).c_str(), nobody, nobody), 0);
  }
};

TEST_F(Failures, AMissingFolderIsNotMade) {
  std::filesystem::remove(world.real(applicationFolder));
  std::filesystem::remove(world.real(printerLogFolder));
  EXPECT_FALSE(recordAs(RecordKind::application, "contents"));
  EXPECT_FALSE(recordAs(RecordKind::printer, "contents"));
  EXPECT_EQ(namesIn(world.real(supportFolder)), std::vector<std::string>{"Config"});
}

TEST_F(Failures, AFolderInPlaceOfTheMonthsFileStays) {
  std::filesystem::create_directory(world.real(marchFile));
  ASSERT_EQ(::chmod(world.real(marchFile).c_str(), 0700), 0);
  EXPECT_FALSE(recordAs(RecordKind::application, "contents"));
  EXPECT_EQ(namesIn(world.real(applicationFolder)).size(), 1U);
  EXPECT_EQ(modeOf(world.real(marchFile)), 0700U);
}

TEST_F(Failures, AReadOnlyFolderKeepsTheEarlierFile) {
  ASSERT_TRUE(recordAs(RecordKind::application, "older"));
  makeReadOnly(applicationFolder);
  EXPECT_ANSWER(recordedUnprivileged(RecordKind::application), "refused");
  EXPECT_EQ(contentsOf(readFile(world.real(marchFile))), "older");
  EXPECT_EQ(namesIn(world.real(applicationFolder)).size(), 1U);
}

TEST_F(Failures, AReadOnlyFolderTakesNoPrinterLog) {
  ASSERT_TRUE(recordAs(RecordKind::printer, "older"));
  makeReadOnly(printerLogFolder);
  EXPECT_ANSWER(recordedUnprivileged(RecordKind::printer), "refused");
  EXPECT_EQ(world.printerLogs(), std::vector<std::string>{"App_1.PLM"});
}

TEST_F(Failures, PermissionsAreOpenedAfterAFailedWriteToo) {
  ASSERT_TRUE(recordAs(RecordKind::application, "older"));
  ASSERT_EQ(::chmod(world.real(marchFile).c_str(), 0600), 0);
  giveAway(marchFile);
  makeReadOnly(applicationFolder);
  EXPECT_ANSWER(recordedUnprivileged(RecordKind::application), "refused");
  EXPECT_EQ(contentsOf(readFile(world.real(marchFile))), "older");
  EXPECT_EQ(modeOf(world.real(marchFile)), 0666U);
}

TEST_F(Failures, TheConfigurationFilesPermissionsAreOpenedAfterAFailedWriteToo) {
  const std::string older = *world.services.propertyLists->asXml({{"WENLIBUUID", "NOTDETERMINED"}});
  writeFile(world.real(identifierPath), older);
  ASSERT_EQ(::chmod(world.real(identifierPath).c_str(), 0600), 0);
  giveAway(identifierPath);
  makeReadOnly(configurationFolder);
  ASSERT_EQ(::chmod(world.real(printerLogFolder).c_str(), 0777), 0);
  EXPECT_ANSWER(recordedUnprivileged(RecordKind::printer), "recorded");
  EXPECT_EQ(readFile(world.real(identifierPath)), older);
  EXPECT_EQ(modeOf(world.real(identifierPath)), 0666U);
  EXPECT_EQ(namesIn(world.real(configurationFolder)).size(), 2U);
}

/// Mounts a file system of this size on a folder. Only this process sees it.
bool mountSmall(const std::string& folder, const std::string& size) {
  return ::unshare(CLONE_NEWNS) == 0 &&
         ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         ::mount("tmpfs", folder.c_str(), "tmpfs", 0, ("mode=0777,size=" + size).c_str()) == 0;
}

std::string fullFolder(const World& world, RecordKind kind, const std::string& folder) {
  if (!mountSmall(world.real(folder), "64k")) return noMount;
  if (!recordAs(kind, "older")) return "the first record was refused";
  const auto names = namesIn(world.real(folder));
  if (names.size() != 1) return "there is not exactly one file";
  const std::string path = world.real(folder + "/" + names[0]);
  const std::string older = readFile(path);
  keepBytes(older);
  if (recordAs(kind, std::string(100'000, 'x'))) return "recorded into a full folder";
  if (readFile(path) != older || contentsOf(older) != "older") return "the earlier file changed";
  if (namesIn(world.real(folder)) != names) return "another file is left next to the earlier one";
  if (!recordAs(kind, "newer")) return "a small record no longer fits";
  keepAllBelow(world.real(folder));
  return "";
}

TEST_F(Failures, AFullFolderKeepsTheEarlierUsageFile) {
  const auto work = [&] { return fullFolder(world, RecordKind::application, applicationFolder); };
  EXPECT_ANSWER(inChild(work), "");
}

TEST_F(Failures, AFullFolderKeepsTheEarlierPrinterLog) {
  const auto work = [&] { return fullFolder(world, RecordKind::printer, printerLogFolder); };
  EXPECT_ANSWER(inChild(work), "");
}

std::string fullConfiguration(const World& world) {
  if (!mountSmall(world.real(configurationFolder), "64k")) return noMount;
  const std::string path = world.real(identifierPath);
  const std::string older = *world.services.propertyLists->asXml(
      {{"WENLIBUUID", "NOTDETERMINED"}, {"other", std::string(40'000, 'x')}});
  writeFile(path, older);
  const std::string identifier = WENLOLIB::init()->getWENLOLIBId();
  if (identifier.size() != 38) return "no identifier";
  if (readFile(path) != older) return "the earlier file changed";
  if (namesIn(world.real(configurationFolder)).size() != 1) return "another file is left";
  return WENLOLIB::init()->getWENLOLIBId() != identifier ? "" : "the identifier is still the same";
}

TEST_F(Failures, AFullConfigurationFolderGivesAnIdentifierForOneRecord) {
  EXPECT_ANSWER(inChild([&] { return fullConfiguration(world); }), "");
}

}  // namespace
}  // namespace wenlolib::tests
