/// Documents whose stray markup was escaped after the checksum had been taken.
#ifndef WENLOLIB_RECEIVER_REPAIR_H
#define WENLOLIB_RECEIVER_REPAIR_H

#include <string>
#include <string_view>

#include "receiver/Match.h"

namespace wenlolib::receiver {

/// 32 digits: the MD5 digest of a text.
[[nodiscard]] std::string checksumOf(std::string_view text);

/// Whether the checksum of a complete document is that of its content with "&lt;", "&amp;" and
/// "]]&gt;" taken back to "<", "&" and "]]>". Any of them may have stood there from the start: all
/// are taken back first, then, where they are few, some of them in all combinations, else those of
/// some of the values. The number of digests taken is bounded.
[[nodiscard]] bool holdsUnrepaired(const Match& match);

}  // namespace wenlolib::receiver

#endif
