/// Documents whose stray markup was escaped after the checksum had been taken.
#ifndef WENLOLIB_RECEIVER_REPAIR_H
#define WENLOLIB_RECEIVER_REPAIR_H

#include <string>
#include <string_view>

#include "receiver/Match.h"

namespace wenlolib::receiver {

/// The MD5 digest of a text, as 32 digits.
[[nodiscard]] std::string checksumOf(std::string_view text);

/// Whether the checksum of a complete document is that of its content with "&lt;", "&amp;" and
/// "&gt;" turned back into "<", "&" and ">". Any of them may have been there from the start. So all
/// are turned back first. After that, if they are few, combinations of them are tried;
/// otherwise combinations of the values that hold them. The number of digests computed is bounded.
[[nodiscard]] bool holdsUnrepaired(const Match& match);

}  // namespace wenlolib::receiver

#endif
