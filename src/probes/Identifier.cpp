#include "probes/Identifier.h"

#include <utility>

#include "platform/Platform.h"
#include "toolkit/Entries.h"
#include "toolkit/Names.h"
#include "toolkit/OpenFiles.h"
#include "toolkit/Paths.h"

namespace wenlolib {
namespace {

constexpr char identifierKey[] = "WENLIBUUID";
constexpr char placeholder[] = "NOTDETERMINED";

std::optional<Dictionary> configurationAt(const Text& path) {
  return path ? platform::current().propertyLists->read(*homeExpanded(path)) : std::nullopt;
}

/// Stores `configuration` at `path`, a leading "~" expanded; `failed` where that does not work out.
platform::Outcome stored(const Dictionary& configuration, const Text& path,
                         platform::Publication publication) {
  const platform::Platform& platform = platform::current();
  const Text xml = platform.propertyLists->asXml(configuration);
  if (!xml) return platform::Outcome::failed;
  return platform.files->writeAtomically(*homeExpanded(path), *xml, openFileMode, publication);
}

/// Stores a new identifier beside what `configuration` holds. Whether that works out is of no
/// consequence to the record. The permissions are set at the path as it stands, and also when the
/// write failed: an older file opens up too.
void save(Dictionary configuration, const std::string& identifier, const Text& path) {
  configuration.insert_or_assign(identifierKey, Value(identifier));
  static_cast<void>(stored(configuration, path, platform::Publication::replacing));
  openPermissions(*path);
}

/// Where no configuration stands yet, the first of several processes that find that lays down the
/// identifier of all of them. Null where another one was first.
Text published(const std::string& identifier, const Text& path) {
  Dictionary configuration;
  configuration.insert_or_assign(identifierKey, Value(identifier));
  const auto outcome = stored(configuration, path, platform::Publication::asNew);
  if (outcome == platform::Outcome::taken) return std::nullopt;
  openPermissions(*path);
  return identifier;
}

bool isVacant(const Text& path) {
  return platform::current().files->kindAt(*homeExpanded(path)) == platform::Kind::nothing;
}

}  // namespace

Text storedIdentifier(const std::optional<Dictionary>& configuration) {
  Text identifier = textEntry(configuration, identifierKey);
  if (identifier == placeholder) return std::nullopt;
  return identifier;
}

Text installationIdentifier() {
  const Text path = configurationPath(configurationFile);
  std::optional<Dictionary> configuration = configurationAt(path);
  if (Text identifier = storedIdentifier(configuration)) return identifier;

  const Text uuid = platform::current().uuids->create();
  if (!uuid) return std::nullopt;
  const std::string identifier = "{" + *uuid + "}";
  if (!path) return identifier;
  if (!configuration) {
    if (isVacant(path) && published(identifier, path)) return identifier;
    // Another process may have laid one down since it was read.
    configuration = configurationAt(path);
    if (Text other = storedIdentifier(configuration)) return other;
  }
  save(std::move(configuration).value_or(Dictionary()), identifier, path);
  return identifier;
}

std::string cachedIdentifier(Text& cache) {
  if (!cache) cache = installationIdentifier();
  return cache.value_or("");
}

}  // namespace wenlolib
