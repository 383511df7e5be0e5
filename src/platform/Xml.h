/// XML parsing and serialisation.
#ifndef WENLOLIB_PLATFORM_XML_H
#define WENLOLIB_PLATFORM_XML_H

#include <cstddef>
#include <string>

#include "wenlolib/Text.h"

namespace wenlolib::platform {

/// A part of a document that its writer knows to be nothing but hexadecimal digits. It may be
/// nearly all of a large document. A parser may rely on it.
struct DigitRun {
  std::size_t offset = 0;
  std::size_t length = 0;
};

class Xml {
 public:
  virtual ~Xml() = default;

  /// Parses `document` (UTF-8), repairing what the tidy option repairs (a stray "&", a "<" that
  /// begins no tag, a "]]>" that ends no section), and serialises it again: no declaration, no
  /// white space added, empty elements kept open. Null if it cannot be made well-formed.
  virtual Text serialised(std::string document, DigitRun digits) = 0;
};

}  // namespace wenlolib::platform

#endif
