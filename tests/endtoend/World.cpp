#include "endtoend/World.h"

#include <filesystem>

#include "endtoend/KeptDocuments.h"

namespace wenlolib::tests {

World::World() {
  services.system = &memory.system;
  services.clock = &memory.clock;
  services.user = &memory.user;
  memory.user.container = {true, container};
  // An unprivileged child must be able to enter.
  std::filesystem::permissions(root.path(), std::filesystem::perms(0755));
  for (const std::string& folder : {printerLogFolder, applicationFolder, configurationFolder}) {
    std::filesystem::create_directories(real(folder));
  }
  writePreferences(agreedPreferences(memory.clock.time, 100));
  writeBundle(hostBundle, {{"CFBundleShortVersionString", "2.1.4"}, {"CFBundleVersion", "2.1.4"}});
}

void World::writePreferences(const Dictionary& preferences) {
  writeFile(real(preferencePath), services.propertyLists->asXml(preferences).value());
}

void World::writeBundle(const std::string& bundle, const Dictionary& information) {
  std::filesystem::create_directories(real(bundle + "/Contents"));
  writeFile(real(bundle + "/Contents/Info.plist"),
            services.propertyLists->asXml(information).value());
}

Dictionary World::configuration() const {
  return services.propertyLists->read(identifierPath).dictionary.value_or(Dictionary());
}

void WorldTest::TearDown() {
  if (!documentsAreSound) return;
  for (const std::string& folder : {printerLogFolder, applicationFolder}) {
    if (std::filesystem::exists(world.real(folder))) keepAllBelow(world.real(folder));
  }
}

const char* nameOf(RecordKind kind) {
  if (kind == RecordKind::application) return "Application";
  return kind == RecordKind::printer ? "Printer" : "PrinterOlderTag";
}

bool recordAs(RecordKind kind, const std::string& contents) {
  constexpr std::uint32_t mode = 1;
  if (kind == RecordKind::application) {
    return WENLOLIB::writeAppInfoWithContents(contents, "App", mode);
  }
  Dictionary identity = {{"DeviceID", "MFG:Orvan;MDL:QX 200;"}, {"SN", "4711"}, {"ROMVER", "2.14"}};
  if (kind == RecordKind::printer) identity.insert_or_assign("NEWTAGTYPE", true);
  return WENLOLIB::writePrinterLogInfoWithContents(contents, "App", mode, identity);
}

}  // namespace wenlolib::tests
