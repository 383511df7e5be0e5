/// A case from elsewhere: another OS, date, library version or other files.
#ifndef WENLOLIB_TOOLS_EXPLAIN_REPLAY_H
#define WENLOLIB_TOOLS_EXPLAIN_REPLAY_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Forwarding.h"
#include "platform/Platform.h"
#include "wenlolib/Instant.h"
#include "wenlolib/Text.h"

namespace wenlolib::tools {

struct OSVersion {
  bool known = true;
  std::int32_t major = 0;
  std::int32_t minor = 0;
  std::int32_t bugFix = 0;
};

/// "10.17.0", "10.17", or "unknown".
[[nodiscard]] std::optional<OSVersion> osVersionFromText(std::string_view text);

struct LibraryVersion {
  bool known = true;
  std::string text;
};

/// "1.0.0", "1.0", or "unknown". Any two or three numbers: the decision judges them.
[[nodiscard]] std::optional<LibraryVersion> libraryVersionFromText(std::string_view text);

/// "2026-11-21" (its first instant) or "2026-11-21T09:30:00", in local time unless "Z" or an offset
/// such as "+09:00" follows the time.
[[nodiscard]] std::optional<Instant> dateFromText(std::string_view text);

/// What differs from the platform at hand. Whatever is not set stays as it is there.
struct ReplayedCase {
  std::optional<OSVersion> os;
  std::optional<Instant> date;
  std::optional<LibraryVersion> library;  // the running one, and that at its fixed path
  Text preferences;  // files, by their paths on the system: the port's root does not apply
  Text supportList;

  /// Whether nothing differs.
  [[nodiscard]] bool empty() const {
    return !os && !date && !library && !preferences && !supportList;
  }
};

class ReplayedSystem : public platform::System {
 public:
  ReplayedSystem(platform::System& target, const OSVersion& version)
      : target_(target), version_(version) {}
  std::optional<std::int32_t> gestalt(platform::Selector selector) override;

 private:
  platform::System& target_;
  OSVersion version_;
};

class FixedClock : public platform::Clock {
 public:
  explicit FixedClock(Instant time) : time_(time) {}
  Instant now() override { return time_; }

 private:
  Instant time_;
};

class VersionedBundles : public platform::ForwardingBundles {
 public:
  VersionedBundles(platform::Bundles& target, LibraryVersion version)
      : ForwardingBundles(target), version_(std::move(version)) {}
  std::optional<Dictionary> informationAt(const std::string& path) override;
  std::optional<Dictionary> ownInformation() override;

 private:
  [[nodiscard]] std::optional<Dictionary> information() const;

  LibraryVersion version_;
};

/// The library's paths of files, each with the system's path of its replacement.
using Redirections = std::map<std::string, std::string>;

class RedirectedFiles : public platform::ForwardingFiles {
 public:
  RedirectedFiles(platform::Files& target, const Redirections& redirections)
      : ForwardingFiles(target), redirections_(redirections) {}
  platform::Kind kindAt(const std::string& path) override;

 private:
  const Redirections& redirections_;
};

class RedirectedPropertyLists : public platform::ForwardingPropertyLists {
 public:
  RedirectedPropertyLists(platform::PropertyLists& target, const Redirections& redirections)
      : ForwardingPropertyLists(target), redirections_(redirections) {}
  platform::ListReading read(const std::string& path) override;

 private:
  const Redirections& redirections_;
};

/// `base`, changed as a case says. `base` must outlive this object.
class Replay {
 public:
  Replay(const platform::Platform& base, const ReplayedCase& replayed);
  Replay(const Replay&) = delete;
  Replay& operator=(const Replay&) = delete;

  [[nodiscard]] const platform::Platform& services() const { return services_; }

 private:
  Redirections redirections_;
  ReplayedSystem system_;
  FixedClock clock_;
  VersionedBundles bundles_;
  RedirectedFiles files_;
  RedirectedPropertyLists propertyLists_;
  platform::Platform services_;
};

}  // namespace wenlolib::tools

#endif
