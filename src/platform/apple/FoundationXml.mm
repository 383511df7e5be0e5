#include "platform/apple/Foundation.h"
#include "platform/apple/FoundationText.h"
#include "platform/posix/CancellationHold.h"

namespace wenlolib::platform::apple::foundation {
namespace {

constexpr NSUInteger tidyXml = 1 << 10;

}  // namespace

Text tidied(std::string_view document) {
  const posix::CancellationHold hold;
  const Pool pool;
  NSString* text = stringFrom(document);
  if ([text length] == 0) return std::nullopt;  // nil makes the parser raise an exception
  // The pool's, so that it goes too where there is no memory for the answer.
  NSXMLDocument* parsed = [[[NSXMLDocument alloc] initWithXMLString:text
                                                            options:tidyXml
                                                              error:nullptr] autorelease];
  return textOf([parsed XMLData]);
}

}  // namespace wenlolib::platform::apple::foundation
