/// The XML service on expat.
#ifndef WENLOLIB_PLATFORM_LINUX_EXPATXML_H
#define WENLOLIB_PLATFORM_LINUX_EXPATXML_H

#include <string_view>

#include "platform/Xml.h"

namespace wenlolib::platform::gnulinux {

/// Whether `document` is well-formed XML. The parser is shown the beginning of the digit run only:
/// see the note in the implementation for why the verdict is the same. Throws std::bad_alloc when
/// the parser runs out of memory.
[[nodiscard]] bool isWellFormed(std::string_view document, DigitRun digits);

class ExpatXml : public Xml {
 public:
  Text serialised(std::string document, DigitRun digits) override;
};

}  // namespace wenlolib::platform::gnulinux

#endif
