#include "platform/apple/FoundationDoubles.h"

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

namespace wenlolib::tests {
namespace {

Text containerPath;
Text askedGroup;
bool raisesInLookup = false;
bool calendarFormatHidden = false;
unsigned long xmlOptions = 0;

/// The runtime calls the function with its real types.
template <class Function>
IMP implementation(Function* function) {
  return reinterpret_cast<IMP>(reinterpret_cast<void*>(function));
}

Text textOf(NSString* string) {
  return string == nil ? Text() : Text([string UTF8String]);
}

NSURL* findContainer(id /*manager*/, SEL /*selector*/, NSString* group) {
  askedGroup = textOf(group);
  if (raisesInLookup) [NSException raise:NSMallocException format:@"no memory"];
  if (!containerPath) return nil;
  return [NSURL fileURLWithPath:[NSString stringWithUTF8String:containerPath->c_str()]];
}

BOOL responds(id date, SEL /*selector*/, SEL asked) {
  const bool isHidden =
      calendarFormatHidden && sel_isEqual(asked, @selector(descriptionWithCalendarFormat:
                                                                                timeZone:locale:));
  return !isHidden && class_respondsToSelector(object_getClass(date), asked);
}

using Parse = id (*)(id, SEL, NSString*, NSUInteger, NSError**);
Parse parse = nullptr;

/// The options have other meanings in this Foundation, so they are not passed on.
id parseWatched(id document, SEL selector, NSString* text, NSUInteger options, NSError** error) {
  xmlOptions = options;
  return parse(document, selector, text, 0, error);
}

}  // namespace

void offerContainer(const Text& path) {
  containerPath = path;
  class_addMethod([NSFileManager class],
                  @selector(containerURLForSecurityApplicationGroupIdentifier:),
                  implementation(findContainer), "@@:@");
}

void raiseInContainerLookup(bool raising) {
  raisesInLookup = raising;
}

Text askedContainer() {
  return askedGroup;
}

void useTimeZone(int secondsFromGMT) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:secondsFromGMT]];
  [pool release];
}

void hideCalendarFormat(bool hidden) {
  calendarFormatHidden = hidden;
  class_addMethod([NSDate class], @selector(respondsToSelector:), implementation(responds), "C@::");
}

unsigned long askedXmlOptions() {
  return xmlOptions;
}

/// Set up before any test.
const bool watching = [] {
  const SEL selector = @selector(initWithXMLString:options:error:);
  const Method method = class_getInstanceMethod([NSXMLDocument class], selector);
  parse = reinterpret_cast<Parse>(
      reinterpret_cast<void*>(method_setImplementation(method, implementation(parseWatched))));
  return true;
}();

}  // namespace wenlolib::tests
