/// The macOS port.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLEPLATFORM_H
#define WENLOLIB_PLATFORM_APPLE_APPLEPLATFORM_H

#include <string>

#include "platform/Platform.h"
#include "platform/apple/AppleCrypto.h"
#include "platform/apple/ApplePrograms.h"
#include "platform/apple/AppleServices.h"
#include "platform/apple/AppleSystemCalls.h"
#include "platform/apple/LoadedFrom.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixPropertyLists.h"
#include "platform/posix/Root.h"

namespace wenlolib::platform::apple {

/// All services of the port over one root folder. The product's root is "/"; tests use one of their
/// own, and then no file outside it is touched.
class ApplePlatform {
 public:
  explicit ApplePlatform(std::string root) : root_(std::move(root)) {}
  ApplePlatform(const ApplePlatform&) = delete;
  ApplePlatform& operator=(const ApplePlatform&) = delete;

  /// Valid as long as this object.
  [[nodiscard]] const Platform& services() const { return services_; }

 private:
  posix::Root root_;
  AppleSystemCalls calls_;
  AppleSystem system_;
  AppleClock clock_;
  AppleCalendar calendar_;
  posix::PosixFiles files_{root_, calls_};
  posix::PosixPropertyLists propertyLists_{root_};
  posix::PosixBundles bundles_{root_, {codeFolder, loadedFrom}};
  AppleUser user_;
  AppleDigest digest_;
  TransformCipher cipher_;
  AppleXml xml_;
  AppleUuids uuids_;
  ApplePrograms programs_{root_};
  Platform services_{&system_, &clock_,  &calendar_, &files_, &propertyLists_, &bundles_,
                     &user_,   &digest_, &cipher_,   &xml_,   &uuids_,         &programs_};
};

}  // namespace wenlolib::platform::apple

#endif
