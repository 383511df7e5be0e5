/// The seam: everything that the library asks of the system it runs on.
#ifndef WENLOLIB_PLATFORM_PLATFORM_H
#define WENLOLIB_PLATFORM_PLATFORM_H

#include "platform/Crypto.h"
#include "platform/Files.h"
#include "platform/PropertyLists.h"
#include "platform/System.h"
#include "platform/Time.h"
#include "platform/Xml.h"

namespace wenlolib::platform {

/// The services of one platform. No pointer is null, and none is owned. All services may be called
/// from any thread, at the same time.
struct Platform {
  System* system;
  Clock* clock;
  Calendar* calendar;
  Files* files;
  PropertyLists* propertyLists;
  Bundles* bundles;
  User* user;
  Digest* digest;
  Cipher* cipher;
  Xml* xml;
  Uuids* uuids;
  Programs* programs;
};

/// The platform that this build is for. Every port defines it; the services live as long as the
/// library is loaded.
const Platform& native() noexcept;

/// The platform in use: the native one unless a `Substitute` stands in for it.
const Platform& current() noexcept;

/// Puts another platform in the native one's place, for the whole process, for as long as the
/// object lives. For tests and tools; scopes may nest. Calls under way in other threads finish with
/// the platform that they began with, so `platform` must outlive them.
class Substitute {
 public:
  explicit Substitute(const Platform& platform) noexcept;
  ~Substitute();
  Substitute(const Substitute&) = delete;
  Substitute& operator=(const Substitute&) = delete;

 private:
  const Platform* previous_;
};

}  // namespace wenlolib::platform

#endif
