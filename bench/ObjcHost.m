/* An Objective-C host, loaded by the benchmark, that keeps ready what it records. */
#import <Foundation/Foundation.h>

#import "wenlolib/objc/WENLOLIB.h"

static Class library;
static NSString* recordContents;

/* 0 if the bundle cannot be loaded. */
int objcHostOpen(const char* bundle, const char* contents) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  library = [[NSBundle bundleWithPath:[NSString stringWithUTF8String:bundle]] principalClass];
  [recordContents release];
  recordContents = [[NSString alloc] initWithUTF8String:contents];
  [pool release];
  return library != Nil ? 1 : 0;
}

/* One record, including the pool that releases it. */
int objcHostRecord(unsigned int option) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const BOOL recorded = [library writeAppInfoWithContents:recordContents name:@"App" option:option];
  [pool release];
  return recorded ? 1 : 0;
}
