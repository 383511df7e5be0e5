#include "platform/apple/AppleBundles.h"

#include <pthread.h>

#include <filesystem>
#include <functional>

#include "platform/apple/StubTest.h"
#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

using platform::apple::bundleAround;

const Dictionary information = {{"CFBundleShortVersionString", "2.1.4"}};

class AppleBundles : public StubTest {
 protected:
  AppleBundles() { world.bundles = {{folder / "A.app", information}}; }

  void makeContents() const { std::filesystem::create_directories(folder / "A.app/Contents"); }
  /// What the bundle with a file of these bytes tells.
  std::optional<Dictionary> withFile(std::string_view bytes) {
    world.calls.clear();
    makeContents();
    writeFile(file, bytes);
    return bundles.informationAt("/A.app");
  }
  std::optional<Dictionary> withNesting(int arrays) {
    std::string start, end;
    for (int i = 0; i < arrays; ++i) {
      start += "<array>";
      end += "</array>";
    }
    return withFile("<plist version=\"1.0\"><dict><key>k</key>" + start + end + "</dict></plist>");
  }

  std::optional<Dictionary> told;
  TemporaryFolder folder;
  std::string file = folder / "A.app/Contents/Info.plist";
  platform::posix::Root root{folder.path()};
  platform::apple::AppleBundles bundles{root};
};

TEST_F(AppleBundles, TellTheirInformation) {
  EXPECT_EQ(bundles.informationAt("/A.app"), information);
  EXPECT_EQ(withFile("<plist version=\"1.0\"><dict></dict></plist>"), information);
  EXPECT_EQ(withFile("bplist00\xD0\x08" + std::string(6, '\0') + "\1\1" + std::string(7, '\0') +
                     "\1" + std::string(15, '\0') + "\x09"),
            information);
}

TEST_F(AppleBundles, TellEveryEntryThatCanBeConverted) {
  Dictionary entries = information;
  Value deep = "leaf";
  for (int i = 0; i < 513; ++i) deep = Value::Array{deep};
  entries.emplace("AA", deep);
  entries.emplace("Z", Value::Array{"after it"});
  world.bundles = {{folder / "A.app", entries}};
  entries.erase("AA");
  EXPECT_EQ(bundles.informationAt("/A.app"), entries);
}

TEST_F(AppleBundles, WithoutInformationAreThereAllTheSame) {
  world.bundles = {{folder / "A.app", std::nullopt}, {folder / "B.app", Dictionary()}};
  EXPECT_EQ(bundles.informationAt("/A.app"), Dictionary());
  EXPECT_EQ(bundles.informationAt("/B.app"), Dictionary());
}

TEST_F(AppleBundles, AreNotAskedForInformationBeyondTheBounds) {
  EXPECT_EQ(withNesting(511), information);
  EXPECT_EQ(withNesting(100'000), Dictionary());
  EXPECT_TRUE(world.calls.empty());

  std::string sound = "<plist version=\"1.0\"><dict></dict></plist>";
  sound.resize(std::size_t{16} << 20, ' ');
  EXPECT_EQ(withFile(sound), information);
  EXPECT_EQ(withFile(sound + ' '), Dictionary());
  EXPECT_TRUE(world.calls.empty());
}

TEST_F(AppleBundles, AreNotAskedForWhatIsNoPropertyList) {
  for (const char* bytes : {"<array", "bplist00", "<plist><!---><dict>"}) {
    EXPECT_EQ(withFile(bytes), Dictionary()) << bytes;
    EXPECT_TRUE(world.calls.empty()) << bytes;
  }
}

TEST_F(AppleBundles, AreNotAskedForWhatIsNoFile) {
  makeContents();
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  EXPECT_EQ(bundles.informationAt("/A.app"), Dictionary());
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  EXPECT_EQ(bundles.informationAt("/A.app"), Dictionary());
  std::filesystem::remove(file);
  std::filesystem::create_symlink("Info.plist", file);
  EXPECT_EQ(bundles.informationAt("/A.app"), Dictionary());
  EXPECT_TRUE(world.calls.empty());
}

TEST_F(AppleBundles, AreAskedWhereInformationMayLieElsewhere) {
  makeContents();
  EXPECT_EQ(bundles.informationAt("/A.app"), information);
  std::filesystem::remove(folder / "A.app/Contents");
  writeFile(folder / "A.app/Contents", "");
  EXPECT_EQ(bundles.informationAt("/A.app"), information);
}

TEST_F(AppleBundles, AreReadToTheEndOnACancelledThread) {
  makeContents();
  writeFile(file, "<plist version=\"1.0\"><dict></dict></plist>");
  std::function<void()> work = [&] {
    pthread_cancel(pthread_self());
    told = bundles.informationAt("/A.app");
  };
  pthread_t thread{};
  const auto run = [](void* what) -> void* {
    (*static_cast<std::function<void()>*>(what))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, nullptr, run, &work), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  EXPECT_EQ(told, information);
}

TEST_F(AppleBundles, ThatAreMissingAreNothing) {
  EXPECT_EQ(bundles.informationAt("/B.app"), std::nullopt);
  EXPECT_EQ(bundles.informationAt(std::string("/A\0.app", 7)), std::nullopt);
}

TEST_F(AppleBundles, AreNothingWhereTheSystemRefuses) {
  const std::size_t runs = refusingEachCall([&](const std::string& refused) {
    EXPECT_EQ(bundles.informationAt("/A.app").has_value(), refused.empty());
  });
  EXPECT_EQ(runs, 2U);
}

TEST_F(AppleBundles, DoNotHoldThisProgram) {
  EXPECT_EQ(bundles.ownInformation(), std::nullopt);
  EXPECT_TRUE(world.calls.empty());
}

TEST(BundleAround, IsTwoFoldersUp) {
  EXPECT_EQ(bundleAround("/P/WENLOLIB.bundle/Contents/MacOS/WENLOLIB"), "/P/WENLOLIB.bundle");
  EXPECT_EQ(bundleAround("A.app/Contents/MacOS/A"), "A.app");
  for (const char* path : {"", "/", "WENLOLIB", "/Contents/Linux/WENLOLIB", "/P/MacOS/WENLOLIB",
                           "/P/Contents/MacOS/x/WENLOLIB", "/PContents/MacOS/WENLOLIB"}) {
    EXPECT_EQ(bundleAround(path), std::nullopt) << path;
  }
}

}  // namespace
}  // namespace wenlolib::tests
