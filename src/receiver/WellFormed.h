/// The strict parser's opinion of a document.
#ifndef WENLOLIB_RECEIVER_WELLFORMED_H
#define WENLOLIB_RECEIVER_WELLFORMED_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "receiver/Digits.h"

namespace wenlolib::receiver {

struct XmlFinding {
  enum Kind : std::uint8_t {
    wellFormed,
    typeDeclared,  // there is a document type declaration, behind which the parser does not look
    endMissing,    // the bytes end within a tag, an element, a character
    tagMismatch,   // an end tag belongs to no start tag
    malformed,
  };
  Kind kind = wellFormed;
  std::size_t offset = 0;    // where the parser gave up
  std::string_view message;  // the parser's word for it
};

/// Parses the document as UTF-8. `digits` is a run of digits right behind a ">", of which the
/// parser is shown the beginning only: see the note in the implementation for why the finding is
/// the same. Throws std::bad_alloc.
[[nodiscard]] XmlFinding parse(std::string_view bytes, Run digits);

/// True for a value that needs no parser: it holds nothing but characters which stand for
/// themselves wherever they are. False says nothing.
[[nodiscard]] bool isPlain(std::string_view value);

}  // namespace wenlolib::receiver

#endif
