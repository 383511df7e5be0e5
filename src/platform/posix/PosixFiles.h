/// Files and folders on a POSIX system.
#ifndef WENLOLIB_PLATFORM_POSIX_POSIXFILES_H
#define WENLOLIB_PLATFORM_POSIX_POSIXFILES_H

#include "platform/Files.h"
#include "platform/posix/Root.h"
#include "platform/posix/SystemCalls.h"

namespace wenlolib::platform::posix {

class PosixFiles : public Files {
 public:
  /// Both must outlive this object.
  PosixFiles(const Root& root, SystemCalls& calls) : root_(root), calls_(calls) {}

  Kind kindAt(const std::string& path) override;
  bool isExecutable(const std::string& path) override;
  Outcome writeAtomically(const std::string& path, std::string_view bytes, std::uint32_t mode,
                          Publication publication) override;
  bool setPermissions(const std::string& path, std::uint32_t mode) override;
  Reason createFolder(const std::string& path, std::uint32_t mode) override;

 private:
  const Root& root_;
  SystemCalls& calls_;
};

}  // namespace wenlolib::platform::posix

#endif
