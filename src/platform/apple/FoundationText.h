/// Strings between Foundation and the library, and the pool that their makers need.
#ifndef WENLOLIB_PLATFORM_APPLE_FOUNDATIONTEXT_H
#define WENLOLIB_PLATFORM_APPLE_FOUNDATIONTEXT_H

#import <Foundation/Foundation.h>

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib::platform::apple::foundation {

/// Releases at the end of the scope what Foundation hands out inside it. The host's thread may have
/// no pool of its own.
class Pool {
 public:
  Pool() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~Pool() { [pool_ drain]; }
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

 private:
  NSAutoreleasePool* pool_;
};

inline Text textOf(NSData* data) {
  if (data == nil) return std::nullopt;
  return std::string(static_cast<const char*>([data bytes]), [data length]);
}

/// Null for the null string, and for one that no UTF-8 can carry.
inline Text textOf(NSString* string) {
  return textOf([string dataUsingEncoding:NSUTF8StringEncoding]);
}

/// In the current pool; nil where the text is no UTF-8.
inline NSString* stringFrom(std::string_view text) {
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}

}  // namespace wenlolib::platform::apple::foundation

#endif
