/// References in values: &amp; and its like.
#ifndef WENLOLIB_RECEIVER_REFERENCES_H
#define WENLOLIB_RECEIVER_REFERENCES_H

#include <string>
#include <string_view>

namespace wenlolib::receiver {

/// A well-formed value with its references resolved, as a parser hands it out but for line ends,
/// which stay as they are.
[[nodiscard]] std::string resolved(std::string_view value);

}  // namespace wenlolib::receiver

#endif
