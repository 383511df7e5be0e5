#import <Foundation/Foundation.h>

#include <exception>

#include "platform/apple/Foundation.h"
#include "platform/posix/Errors.h"

// Deprecated since 10.10, and missing from some headers. It is sent only to objects that respond to
// it.
@interface NSDate (WENLOLIBCalendarFormat)
- (NSString*)descriptionWithCalendarFormat:(NSString*)format
                                  timeZone:(NSTimeZone*)zone
                                    locale:(id)locale;
@end

// Declared for systems, and for other Foundations, whose headers lack it. It is sent only to
// objects that respond to it.
@interface NSFileManager (WENLOLIBGroupContainer)
- (NSURL*)containerURLForSecurityApplicationGroupIdentifier:(NSString*)groupIdentifier;
@end

namespace wenlolib::platform::apple::foundation {

// --- How Foundation is asked ---

namespace {

/// Releases at the end of the scope what Foundation returns inside it. The host's thread may have
/// no pool of its own.
class Pool {
 public:
  Pool() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~Pool() {
    try {
      [pool_ drain];
    } catch (...) {
      // The pool around it drains what is left.
    }
  }
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

 private:
  NSAutoreleasePool* pool_;
};

/// The answer of `ask`, which runs in a pool of its own. What Foundation raises, for lack of memory
/// for example, does not leave this file: the system then counts as unable to answer.
template <class Ask>
auto answerOf(Ask ask) {
  try {
    const Pool pool;
    return ask();
  } catch (const std::exception&) {
    throw;
  } catch (...) {
    throw NoAnswer({Step::askSystem, ENOMEM});
  }
}

// --- Strings ---

Text textOf(NSData* data) {
  if (data == nil) return std::nullopt;
  return std::string(static_cast<const char*>([data bytes]), [data length]);
}

/// Null for the null string, and for one that UTF-8 cannot represent.
Text textOf(NSString* string) {
  return textOf([string dataUsingEncoding:NSUTF8StringEncoding]);
}

/// In the current pool; nil if the text is not UTF-8.
NSString* stringFrom(std::string_view text) {
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}

}  // namespace

// --- Folders ---

Text userName() {
  return answerOf([] { return textOf(NSUserName()); });
}

Text homeFolder() {
  return answerOf([] { return textOf(NSHomeDirectory()); });
}

Text libraryFolder() {
  return answerOf([] {
    NSArray* folders =
        NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES);
    if ([folders count] == 0) return Text();
    return textOf(static_cast<NSString*>([folders objectAtIndex:0]));
  });
}

Container groupContainer(std::string_view groupIdentifier) {
  return answerOf([&] {
    NSFileManager* manager = [NSFileManager defaultManager];
    const SEL lookup = @selector(containerURLForSecurityApplicationGroupIdentifier:);
    if (![manager respondsToSelector:lookup]) return Container();
    NSURL* container =
        [manager containerURLForSecurityApplicationGroupIdentifier:stringFrom(groupIdentifier)];
    return Container{true, textOf([container path])};
  });
}

// --- Dates ---

Text calendarFormatted(Instant date, std::string_view format) {
  return answerOf([&] {
    NSDate* moment = [NSDate dateWithTimeIntervalSince1970:date.time_since_epoch().count()];
    const SEL describe = @selector(descriptionWithCalendarFormat:timeZone:locale:);
    if (![moment respondsToSelector:describe]) return Text();
    NSDictionary* locale = [[NSUserDefaults standardUserDefaults] dictionaryRepresentation];
    return textOf([moment descriptionWithCalendarFormat:stringFrom(format)
                                               timeZone:nil
                                                 locale:locale]);
  });
}

// --- XML ---

Text tidied(std::string_view document) {
  constexpr NSUInteger tidyXml = 1 << 10;
  const posix::CancellationHold hold;
  return answerOf([&] {
    NSString* text = stringFrom(document);
    if ([text length] == 0) return Text();  // nil makes the parser raise an exception
    // Autoreleased, so that it is released even if there is no memory for the result.
    NSXMLDocument* parsed = [[[NSXMLDocument alloc] initWithXMLString:text
                                                              options:tidyXml
                                                                error:nullptr] autorelease];
    return textOf([parsed XMLData]);
  });
}

}  // namespace wenlolib::platform::apple::foundation
