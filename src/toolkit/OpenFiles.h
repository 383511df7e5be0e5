/// Files that are open to everybody.
#ifndef WENLOLIB_TOOLKIT_OPENFILES_H
#define WENLOLIB_TOOLKIT_OPENFILES_H

#include <string>

namespace wenlolib {

/// Opens up the file at `path`, as far as the platform does that: after a failed write the older
/// one, on purpose. Has no say in any answer.
void openPermissions(const std::string& path) noexcept;

}  // namespace wenlolib

#endif
