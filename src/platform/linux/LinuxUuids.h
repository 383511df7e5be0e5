/// Random identifiers on Linux.
#ifndef WENLOLIB_PLATFORM_LINUX_LINUXUUIDS_H
#define WENLOLIB_PLATFORM_LINUX_LINUXUUIDS_H

#include "platform/Uuids.h"

namespace wenlolib::platform::gnulinux {

class LinuxUuids : public Uuids {
 public:
  Text create() override;
};

}  // namespace wenlolib::platform::gnulinux

#endif
