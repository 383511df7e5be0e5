#include "library/ToolPlatform.h"

#include <new>
#include <utility>

#include "library/Wording.h"
#include "terminal/VisibleText.h"
#include "toolkit/Names.h"
#include "wenlolib/plugin.h"

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

namespace {

/// Notes what a call throws, and throws it on.
template <class Call>
auto watch(Sightings& seen, const std::string& path, const Call& call) {
  const auto note = [&](platform::Reason reason) {
    if (!seen.unanswered) seen.unanswered = Unanswered{path, reason};
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
  WatchedFiles(platform::Files& target, Sightings& seen) : ForwardingFiles(target), seen_(seen) {}

  platform::Kind kindAt(const std::string& path) override {
    return watch(seen_, path, [&] { return target_.kindAt(path); });
  }
  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t mode, platform::Publication how) override {
    return watch(seen_, path, [&] { return target_.writeAtomically(path, bytes, mode, how); });
  }

 private:
  Sightings& seen_;
};

class WatchedLists : public platform::ForwardingPropertyLists {
 public:
  WatchedLists(platform::PropertyLists& target, Sightings& seen)
      : ForwardingPropertyLists(target), seen_(seen) {}

  platform::ListReading read(const std::string& path) override {
    auto reading = watch(seen_, path, [&] { return target_.read(path); });
    seen_.lists.insert_or_assign(path, reading);
    return reading;
  }

 private:
  Sightings& seen_;
};

class WatchedBundles : public platform::ForwardingBundles {
 public:
  WatchedBundles(platform::Bundles& target, Sightings& seen)
      : ForwardingBundles(target), seen_(seen) {}

  std::optional<Dictionary> informationAt(const std::string& path) override {
    return watch(seen_, path, [&] { return target_.informationAt(path); });
  }
  std::optional<Dictionary> ownInformation() override {
    return watch(seen_, "", [&] { return target_.ownInformation(); });
  }

 private:
  Sightings& seen_;
};

class WatchedUser : public platform::User {
 public:
  WatchedUser(platform::User& target, Sightings& seen) : target_(target), seen_(seen) {}

  Text loginName() override {
    return watch(seen_, "", [&] { return target_.loginName(); });
  }
  Text homeFolder() override {
    return watch(seen_, "", [&] { return target_.homeFolder(); });
  }
  Text libraryFolder() override {
    return watch(seen_, "", [&] { return target_.libraryFolder(); });
  }
  platform::Container groupContainer(std::string_view identifier) override {
    return watch(seen_, "", [&] { return target_.groupContainer(identifier); });
  }
  Text locale() override {
    return watch(seen_, "", [&] { return target_.locale(); });
  }

 private:
  platform::User& target_;
  Sightings& seen_;
};

class WatchedSystem : public platform::System {
 public:
  WatchedSystem(platform::System& target, Sightings& seen) : target_(target), seen_(seen) {}

  std::optional<std::int32_t> gestalt(platform::Selector selector) override {
    return watch(seen_, "", [&] { return target_.gestalt(selector); });
  }

 private:
  platform::System& target_;
  Sightings& seen_;
};

class WatchedClock : public platform::Clock {
 public:
  WatchedClock(platform::Clock& target, Sightings& seen) : target_(target), seen_(seen) {}

  Instant now() override {
    return watch(seen_, "", [&] { return target_.now(); });
  }

 private:
  platform::Clock& target_;
  Sightings& seen_;
};

class WatchedCalendar : public platform::Calendar {
 public:
  WatchedCalendar(platform::Calendar& target, Sightings& seen) : target_(target), seen_(seen) {}

  std::optional<platform::LocalTime> localTime(Instant date) override {
    return watch(seen_, "", [&] { return target_.localTime(date); });
  }
  Text formatted(Instant date, std::string_view format) override {
    return watch(seen_, "", [&] { return target_.formatted(date, format); });
  }

 private:
  platform::Calendar& target_;
  Sightings& seen_;
};

class WatchedUuids : public platform::Uuids {
 public:
  WatchedUuids(platform::Uuids& target, Sightings& seen) : target_(target), seen_(seen) {}

  Text create() override {
    return watch(seen_, "", [&] { return target_.create(); });
  }

 private:
  platform::Uuids& target_;
  Sightings& seen_;
};

}  // namespace

struct Watched::Services {
  WatchedSystem system;
  WatchedClock clock;
  WatchedCalendar calendar;
  WatchedFiles files;
  WatchedLists lists;
  WatchedBundles bundles;
  WatchedUser user;
  WatchedUuids uuids;

  Services(const platform::Platform& base, Sightings& seen)
      : system(*base.system, seen),
        clock(*base.clock, seen),
        calendar(*base.calendar, seen),
        files(*base.files, seen),
        lists(*base.propertyLists, seen),
        bundles(*base.bundles, seen),
        user(*base.user, seen),
        uuids(*base.uuids, seen) {}
};

Watched::Watched(const platform::Platform& base)
    : watching_(std::make_unique<Services>(base, seen_)), services_(base) {
  services_.system = &watching_->system;
  services_.clock = &watching_->clock;
  services_.calendar = &watching_->calendar;
  services_.files = &watching_->files;
  services_.propertyLists = &watching_->lists;
  services_.bundles = &watching_->bundles;
  services_.user = &watching_->user;
  services_.uuids = &watching_->uuids;
}

Watched::~Watched() = default;

std::string unansweredText(const Unanswered& unanswered) {
  if (unanswered.reason.step == platform::Step::none) return "there is not enough memory";
  const std::string what = "the system gave no answer: " + reasonText(unanswered.reason);
  return unanswered.path.empty() ? what : what + " (" + visibleInLine(unanswered.path) + ")";
}

}  // namespace wenlolib::tools
