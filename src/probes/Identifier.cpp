#include "probes/Identifier.h"

#include <utility>

#include "platform/Platform.h"
#include "toolkit/Entries.h"
#include "toolkit/Names.h"
#include "toolkit/Paths.h"

namespace wenlolib {
namespace {

constexpr char identifierKey[] = "WENLIBUUID";
constexpr char placeholder[] = "NOTDETERMINED";

/// Stores `configuration` at `path`, a leading "~" expanded. Whether that works out is of no
/// consequence to the record. The permissions are set at the path as it stands, and also when the
/// write failed: an older file opens up too.
void save(const Dictionary& configuration, const Text& path) {
  if (!path) return;
  const platform::Platform& platform = platform::current();
  if (const Text xml = platform.propertyLists->asXml(configuration)) {
    static_cast<void>(platform.files->writeAtomically(*homeExpanded(path), *xml, openFileMode,
                                                      platform::Publication::replacing));
  }
  if (platform.files->kindAt(*path) == platform::Kind::other) {
    static_cast<void>(platform.files->setPermissions(*path, openFileMode));
  }
}

}  // namespace

Text storedIdentifier(const std::optional<Dictionary>& configuration) {
  Text identifier = textEntry(configuration, identifierKey);
  if (identifier == placeholder) return std::nullopt;
  return identifier;
}

Text installationIdentifier() {
  const platform::Platform& platform = platform::current();
  const Text path = configurationPath(configurationFile);
  std::optional<Dictionary> configuration;
  if (path) configuration = platform.propertyLists->read(*homeExpanded(path));
  if (Text stored = storedIdentifier(configuration)) return stored;

  const Text uuid = platform.uuids->create();
  if (!uuid) return std::nullopt;
  Text identifier = "{" + *uuid + "}";
  Dictionary updated = std::move(configuration).value_or(Dictionary());
  updated.insert_or_assign(identifierKey, Value(*identifier));
  save(updated, path);
  return identifier;
}

std::string cachedIdentifier(Text& cache) {
  if (!cache) cache = installationIdentifier();
  return cache.value_or("");
}

}  // namespace wenlolib
