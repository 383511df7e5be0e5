/* A program in Objective-C that loads the installed bundle and records below HOME, where the
 * folders are. The record's contents are the program's argument. */
#import <Foundation/Foundation.h>

#include <stdio.h>

#import <wenlolib/objc/CommonTooWenlolib.h>
#import <wenlolib/objc/WENLOLIB.h>

int main(int count, char** arguments) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Class library = [[NSBundle bundleWithPath:@BUNDLE] principalClass];
  Class toolkit = NSClassFromString(@"CommonTooWenlolib");
  int failures = count == 2 ? 0 : 1;
  if (library == Nil || toolkit == Nil) {
    fprintf(stderr, "not so: the bundle has its classes\n");
    failures = 1;
  } else if (failures == 0) {
    NSString* contents = [NSString stringWithUTF8String:arguments[1]];
    if (![library writeAppInfoWithContents:contents name:@"Consumer" option:2]) {
      fprintf(stderr, "not so: usage recorded\n");
      failures = 1;
    }
    if ([toolkit convertVersionStrToNum:@"10.9.5"] != 100905) {
      fprintf(stderr, "not so: a version's number\n");
      failures = 1;
    }
  }
  [pool release];
  return failures;
}
