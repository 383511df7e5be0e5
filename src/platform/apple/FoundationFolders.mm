#include "platform/apple/Foundation.h"
#include "platform/apple/FoundationText.h"

// Declared for systems, and for other Foundations, whose headers lack it. It is sent only after
// asking.
@interface NSFileManager (WENLOLIBGroupContainer)
- (NSURL*)containerURLForSecurityApplicationGroupIdentifier:(NSString*)groupIdentifier;
@end

namespace wenlolib::platform::apple::foundation {

Text userName() {
  const Pool pool;
  return textOf(NSUserName());
}

Text homeFolder() {
  const Pool pool;
  return textOf(NSHomeDirectory());
}

Text libraryFolder() {
  const Pool pool;
  NSArray* folders = NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES);
  if ([folders count] == 0) return std::nullopt;
  return textOf(static_cast<NSString*>([folders objectAtIndex:0]));
}

Container groupContainer(std::string_view groupIdentifier) {
  const Pool pool;
  NSFileManager* manager = [NSFileManager defaultManager];
  const SEL lookup = @selector(containerURLForSecurityApplicationGroupIdentifier:);
  if (![manager respondsToSelector:lookup]) return {};
  NSURL* container =
      [manager containerURLForSecurityApplicationGroupIdentifier:stringFrom(groupIdentifier)];
  return {true, textOf([container path])};
}

}  // namespace wenlolib::platform::apple::foundation
