/// The system calls that create and name a file, on old and new systems.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLESYSTEMCALLS_H
#define WENLOLIB_PLATFORM_APPLE_APPLESYSTEMCALLS_H

#include "platform/posix/SystemCalls.h"

namespace wenlolib::platform::apple {

/// Before 10.10 no call takes a name relative to an open folder. On such systems the folder's path
/// is asked for each time, because it may have been renamed since it was opened.
class AppleSystemCalls : public posix::SystemCalls {
 public:
  int create(int folder, const char* name) override;
  int open(int folder, const char* name) override;
  int flush(int file) override;
  int rename(int folder, const char* from, const char* to) override;
  int renameWithoutReplacing(int folder, const char* from, const char* to) override;
  int link(int folder, const char* from, const char* to) override;
  int remove(int folder, const char* name) override;
  int status(int folder, const char* name, posix::Links links, struct stat& status) override;
};

}  // namespace wenlolib::platform::apple

#endif
