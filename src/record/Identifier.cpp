#include "record/Identifier.h"

#include <utility>

#include "platform/Platform.h"
#include "toolkit/Folders.h"
#include "toolkit/Permissions.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"

namespace wenlolib {
namespace {

constexpr char placeholder[] = "NOTDETERMINED";

platform::ListReading configurationAt(const Text& path) {
  if (!path) return {};
  return platform::current().propertyLists->read(*expandHome(path));
}

/// Stores `configuration` at `path`, a leading "~" expanded; `failed` if it cannot be stored.
platform::Outcome store(const Dictionary& configuration, const Text& path,
                        platform::Publication publication) {
  const platform::Platform& platform = platform::current();
  const Text xml = platform.propertyLists->asXml(configuration);
  if (!xml) return platform::Outcome::failed;
  return platform.files->writeAtomically(*expandHome(path), *xml, openFileMode, publication);
}

/// Stores a new identifier beside what `read` holds. The record does not depend on whether that
/// succeeds. A file with values that cannot be represented is not rewritten, on purpose: they would
/// be lost. The permissions are set at the path as it stands, even if the write failed, so that an
/// older file opens up too.
void save(platform::ListReading read, const std::string& identifier, const Text& path) {
  Dictionary configuration = std::move(read.dictionary).value_or(Dictionary());
  configuration.insert_or_assign(identifierKey, Value(identifier));
  if (read.state != platform::ListState::partial) {
    static_cast<void>(store(configuration, path, platform::Publication::replacing));
  }
  openPermissions(*path);
}

/// If there is no configuration file yet, several processes may find that out at once. The first
/// one to store its identifier decides for all of them. Null if another one was first.
Text publish(const std::string& identifier, const Text& path) {
  Dictionary configuration;
  configuration.insert_or_assign(identifierKey, Value(identifier));
  const auto outcome = store(configuration, path, platform::Publication::asNew);
  if (outcome == platform::Outcome::taken) return std::nullopt;
  openPermissions(*path);
  return identifier;
}

bool isVacant(const Text& path) {
  return platform::current().files->kindAt(*expandHome(path)) == platform::Kind::nothing;
}

}  // namespace

Text storedIdentifier(const std::optional<Dictionary>& configuration) {
  Text identifier = textEntry(configuration, identifierKey);
  if (identifier == placeholder) return std::nullopt;
  return identifier;
}

Text installationIdentifier() {
  const Text path = configurationPath(configurationFile);
  platform::ListReading configuration = configurationAt(path);
  if (Text identifier = storedIdentifier(configuration.dictionary)) return identifier;

  const Text uuid = platform::current().uuids->create();
  if (!uuid) return std::nullopt;
  const std::string identifier = "{" + *uuid + "}";
  if (!path) return identifier;
  if (!configuration.dictionary) {
    if (isVacant(path) && publish(identifier, path)) return identifier;
    // Another process may have stored one since the file was read.
    configuration = configurationAt(path);
    if (Text other = storedIdentifier(configuration.dictionary)) return other;
  }
  save(std::move(configuration), identifier, path);
  return identifier;
}

std::string cachedIdentifier(Text& cache) {
  if (!cache) cache = installationIdentifier();
  return cache.value_or("");
}

}  // namespace wenlolib
