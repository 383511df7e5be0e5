/// The survey document: a wrapper with a checksum around the header and the payload.
#ifndef WENLOLIB_DOCUMENT_SURVEYDOCUMENT_H
#define WENLOLIB_DOCUMENT_SURVEYDOCUMENT_H

#include <cstdint>
#include <string>

#include "document/Payload.h"
#include "platform/Xml.h"

namespace wenlolib {

enum class Layout : std::uint8_t {
  application,      // application usage
  printer,          // printer log, new tag type
  printerOlderTag,  // printer log, older tag type: the printer's identity stands in the document
};

/// What a document says about where it comes from. Values go in as they are, without escaping.
struct Header {
  std::string version;
  std::string osVersion;
  std::string date;
  std::string locale;
  std::string identifier;
  // The older printer layout only.
  std::string deviceId;
  std::string serialNumber;
  std::string romVersion;
};

struct SurveyDocument {
  std::string text;
  platform::DigitRun digits;  // where the payload stands in the text
};

/// Puts a document together. Nothing stands between its parts: no white space, no declaration. The
/// checksum is the MD5 digest, in upper-case hexadecimal, of the text between the wrapper's tags.
[[nodiscard]] SurveyDocument assemble(Layout layout, const Header& header, const Payload& payload);

}  // namespace wenlolib

#endif
