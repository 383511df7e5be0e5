/// What a parser can tell of a document that does not have the form of any layout.
#ifndef WENLOLIB_RECEIVER_OUTLINE_H
#define WENLOLIB_RECEIVER_OUTLINE_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::receiver {

/// White space that is not a value: it stands outside the outermost element, or between two tags
/// that are not an element's start and end.
struct Gap {
  enum Place { before, between, after };  // the outermost element's start, its end

  std::size_t offset = 0;
  std::string next;  // the name of the tag that follows, or ""
  Place place = between;
};

struct Outline {
  std::string outermost;   // the name of the outermost element
  std::optional<Gap> gap;  // the first
};

/// The outline of a well-formed document that declares no document type. Throws std::bad_alloc.
[[nodiscard]] Outline outlineOf(std::string_view document);

}  // namespace wenlolib::receiver

#endif
