/// The Linux port.
#ifndef WENLOLIB_PLATFORM_LINUX_LINUXPLATFORM_H
#define WENLOLIB_PLATFORM_LINUX_LINUXPLATFORM_H

#include <string>

#include "platform/Platform.h"
#include "platform/linux/LinuxPrograms.h"
#include "platform/linux/LinuxSystem.h"
#include "platform/linux/LinuxUser.h"
#include "platform/linux/LoadedFrom.h"
#include "platform/linux/MbedCrypto.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixPropertyLists.h"
#include "platform/posix/PosixTime.h"
#include "platform/posix/Root.h"
#include "platform/posix/SystemCalls.h"
#include "xml/WellFormed.h"

namespace wenlolib::platform::gnulinux {

/// All services of the port over one root folder. The product's root is "/"; tests and tools use
/// one of their own, and then no file outside it is touched.
class LinuxPlatform {
 public:
  explicit LinuxPlatform(std::string root) : root_(std::move(root)) {}
  LinuxPlatform(const LinuxPlatform&) = delete;
  LinuxPlatform& operator=(const LinuxPlatform&) = delete;

  /// Valid as long as this object.
  [[nodiscard]] const Platform& services() const { return services_; }

 private:
  posix::Root root_;
  posix::SystemCalls calls_;
  LinuxSystem system_;
  posix::PosixClock clock_;
  posix::PosixCalendar calendar_;
  posix::PosixFiles files_{root_, calls_};
  posix::PosixPropertyLists propertyLists_{root_};
  posix::PosixBundles bundles_{root_, {codeFolder, loadedFrom}};
  LinuxUser user_;
  MbedDigest digest_;
  MbedCipher cipher_;
  xml::Service xml_;
  LinuxUuids uuids_;
  LinuxPrograms programs_{root_};
  Platform services_{&system_, &clock_,  &calendar_, &files_, &propertyLists_, &bundles_,
                     &user_,   &digest_, &cipher_,   &xml_,   &uuids_,         &programs_};
};

}  // namespace wenlolib::platform::gnulinux

#endif
