/* A host: loads the bundle by its absolute path and sends messages to its classes.
 *
 *   objc_host BUNDLE [NAME]
 *
 * It prints one line for each case (whose name begins with NAME). The exit status is 0 if none
 * failed. */
#import "Host.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

Class recordClass;
Class toolkitClass;
NSBundle* bundle;

static int failedChecks;
static NSString* temporaryFolder;

void checked(BOOL holds, const char* what, const char* file, int line) {
  if (holds) return;
  ++failedChecks;
  printf("  %s:%d: %s\n", file, line, what);
}

void checkedEqual(id found, id expected, const char* what, const char* file, int line) {
  if (found == expected || [found isEqual:expected]) return;
  ++failedChecks;
  printf("  %s:%d: %s is %s, not %s\n", file, line, what, [[found description] UTF8String],
         [[expected description] UTF8String]);
}

static void makeFolder(NSString* path) {
  [[NSFileManager defaultManager] createDirectoryAtPath:path
                            withIntermediateDirectories:YES
                                             attributes:nil
                                                  error:NULL];
}

NSString* inSupportFolder(NSString* name) {
  return [[NSString stringWithFormat:@"%s/Library/Group Containers/K7MW2PL9QD.QX.common/"
                                      "Library/Application Support/QMR",
                                     getenv("HOME")] stringByAppendingPathComponent:name];
}

NSMutableDictionary* agreedPreferences(double daysAgo) {
  return [NSMutableDictionary
      dictionaryWithObjectsAndKeys:[NSDate dateWithTimeIntervalSinceNow:-86400 * daysAgo],
                                   @"InstalledDate", [NSNumber numberWithBool:YES],
                                   @"LatestSelectedAgreement", @"fr_FR_EURO",
                                   @"LatestSelectedLanguage", nil];
}

/* Not by NSDictionary's writeToFile:, which writes GNUstep's own format here. */
void writePropertyList(NSDictionary* dictionary, NSString* path) {
  NSData* data = [NSPropertyListSerialization dataFromPropertyList:dictionary
                                                            format:NSPropertyListXMLFormat_v1_0
                                                  errorDescription:NULL];
  CHECK([data writeToFile:path atomically:YES]);
}

void writePreferences(NSDictionary* preferences) {
  writePropertyList(preferences,
                    inSupportFolder(@"Config/com.orvan.printing.Quillmere.Pref.plist"));
}

void useNewHome(void) {
  static int homes;
  NSString* home = [temporaryFolder stringByAppendingFormat:@"/%d", ++homes];
  setenv("HOME", [home UTF8String], 1);
  makeFolder(inSupportFolder(@"ALM"));
  makeFolder(inSupportFolder(@"PLM"));
  makeFolder(inSupportFolder(@"Config"));
  writePreferences(agreedPreferences(100));
}

NSString* textAt(NSString* path) {
  NSData* data = [NSData dataWithContentsOfFile:path];
  return data == nil
             ? nil
             : [[[NSString alloc] initWithData:data encoding:NSUTF8StringEncoding] autorelease];
}

NSArray* namesIn(NSString* folder) {
  NSArray* names = [[NSFileManager defaultManager] contentsOfDirectoryAtPath:folder error:NULL];
  return [names sortedArrayUsingSelector:@selector(compare:)];
}

NSString* elementIn(NSString* document, NSString* name) {
  NSRange first = [document rangeOfString:[NSString stringWithFormat:@"<%@>", name]];
  NSRange last = [document rangeOfString:[NSString stringWithFormat:@"</%@>", name]];
  if (first.length == 0 || last.length == 0) return nil;
  return [document
      substringWithRange:NSMakeRange(NSMaxRange(first), last.location - NSMaxRange(first))];
}

NSString* monthFile(NSString* application) {
  NSString* name = [NSString stringWithFormat:@"ALM/Quillmere_Log_%@_%@.ALM", application,
                                              [toolkitClass calendarFormatString:[NSDate date]
                                                                       isNeedDay:0]];
  return inSupportFolder(name);
}

NSString* repeated(NSString* text, int times) {
  return [@"" stringByPaddingToLength:[text length] * (NSUInteger)times
                           withString:text
                      startingAtIndex:0];
}

static BOOL passes(const Case* one) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  failedChecks = 0;
  useNewHome();
  @try {
    one->run();
  } @catch (NSException* exception) {
    checked(NO, [[exception description] UTF8String], __FILE__, __LINE__);
  }
  [pool release];
  printf("%s %s\n", failedChecks == 0 ? "passed" : "FAILED", one->name);
  fflush(stdout);
  return failedChecks == 0;
}

static int runAll(const char* beginning) {
  const Case* suites[] = {interfaceCases, recordCases,     entryPointCases, toolkitCases,
                          timeZoneCases,  conversionCases, hostileCases,    lifetimeCases,
                          subclassCases,  shortageCases,   stackCases};
  int run = 0, failed = 0;
  for (size_t i = 0; i < sizeof suites / sizeof *suites; ++i) {
    for (const Case* one = suites[i]; one->name != NULL; ++one) {
      if (strncmp(one->name, beginning, strlen(beginning)) != 0) continue;
      ++run;
      if (!passes(one)) ++failed;
    }
  }
  printf("%d cases, %d failed\n", run, failed);
  return run > 0 && failed == 0 ? 0 : 1;
}

int main(int count, char** arguments) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const char* parent = getenv("TMPDIR");
  char folder[4096];
  int status = 1;
  snprintf(folder, sizeof folder, "%s/wenlolib-objc-XXXXXX", parent != NULL ? parent : "/tmp");
  if (count < 2 || count > 3 || mkdtemp(folder) == NULL) {
    fprintf(stderr, "usage: objc_host BUNDLE [NAME]\n");
    return 2;
  }
  temporaryFolder = [[NSString alloc] initWithUTF8String:folder];
  bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:arguments[1]]];
  recordClass = [bundle classNamed:@"WENLOLIB"];
  toolkitClass = [bundle classNamed:@"CommonTooWenlolib"];
  if (recordClass != Nil && toolkitClass != Nil) {
    status = runAll(count == 3 ? arguments[2] : "");
  } else {
    fprintf(stderr, "%s does not load\n", arguments[1]);
  }
  [[NSFileManager defaultManager] removeItemAtPath:temporaryFolder error:NULL];
  [pool release];
  return status;
}
