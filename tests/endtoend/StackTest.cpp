// A host can record on a thread with little stack, whatever the files hold that are read for it.
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "endtoend/Operations.h"
#include "endtoend/World.h"
#include "platform/posix/Child.h"
#include "platform/posix/Environment.h"
#include "plist/BinaryFile.h"
#include "plist/PropertyList.h"
#include "support/SmallStack.h"

namespace wenlolib::tests {
namespace {

/// The deepest nesting that is allowed in a property list, its own dictionary included.
constexpr std::size_t deepest = plist::bounds.levels - 1;

const std::string preferencesInLibrary = "/Users/ada/Library/Preferences/com.orvan.printing.";

Value nestedArrays() {
  Value value = Value::Array{};
  for (std::size_t level = 1; level < deepest; ++level) value = Value::Array{value};
  return value;
}

const Dictionary deepEntries{{"deep", nestedArrays()}, {"other", "kept"}};

// These entries in the forms that other programs store.

std::string deepXml() {
  std::string text(plist::prologue);
  text += "<plist version=\"1.0\"><dict><key>other</key><string>kept</string><key>deep</key>";
  for (std::size_t level = 0; level < deepest; ++level) text += "<array>";
  for (std::size_t level = 0; level < deepest; ++level) text += "</array>";
  return text + "</dict></plist>\n";
}

std::string deepBinary() {
  plist::BinaryFile file;
  file.objects = {file.dictionary({1, 2, 4, 3}), plist::ascii("deep"), plist::ascii("other"),
                  plist::ascii("kept")};
  for (std::size_t level = 1; level < deepest; ++level) {
    file.objects.push_back(file.array({file.objects.size() + 1}));
  }
  file.objects.push_back(file.array({}));
  return file.bytes();
}

/// Runs each operation on a stack of its own. What they report; "" if nothing is wrong.
std::string problemOf(const std::vector<Operation>& operations) {
  for (const Operation& operation : operations) {
    std::string problem;
    onStack(smallStack, [&] {
      try {
        operation.call();
      } catch (const std::exception& thrown) {
        problem = thrown.what();
      }
    });
    if (!problem.empty()) return std::string(operation.name) + ": " + problem;
  }
  return "";
}

/// All services are the port's own. They take the user from the environment. Every file that is
/// read holds deeply nested arrays, next to the entries that are used.
class SmallStack : public WorldTest {
 protected:
  SmallStack() {
    world.services = world.port.services();
    Dictionary preferences = agreedPreferences(world.services.clock->now(), 100);
    preferences.insert(deepEntries.begin(), deepEntries.end());
    world.writePreferences(preferences);
    for (const std::string& bundle : {hostBundle, installedBundle}) {
      Dictionary information = deepEntries;
      information.insert_or_assign("CFBundleShortVersionString", "2.1.4");
      information.insert_or_assign("CFBundleVersion", "2.1.4");
      world.writeBundle(bundle, information);
    }
    std::filesystem::create_directories(world.real("/bin"));
    writeFile(world.real("/bin/answer"), "#!/bin/sh\nexit 7\n");
    ::chmod(world.real("/bin/answer").c_str(), 0755);
  }

  void writeDeepFiles(const std::string& bytes) {
    std::filesystem::create_directories(
        std::filesystem::path(world.real(preferencesInLibrary)).parent_path());
    for (const std::string& path : {identifierPath, versionListPath,
                                    preferencesInLibrary + "Quillmere.TargetPrinterList.plist",
                                    preferencesInLibrary + "Quillmere.SurveyInfo.plist"}) {
      writeFile(world.real(path), bytes);
      ASSERT_TRUE(world.services.propertyLists->read(path).dictionary == deepEntries) << path;
    }
  }

  void expectEverythingWorks() {
    EXPECT_EQ(inChild([] { return problemOf(toolkitOperations()); }), "");
    EXPECT_EQ(inChild([] { return problemOf(recordOperations()); }), "");
    Dictionary left = world.configuration();
    EXPECT_EQ(left.erase("WENLIBUUID"), 1U);
    EXPECT_TRUE(left == deepEntries) << "an entry of another program was lost or changed";
  }

 private:
  Variable home_{"HOME", "/Users/ada"};
  Variable locale_{"LC_ALL", "de_DE.UTF-8"};
};

TEST_F(SmallStack, IsEnoughForEveryOperationWithDeepPlainFiles) {
  writeDeepFiles(deepXml());
  expectEverythingWorks();
}

TEST_F(SmallStack, IsEnoughForEveryOperationWithDeepFilesThatNeedAParser) {
  writeDeepFiles(deepXml() + "<!-- not in the plain form -->");
  expectEverythingWorks();
}

TEST_F(SmallStack, IsEnoughForEveryOperationWithDeepBinaryFiles) {
  writeDeepFiles(deepBinary());
  expectEverythingWorks();
}

TEST_F(SmallStack, IsEnoughToAskTheUserDatabase) {
  const Variable none("HOME", nullptr);
  EXPECT_EQ(inChild([] { return problemOf(toolkitOperations()); }), "");
}

TEST_F(SmallStack, CrashesBelowItsEnd) {
  EXPECT_NE(inChild([] {
              onStack(smallStack, [] {
                const volatile char large[smallStack] = {};
                static_cast<void>(large[0]);
              });
              return std::string("nothing happened");
            }),
            "nothing happened");
}

}  // namespace
}  // namespace wenlolib::tests
