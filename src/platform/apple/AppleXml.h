/// The XML service on NSXMLDocument.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLEXML_H
#define WENLOLIB_PLATFORM_APPLE_APPLEXML_H

#include "platform/Xml.h"
#include "platform/apple/Foundation.h"

namespace wenlolib::platform::apple {

class AppleXml : public Xml {
 public:
  /// The parser is shown the whole document, digits and all.
  Text serialised(std::string document, DigitRun /*digits*/) override {
    return foundation::tidied(document);
  }
};

}  // namespace wenlolib::platform::apple

#endif
