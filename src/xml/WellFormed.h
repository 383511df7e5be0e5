/// The strict parser's opinion of a survey document, and its serialisation.
#ifndef WENLOLIB_XML_WELLFORMED_H
#define WENLOLIB_XML_WELLFORMED_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Xml.h"

namespace wenlolib::xml {

using platform::DigitRun;

struct Finding {
  enum Kind : std::uint8_t {
    wellFormed,
    typeDeclared,  // there is a document type declaration, at which the parser stops
    endMissing,    // the bytes end within a tag, an element, a character
    tagMismatch,   // an end tag does not match its start tag
    malformed,
  };
  Kind kind = wellFormed;
  std::size_t offset = 0;    // where the parser gave up
  std::string_view message;  // the parser's own message
};

/// Parses the document as UTF-8. `digits` must stand right after a ">". The parser is shown only
/// the beginning of them: see the note in the implementation for why the finding is the same.
/// Throws std::bad_alloc if the parser finds no memory.
[[nodiscard]] Finding parse(std::string_view document, DigitRun digits = {});

/// Whether `document` is well-formed. Nearly every record's document is plain and needs no parser.
[[nodiscard]] bool isWellFormed(std::string_view document, DigitRun digits = {});

/// The XML service of every port that has no serialiser of its own.
class Service : public platform::Xml {
 public:
  Text serialised(std::string document, DigitRun digits) override;
};

}  // namespace wenlolib::xml

#endif
