/* An Objective-C host with everything at hand that it records; loaded by the benchmark. */
#import <Foundation/Foundation.h>

#import "wenlolib/objc/WENLOLIB.h"

static Class library;
static NSString* recordContents;

/* 0 when the bundle does not load. */
int objcHostOpen(const char* bundle, const char* contents) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  library = [[NSBundle bundleWithPath:[NSString stringWithUTF8String:bundle]] principalClass];
  [recordContents release];
  recordContents = [[NSString alloc] initWithUTF8String:contents];
  [pool release];
  return library != Nil ? 1 : 0;
}

/* One record, the pool included in which it goes away. */
int objcHostRecord(unsigned int option) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const BOOL recorded = [library writeAppInfoWithContents:recordContents name:@"App" option:option];
  [pool release];
  return recorded ? 1 : 0;
}
