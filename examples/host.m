/* A host in Objective-C that loads the bundle at run time and records three kinds of document:
 *
 *   host BUNDLE APPLICATION_DATA PRINTER_DATA
 *
 * At build time it needs only the library's header. */
#import <Foundation/Foundation.h>

#include <stdio.h>

#import <wenlolib/objc/WENLOLIB.h>

/* Mode 1, in the option's low four bits: application usage needs the user's agreement, and
 * documents carry the language that the user last chose in the host. */
enum { hostLanguage = 1 };

static NSString* textIn(const char* path) {
  return [NSString stringWithContentsOfFile:[NSString stringWithUTF8String:path]
                                   encoding:NSUTF8StringEncoding
                                      error:NULL];
}

static BOOL report(const char* what, BOOL recorded) {
  printf("  %-34s %s\n", what, recorded ? "recorded" : "refused");
  return recorded;
}

/* `library` is the class WENLOLIB from the bundle; its name is not known when this host is linked.
 */
static BOOL recordAll(Class library, NSString* usage, NSString* log) {
  NSDictionary* newer = [NSDictionary dictionaryWithObject:[NSNumber numberWithBool:YES]
                                                    forKey:@"NEWTAGTYPE"];
  NSDictionary* older =
      [NSDictionary dictionaryWithObjectsAndKeys:@"MFG:Orvan;MDL:QX 200;CLS:PRINTER;", @"DeviceID",
                                                 @"QX200-0004711", @"SN", @"2.14", @"ROMVER", nil];
  BOOL all =
      report("application usage, Photo Album", [library writeAppInfoWithContents:usage
                                                                            name:@"PhotoAlbum"
                                                                          option:hostLanguage]);
  all &= report("printer log, newer tag type", [library writePrinterLogInfoWithContents:log
                                                                                   name:@"QX500"
                                                                                 option:hostLanguage
                                                                              otherInfo:newer]);
  all &= report("printer log, older tag type", [library writePrinterLogInfoWithContents:log
                                                                                   name:@"QX200"
                                                                                 option:hostLanguage
                                                                              otherInfo:older]);
  return all;
}

int main(int count, char** arguments) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSBundle* bundle = nil;
  Class library = Nil;
  BOOL all = NO;
  if (count != 4) {
    fprintf(stderr, "usage: host BUNDLE APPLICATION_DATA PRINTER_DATA\n");
    return 2;
  }
  bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:arguments[1]]];
  library = [bundle principalClass];
  if (library != Nil) {
    NSString* version = [[bundle infoDictionary] objectForKey:@"CFBundleShortVersionString"];
    printf("Loaded WENLOLIB %s\n", [version UTF8String]);
    all = recordAll(library, textIn(arguments[2]), textIn(arguments[3]));
  } else {
    fprintf(stderr, "The bundle %s cannot be loaded.\n", arguments[1]);
  }
  [pool release];
  return all ? 0 : 1;
}
