/// What a parser tells of a document that has another form than the layouts.
#ifndef WENLOLIB_RECEIVER_OUTLINE_H
#define WENLOLIB_RECEIVER_OUTLINE_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::receiver {

/// White space that is no value: it stands outside the outermost element, or between two tags that
/// are not an element's start and end.
struct Gap {
  std::size_t offset = 0;
  std::string before;  // the name of the tag that follows, or ""
};

struct Outline {
  std::string outermost;   // the name of the outermost element
  std::optional<Gap> gap;  // the first
};

/// Of a well-formed document that declares no type. Throws std::bad_alloc.
[[nodiscard]] Outline outlineOf(std::string_view document);

}  // namespace wenlolib::receiver

#endif
