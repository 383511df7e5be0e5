/// References such as "&amp;" in values.
#ifndef WENLOLIB_RECEIVER_REFERENCES_H
#define WENLOLIB_RECEIVER_REFERENCES_H

#include <string>
#include <string_view>

namespace wenlolib::receiver {

/// A well-formed value as a parser returns it, with its references resolved, except that line ends
/// stay as they are.
[[nodiscard]] std::string withoutReferences(std::string_view value);

}  // namespace wenlolib::receiver

#endif
