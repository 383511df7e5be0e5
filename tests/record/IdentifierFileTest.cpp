// How the identifier's file is written, and what happens to it if that fails.
#include "record/IdentifierFile.h"

#include <functional>
#include <utility>

#include "platform/Forwarding.h"

namespace wenlolib::tests {
namespace {

class IdentifierFile : public IdentifierFileTest {};

TEST_F(IdentifierFile, WithoutAConfigurationFolderTwoRecordsDifferAndNoFileIsMade) {
  world.files.remove(configurationFolder);
  const auto before = world.files.all();
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(ofNewRecord(), secondMade);
  EXPECT_EQ(world.files.all(), before);
}

TEST_F(IdentifierFile, WithoutAContainerNothingIsReadOrWritten) {
  world.user.container = {true, std::nullopt};
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(world.journal.lines(),
            (Journal::Lines{"user.groupContainer K7MW2PL9QD.QX.common", "uuids.create"}));
}

TEST_F(IdentifierFile, AFailedWriteStillOpensTheOlderFile) {
  world.propertyLists.add(identifierPath, {{"a", 1}}, 0600);
  world.faults.failAlways("files.writeAtomically");
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(stored(), (Dictionary{{"a", 1}}));
  EXPECT_EQ(world.files.at(identifierPath)->mode, 0666U);
}

TEST_F(IdentifierFile, ADictionaryThatCannotBeWrittenLeavesTheFileAsItWas) {
  world.propertyLists.add(identifierPath, {{"a", 1}});
  world.faults.failAlways("propertyLists.asXml");
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(stored(), (Dictionary{{"a", 1}}));
  EXPECT_EQ(world.journal.count("files.writeAtomically"), 0U);
}

TEST_F(IdentifierFile, AFolderInPlaceOfTheFileKeepsItsPermissions) {
  world.files.addFolder(identifierPath, 0755);
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(world.files.at(identifierPath)->mode, 0755U);
  EXPECT_EQ(world.journal.count("files.setPermissions"), 0U);
}

TEST_F(IdentifierFile, AFailedPermissionChangeIsOfNoConsequence) {
  world.faults.failAlways("files.setPermissions");
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(ofNewRecord(), firstMade);
}

TEST_F(IdentifierFile, TheWholeSaveHappensInOrder) {
  world.user.container = {true, "/C"};
  const std::string folder = "/C/Library/Application Support/QMR/Config";
  const std::string path = folder + "/com.orvan.printing.WENLOLIB.Conf.plist";
  world.files.addFolder(folder);
  static_cast<void>(ofNewRecord());
  EXPECT_EQ(world.journal.lines(),
            (Journal::Lines{"user.groupContainer K7MW2PL9QD.QX.common",
                            "propertyLists.read " + path, "uuids.create", "files.kindAt " + path,
                            "propertyLists.asXml", "files.writeAtomically " + path + " asNew",
                            "files.kindAt " + path, "files.setPermissions " + path + " 0666"}));
}

/// Another process writes its configuration between the look at the file and the publication.
class OvertakenFiles : public platform::ForwardingFiles {
 public:
  OvertakenFiles(platform::Files& target, std::function<void()> overtake)
      : ForwardingFiles(target), overtake_(std::move(overtake)) {}
  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t mode,
                                    platform::Publication publication) override {
    if (overtake_) std::exchange(overtake_, nullptr)();
    return target_.writeAtomically(path, bytes, mode, publication);
  }

 protected:
  std::function<void()> overtake_;
};

/// Another process writes its configuration between the reading and the look at the file.
class SoonerOvertakenFiles : public OvertakenFiles {
 public:
  using OvertakenFiles::OvertakenFiles;
  platform::Kind kindAt(const std::string& path) override {
    if (overtake_) std::exchange(overtake_, nullptr)();
    return target_.kindAt(path);
  }
};

TEST_F(IdentifierFile, AConfigurationLaidDownSinceItWasReadIsNotReplaced) {
  SoonerOvertakenFiles overtaken(world.files, [&] {
    world.propertyLists.add(identifierPath, {{"WENLIBUUID", "{FASTER}"}});
  });
  platform::Platform services = world.services;
  services.files = &overtaken;
  const platform::Substitute substitute(services);
  EXPECT_EQ(ofNewRecord(), "{FASTER}");
  EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", "{FASTER}"}}));
}

TEST_F(IdentifierFile, WhereNoConfigurationStandsTheFirstWritersIdentifierIsEverybodys) {
  OvertakenFiles overtaken(world.files, [&] {
    world.propertyLists.add(identifierPath, {{"WENLIBUUID", "{FASTER}"}, {"a", 1}}, 0600);
  });
  platform::Platform services = world.services;
  services.files = &overtaken;
  const platform::Substitute substitute(services);
  EXPECT_EQ(ofNewRecord(), "{FASTER}");
  EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", "{FASTER}"}, {"a", 1}}));
  EXPECT_EQ(world.files.at(identifierPath)->mode, 0600U);
}

TEST_F(IdentifierFile, WhereTheFirstWriterLeftNoIdentifierItIsAddedToTheFile) {
  OvertakenFiles overtaken(world.files, [&] {
    world.propertyLists.add(identifierPath, {{"a", 1}}, 0600);
  });
  platform::Platform services = world.services;
  services.files = &overtaken;
  const platform::Substitute substitute(services);
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", firstMade}, {"a", 1}}));
  EXPECT_EQ(world.files.at(identifierPath)->mode, 0666U);
}

TEST_F(IdentifierFile, WhereTheFirstWriterLeftNoPropertyListItIsReplacedWhole) {
  OvertakenFiles overtaken(world.files, [&] { world.files.addFile(identifierPath, "no list"); });
  platform::Platform services = world.services;
  services.files = &overtaken;
  const platform::Substitute substitute(services);
  EXPECT_EQ(ofNewRecord(), firstMade);
  EXPECT_EQ(stored(), (Dictionary{{"WENLIBUUID", firstMade}}));
}

TEST_F(IdentifierFile, AContainerBelowTheTildeIsReadAndWrittenBelowTheHomeFolder) {
  world.user.container = {true, "~/C"};
  const std::string folder = "/Users/ada/C/Library/Application Support/QMR/Config";
  world.files.addFolder(folder);
  EXPECT_EQ(ofNewRecord(), firstMade);
  const std::string inFolder =
      "/C/Library/Application Support/QMR/Config/com.orvan.printing.WENLOLIB.Conf.plist";
  EXPECT_EQ(world.propertyLists.at("/Users/ada" + inFolder),
            (Dictionary{{"WENLIBUUID", firstMade}}));
  // The permissions are set at the path with the tilde, where nothing is.
  EXPECT_EQ(world.journal.linesOf("files.kindAt").back(), "files.kindAt ~" + inFolder);
  EXPECT_EQ(world.journal.count("files.setPermissions"), 0U);

  world.files.addFile("~" + inFolder, "", 0600);
  world.propertyLists.add("/Users/ada" + inFolder, {}, 0600);
  world.faults.failAlways("files.writeAtomically");
  static_cast<void>(ofNewRecord());
  EXPECT_EQ(world.files.at("~" + inFolder)->mode, 0666U);
  EXPECT_EQ(world.files.at("/Users/ada" + inFolder)->mode, 0600U);
}

}  // namespace
}  // namespace wenlolib::tests
