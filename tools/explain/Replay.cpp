#include "explain/Replay.h"

#include <time.h>

#include <filesystem>
#include <system_error>

#include "library/ToolPlatform.h"
#include "platform/posix/PosixPropertyLists.h"
#include "reading/DateText.h"
#include "toolkit/Folders.h"
#include "toolkit/SharedNames.h"

namespace wenlolib::tools {
namespace {

/// The date in these fields; nothing if the calendar does not have it, such as 30 February.
std::optional<Instant> dateOf(const tm& fields, std::optional<std::int32_t> secondsFromGMT) {
  tm normal = fields;
  normal.tm_isdst = -1;
  const time_t time = secondsFromGMT ? ::timegm(&normal) : ::mktime(&normal);
  if (normal.tm_mday != fields.tm_mday || normal.tm_mon != fields.tm_mon) return std::nullopt;
  return Instant(Seconds(static_cast<double>(time) - secondsFromGMT.value_or(0)));
}

}  // namespace

std::optional<OSVersion> osVersionFromText(std::string_view text) {
  OSVersion version;
  version.known = text != "unknown";
  if (!version.known) return version;
  constexpr std::int32_t most = 99999;
  Scanner scanner(text);
  version.major = scanner.number(0, most);
  version.minor = scanner.expect('.').number(0, most);
  if (scanner.next() == '.') version.bugFix = scanner.expect('.').number(0, most);
  return scanner.done() ? std::optional(version) : std::nullopt;
}

std::optional<LibraryVersion> libraryVersionFromText(std::string_view text) {
  if (text != "unknown" && !osVersionFromText(text)) return std::nullopt;
  return LibraryVersion{text != "unknown", std::string(text)};
}

std::optional<Instant> dateFromText(std::string_view text) {
  tm fields{};
  std::optional<std::int32_t> secondsFromGMT;
  Scanner scanner(text);
  fields.tm_year = scanner.number(0, 9999, 4) - 1900;
  fields.tm_mon = scanner.expect('-').number(1, 12, 2) - 1;
  fields.tm_mday = scanner.expect('-').number(1, 31, 2);
  if (scanner.next() == 'T' || scanner.next() == ' ') {
    fields.tm_hour = scanner.expect(scanner.next()).number(0, 23, 2);
    fields.tm_min = scanner.expect(':').number(0, 59, 2);
    if (scanner.next() == ':') fields.tm_sec = scanner.expect(':').number(0, 60, 2);
    if (scanner.next() == 'Z') {
      scanner.expect('Z');
      secondsFromGMT = 0;
    } else if (scanner.next() != '\0') {
      secondsFromGMT = scanner.offset();
    }
  }
  if (!scanner.done()) return std::nullopt;
  return dateOf(fields, secondsFromGMT);
}

namespace {

Redirections redirectionsOf(const platform::Platform& base, const ReplayedCase& replayed) {
  const platform::Substitute substitute(base);
  Redirections redirections;
  const auto add = [&](std::string_view name, const Text& file) {
    const Text path = configurationPath(name);
    if (path && file) redirections.emplace(*path, *file);
  };
  add(preferenceFile, replayed.preferences);
  add(supportVersionListFile, replayed.supportList);
  return redirections;
}

}  // namespace

std::optional<std::int32_t> ReplayedSystem::gestalt(platform::Selector selector) {
  using platform::Selector;
  if (selector == Selector::systemArchitecture) return target_.gestalt(selector);
  if (!version_.known) return std::nullopt;
  if (selector == Selector::majorVersion) return version_.major;
  return selector == Selector::minorVersion ? version_.minor : version_.bugFix;
}

std::optional<Dictionary> VersionedBundles::information() const {
  return version_.known ? std::optional(bundleInformation(version_.text)) : std::nullopt;
}

std::optional<Dictionary> VersionedBundles::informationAt(const std::string& path) {
  if (path == installedBundlePath) return information();
  return platform::ForwardingBundles::informationAt(path);
}

std::optional<Dictionary> VersionedBundles::ownInformation() {
  return information();
}

platform::Kind RedirectedFiles::kindAt(const std::string& path) {
  const auto found = redirections_.find(path);
  if (found == redirections_.end()) return platform::ForwardingFiles::kindAt(path);
  std::error_code error;
  const auto status = std::filesystem::status(found->second, error);
  if (!std::filesystem::exists(status)) return platform::Kind::nothing;
  return std::filesystem::is_directory(status) ? platform::Kind::folder : platform::Kind::other;
}

platform::ListReading RedirectedPropertyLists::read(const std::string& path) {
  const auto found = redirections_.find(path);
  if (found == redirections_.end()) return platform::ForwardingPropertyLists::read(path);
  return platform::posix::readList(found->second);
}

Replay::Replay(const platform::Platform& base, const ReplayedCase& replayed)
    : redirections_(redirectionsOf(base, replayed)),
      system_(*base.system, replayed.os.value_or(OSVersion())),
      clock_(replayed.date.value_or(Instant())),
      bundles_(*base.bundles, replayed.library.value_or(LibraryVersion())),
      files_(*base.files, redirections_),
      propertyLists_(*base.propertyLists, redirections_),
      services_(base) {
  if (replayed.os) services_.system = &system_;
  if (replayed.date) services_.clock = &clock_;
  if (replayed.library) services_.bundles = &bundles_;
  services_.files = &files_;
  services_.propertyLists = &propertyLists_;
}

}  // namespace wenlolib::tools
