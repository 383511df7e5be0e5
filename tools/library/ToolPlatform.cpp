#include "library/ToolPlatform.h"

#include <new>

#include "library/Wording.h"
#include "terminal/VisibleText.h"
#include "toolkit/Folders.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/version.h"

namespace wenlolib::tools {
namespace {

std::string rootFolder(std::string root) {
  while (root.ends_with('/')) root.pop_back();
  return root;
}

}  // namespace

Dictionary bundleInformation(const std::string& version) {
  return {{std::string(shortVersionKey), version}, {std::string(bundleVersionKey), version}};
}

std::optional<Dictionary> BuildBundles::ownInformation() {
  return bundleInformation(WENLOLIB_VERSION);
}

ToolPlatform::ToolPlatform(const std::string& root)
    : folder_(rootFolder(root)),
      root_(folder_),
      port_(folder_),
      bundles_(*port_.services().bundles),
      services_(port_.services()) {
  services_.bundles = &bundles_;
}

std::string ToolPlatform::real(const std::string& path) const {
  return root_.below(path).value_or(path);
}

std::string ToolPlatform::realSupportFolder() const {
  const Text folder = supportFolder();
  return folder ? real(*folder) : "";
}

namespace {

/// Notes what a call throws, and throws it again.
template <class Call>
auto watch(Sightings& sightings, const std::string& path, const Call& call) {
  const auto note = [&](platform::Reason reason) {
    if (!sightings.unanswered) sightings.unanswered = Unanswered{path, reason};
  };
  try {
    return call();
  } catch (const platform::NoAnswer& thrown) {
    note(thrown.reason());
    throw;
  } catch (const std::bad_alloc&) {
    note({});
    throw;
  }
}

class WatchedFiles : public platform::ForwardingFiles {
 public:
  WatchedFiles(platform::Files& target, Sightings& sightings)
      : ForwardingFiles(target), sightings_(sightings) {}

  platform::Kind kindAt(const std::string& path) override {
    return watch(sightings_, path, [&] { return target_.kindAt(path); });
  }
  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t mode, platform::Publication how) override {
    return watch(sightings_, path, [&] { return target_.writeAtomically(path, bytes, mode, how); });
  }

 private:
  Sightings& sightings_;
};

class WatchedLists : public platform::ForwardingPropertyLists {
 public:
  WatchedLists(platform::PropertyLists& target, Sightings& sightings)
      : ForwardingPropertyLists(target), sightings_(sightings) {}

  platform::ListReading read(const std::string& path) override {
    auto reading = watch(sightings_, path, [&] { return target_.read(path); });
    sightings_.lists.insert_or_assign(path, reading);
    return reading;
  }

 private:
  Sightings& sightings_;
};

class WatchedBundles : public platform::ForwardingBundles {
 public:
  WatchedBundles(platform::Bundles& target, Sightings& sightings)
      : ForwardingBundles(target), sightings_(sightings) {}

  std::optional<Dictionary> informationAt(const std::string& path) override {
    return watch(sightings_, path, [&] { return target_.informationAt(path); });
  }
  std::optional<Dictionary> ownInformation() override {
    return watch(sightings_, "", [&] { return target_.ownInformation(); });
  }

 private:
  Sightings& sightings_;
};

class WatchedUser : public platform::User {
 public:
  WatchedUser(platform::User& target, Sightings& sightings)
      : target_(target), sightings_(sightings) {}

  Text loginName() override {
    return watch(sightings_, "", [&] { return target_.loginName(); });
  }
  Text homeFolder() override {
    return watch(sightings_, "", [&] { return target_.homeFolder(); });
  }
  Text libraryFolder() override {
    return watch(sightings_, "", [&] { return target_.libraryFolder(); });
  }
  platform::Container groupContainer(std::string_view identifier) override {
    return watch(sightings_, "", [&] { return target_.groupContainer(identifier); });
  }
  Text locale() override {
    return watch(sightings_, "", [&] { return target_.locale(); });
  }

 private:
  platform::User& target_;
  Sightings& sightings_;
};

class WatchedSystem : public platform::System {
 public:
  WatchedSystem(platform::System& target, Sightings& sightings)
      : target_(target), sightings_(sightings) {}

  std::optional<std::int32_t> gestalt(platform::Selector selector) override {
    return watch(sightings_, "", [&] { return target_.gestalt(selector); });
  }

 private:
  platform::System& target_;
  Sightings& sightings_;
};

class WatchedClock : public platform::Clock {
 public:
  WatchedClock(platform::Clock& target, Sightings& sightings)
      : target_(target), sightings_(sightings) {}

  Instant now() override {
    return watch(sightings_, "", [&] { return target_.now(); });
  }

 private:
  platform::Clock& target_;
  Sightings& sightings_;
};

class WatchedCalendar : public platform::Calendar {
 public:
  WatchedCalendar(platform::Calendar& target, Sightings& sightings)
      : target_(target), sightings_(sightings) {}

  std::optional<platform::LocalTime> localTime(Instant date) override {
    return watch(sightings_, "", [&] { return target_.localTime(date); });
  }
  Text formatted(Instant date, std::string_view format) override {
    return watch(sightings_, "", [&] { return target_.formatted(date, format); });
  }

 private:
  platform::Calendar& target_;
  Sightings& sightings_;
};

class WatchedUuids : public platform::Uuids {
 public:
  WatchedUuids(platform::Uuids& target, Sightings& sightings)
      : target_(target), sightings_(sightings) {}

  Text create() override {
    return watch(sightings_, "", [&] { return target_.create(); });
  }

 private:
  platform::Uuids& target_;
  Sightings& sightings_;
};

}  // namespace

struct WatchedPlatform::Services {
  WatchedSystem system;
  WatchedClock clock;
  WatchedCalendar calendar;
  WatchedFiles files;
  WatchedLists lists;
  WatchedBundles bundles;
  WatchedUser user;
  WatchedUuids uuids;

  Services(const platform::Platform& base, Sightings& sightings)
      : system(*base.system, sightings),
        clock(*base.clock, sightings),
        calendar(*base.calendar, sightings),
        files(*base.files, sightings),
        lists(*base.propertyLists, sightings),
        bundles(*base.bundles, sightings),
        user(*base.user, sightings),
        uuids(*base.uuids, sightings) {}
};

WatchedPlatform::WatchedPlatform(const platform::Platform& base)
    : watching_(std::make_unique<Services>(base, sightings_)), services_(base) {
  services_.system = &watching_->system;
  services_.clock = &watching_->clock;
  services_.calendar = &watching_->calendar;
  services_.files = &watching_->files;
  services_.propertyLists = &watching_->lists;
  services_.bundles = &watching_->bundles;
  services_.user = &watching_->user;
  services_.uuids = &watching_->uuids;
}

WatchedPlatform::~WatchedPlatform() = default;

std::string unansweredText(const Unanswered& unanswered) {
  if (unanswered.reason.step == platform::Step::none) return "there is not enough memory";
  const std::string what = "the system gave no answer: " + reasonText(unanswered.reason);
  return unanswered.path.empty() ? what : what + " (" + visibleLine(unanswered.path) + ")";
}

}  // namespace wenlolib::tools
