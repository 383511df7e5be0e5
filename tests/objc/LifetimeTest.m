/* Reference counts: a record is freed with the pool, and leaves nothing in memory. */
#import "Host.h"
#import "HostileObjects.h"

#include <malloc.h>
#include <objc/runtime.h>
#include <stdio.h>
#include <sys/resource.h>
#include <unistd.h>

static int made, gone, written;

/* A subclass of the record that counts. It is made at run time, since the class is loaded then. */
typedef void (*Anything)(void); /* a method before it is cast to its type */
typedef id (*Init)(id, SEL);
typedef void (*Dealloc)(id, SEL);
typedef BOOL (*Write)(id, SEL);

static Anything recordsOwn(SEL selector) {
  return (Anything)class_getMethodImplementation(recordClass, selector);
}

static id countingInit(id self, SEL selector) {
  ++made;
  return ((Init)recordsOwn(selector))(self, selector);
}

static void countingDealloc(id self, SEL selector) {
  ++gone;
  ((Dealloc)recordsOwn(selector))(self, selector);
}

static BOOL countingWrite(id self, SEL selector) {
  ++written;
  return ((Write)recordsOwn(selector))(self, selector);
}

static void override(Class class, SEL selector, Anything implementation, const char* types) {
  class_addMethod(class, selector, (IMP)implementation, types);
}

static Class countingClass(void) {
  static Class class;
  made = gone = written = 0;
  if (class != Nil) return class;
  class = objc_allocateClassPair(recordClass, "CountingRecord", 0);
  override(class, @selector(init), (Anything)countingInit, "@@:");
  override(class, @selector(dealloc), (Anything)countingDealloc, "v@:");
  override(class, @selector(writeAppInfo), (Anything)countingWrite, "C@:");
  objc_registerClassPair(class);
  return class;
}

static NSDictionary* printer(void) {
  return [NSDictionary dictionaryWithObjectsAndKeys:@"d", @"DeviceID", @"s", @"SN", nil];
}

static void everyEntryPointMakesOneRecordThatIsGoneWithThePool(void) {
  Class class = countingClass();
  for (int i = 1; i <= 3; ++i) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    CHECK([class writeAppInfoWithContents:@"contents" name:@"App" option:1]);
    CHECK([class writePrinterLogInfoWithContents:@"c" name:@"App" option:1 otherInfo:printer()]);
    CHECK(made == 2 * i && written == 2 * i);
    CHECK(gone == 2 * (i - 1));
    [pool release];
    CHECK(gone == 2 * i);
  }
}

static void aFailedWriteLeavesNoRecordEither(void) {
  Class class = countingClass();
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  CHECK(![class writeAppInfoWithContents:@"contents" name:@"no/such/folder" option:1]);
  CHECK(![class writeAppInfoWithContents:(id)[NSNull null] name:@"App" option:1]);
  [pool release];
  CHECK(made == 2 && gone == 2);
}

static void aRefusalOrANullMakesNoRecord(void) {
  Class class = countingClass();
  CHECK(![class writeAppInfoWithContents:@"contents" name:@"App" option:3]);
  CHECK(![class writeAppInfoWithContents:nil name:@"App" option:1]);
  CHECK(![class writePrinterLogInfoWithContents:@"c" name:nil option:1 otherInfo:nil]);
  CHECK(made == 0);
}

static void everyInitialiserCallsTheRecordsOwnInitOnce(void) {
  Class class = countingClass();
  [[[class alloc] init] release];
  [[[class alloc] initWithContents:@"c"] release];
  [[[class alloc] initWithContents:@"c" name:@"n"] release];
  [[[class alloc] initWithContents:@"c" name:@"n" option:1] release];
  CHECK(made == 4 && gone == 4);
}

static void aRecordReleasesWhatItHolds(void) {
  id contents, name, identifier, otherInfo, document;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  WENLOLIB* record = [[recordClass alloc] initWithContents:repeated(@"c", 50)
                                                      name:repeated(@"n", 50)];
  [record serOtherInfo:printer()];
  CHECK([record WENLOLIBCreateXMLDocument]);
  contents = [[record contents] retain];
  name = [[record applicationName] retain];
  identifier = [[record getWENLOLIBId] retain];
  otherInfo = [[record valueForKey:@"otherInfoDict"] retain];
  document = [[record valueForKey:@"xmlDocment"] retain];
  [pool release];
  CHECK([contents retainCount] == 2 && [name retainCount] == 2);
  CHECK([identifier retainCount] == 2 && [otherInfo retainCount] == 2);
  CHECK([document retainCount] == 2);
  [record release];
  CHECK([contents retainCount] == 1 && [name retainCount] == 1);
  CHECK([identifier retainCount] == 1 && [otherInfo retainCount] == 1);
  CHECK([document retainCount] == 1);
  [contents release];
  [name release];
  [identifier release];
  [otherInfo release];
  [document release];
}

static void aHostsObjectsAreNotHeldOnto(void) {
  NSMutableString* contents = [[NSMutableString alloc] initWithString:@"contents"];
  NSMutableDictionary* otherInfo = [[NSMutableDictionary alloc] init];
  [otherInfo setObject:contents forKey:@"SN"];
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  WENLOLIB* record = [[recordClass alloc] initWithContents:contents name:contents];
  [record serOtherInfo:otherInfo];
  [pool release];
  CHECK([contents retainCount] == 2); /* the test and its dictionary */
  CHECK([otherInfo retainCount] == 1);
  [record release];
  [otherInfo release];
  [contents release];
}

/* Every operation once, on sound and on hostile objects. */
static void everythingOnce(NSArray* hostile) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  WENLOLIB* record = [[recordClass alloc] initWithContents:@"contents" name:@"App" option:1];
  [record serOtherInfo:printer()];
  [record serOtherInfo:printer()];
  [record WENLOLIBCreateXMLDocument];
  [record WENLOLIBCreateXMLDocument];
  [record getWENLOLIBId];
  [record getSerialNum];
  [record isNewTagTypePrinter];
  [record setFileType:2];
  [record writeAppInfo];
  [recordClass writeAppInfoWithContents:@"contents" name:@"App" option:1];
  [toolkitClass replaceString:@"a/b" before:@"/" after:@"-"];
  [toolkitClass surveyInfoDictionary];
  [toolkitClass calendarFormatString:[NSDate date] isNeedDay:1];
  for (NSUInteger i = 0; i < [hostile count]; ++i) {
    id object = [hostile objectAtIndex:i];
    [record serOtherInfo:[NSDictionary
                             dictionaryWithObjectsAndKeys:object, @"SN", @"r", @"ROMVER", nil]];
    [record serOtherInfo:object];
    [record setContents:object];
    [toolkitClass convertVersionStrToNum:object];
    [toolkitClass dateFormatWithHourMinSec:object];
    [recordClass createTask:@"/nowhere" args:object wait:1];
  }
  [record release];
  [pool release];
}

/* How many more bytes are in use after this many rounds. */
static long growthOver(int rounds, NSArray* hostile) {
  const size_t before = mallinfo2().uordblks;
  for (int i = 0; i < rounds; ++i) everythingOnce(hostile);
  return (long)(mallinfo2().uordblks - before);
}

/* A leak grows in every batch. Foundation's tables grow only in the first batches. */
static void memoryInUseStaysTheSame(void) {
  enum { rounds = 25, mostBatches = 12 };
  NSDictionary* survey = [NSDictionary dictionaryWithObject:printer() forKey:@"k"];
  NSArray* hostile = [[notTexts() arrayByAddingObjectsFromArray:notArrays()] retain];
  long growth = rounds;
  [toolkitClass createDir:[[toolkitClass surveyInfoPath] stringByDeletingLastPathComponent]];
  writePropertyList(survey, [toolkitClass surveyInfoPath]);
  for (int i = 0; i < mostBatches && growth >= rounds; ++i) growth = growthOver(rounds, hostile);
  CHECK(growth < rounds);
  [hostile release];
}

static rlim_t addressSpaceInUse(void) {
  unsigned long pages = 0;
  FILE* file = fopen("/proc/self/statm", "r");
  if (file == NULL || fscanf(file, "%lu", &pages) != 1) pages = 0;
  if (file != NULL) fclose(file);
  return (rlim_t)pages * (rlim_t)sysconf(_SC_PAGESIZE);
}

static void limitAddressSpace(rlim_t most) {
  struct rlimit limit;
  getrlimit(RLIMIT_AS, &limit);
  limit.rlim_cur = most;
  setrlimit(RLIMIT_AS, &limit);
}

/* A record of 32 MiB with more and more memory, until it can be made. */
static void withoutMemoryTheAnswerIsNoAndNothingIsRaised(void) {
  NSString* contents = repeated(@"0123456789abcdef", 2 << 20);
  const NSUInteger length = [contents length];
  int refused = 0;
  BOOL recorded = NO;
  for (unsigned int more = 8; more <= 1024 && !recorded; more += 8) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    limitAddressSpace(addressSpaceInUse() + ((rlim_t)more << 20));
    CHECK_RAISES_NOTHING(recorded = [recordClass writeAppInfoWithContents:contents
                                                                     name:@"App"
                                                                   option:1]);
    limitAddressSpace(RLIM_INFINITY);
    CHECK((textAt(monthFile(@"App")) != nil) == recorded);
    if (!recorded) ++refused;
    [pool release];
  }
  CHECK(recorded && refused > 5);
  CHECK([textAt(monthFile(@"App")) length] > 2 * length);
}

/* A printer with a large serial number, which must not be lost. */
static void anIdentityThatFindsNoMemoryIsNotAMissingOne(void) {
  NSString* serial = repeated(@"0123456789abcdef", 1 << 20);
  NSDictionary* otherInfo = [NSDictionary dictionaryWithObject:serial forKey:@"SN"];
  int refused = 0;
  BOOL recorded = NO;
  for (unsigned int more = 4; more <= 1024 && !recorded; more += 4) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    limitAddressSpace(addressSpaceInUse() + ((rlim_t)more << 20));
    CHECK_RAISES_NOTHING(recorded = [recordClass writePrinterLogInfoWithContents:@"contents"
                                                                            name:@"App"
                                                                          option:1
                                                                       otherInfo:otherInfo]);
    limitAddressSpace(RLIM_INFINITY);
    CHECK((textAt(inSupportFolder(@"PLM/App_1.PLM")) != nil) == recorded);
    if (!recorded) ++refused;
    [pool release];
  }
  CHECK(recorded && refused > 5);
  CHECK_EQUAL(elementIn(textAt(inSupportFolder(@"PLM/App_1.PLM")), @"SN"), serial);
}

static void aLackOfMemoryLeavesTheEarlierDocument(void) {
  WENLOLIB* record = [[recordClass alloc] initWithContents:repeated(@"0123456789abcdef", 1 << 20)
                                                      name:@"App"];
  int refused = 0;
  BOOL created = [record WENLOLIBCreateXMLDocument];
  CHECK(created);
  created = NO;
  for (unsigned int more = 8; more <= 1024 && !created; more += 8) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSData* earlier = [NSData dataWithData:[record valueForKey:@"xmlDocment"]];
    limitAddressSpace(addressSpaceInUse() + ((rlim_t)more << 20));
    CHECK_RAISES_NOTHING(created = [record WENLOLIBCreateXMLDocument]);
    limitAddressSpace(RLIM_INFINITY);
    if (!created) {
      ++refused;
      CHECK([[record valueForKey:@"xmlDocment"] isEqual:earlier]);
    }
    [pool release];
  }
  CHECK(created && refused > 5);
  [record release];
}

@interface Writer : NSObject {
 @public
  int recorded;
  volatile BOOL done;
}
- (void)write:(id)unused;
@end

@implementation Writer
- (void)write:(id)unused {
  (void)unused;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  for (int i = 0; i < 25; ++i) {
    if ([recordClass writePrinterLogInfoWithContents:@"contents"
                                                name:@"App"
                                              option:1
                                           otherInfo:printer()]) {
      ++recorded;
    }
  }
  [pool release];
  done = YES;
}
@end

static void threadsRecordAtTheSameTimeAndLoseNothing(void) {
  enum { writers = 4 };
  Writer* all[writers];
  int recorded = 0;
  for (int i = 0; i < writers; ++i) {
    all[i] = [[[Writer alloc] init] autorelease];
    [NSThread detachNewThreadSelector:@selector(write:) toTarget:all[i] withObject:nil];
  }
  for (int i = 0; i < writers; ++i) {
    while (!all[i]->done) [NSThread sleepForTimeInterval:0.01];
    recorded += all[i]->recorded;
  }
  CHECK(recorded == 25 * writers);
  CHECK([namesIn(inSupportFolder(@"PLM")) count] == 25 * writers);
}

const Case lifetimeCases[] = {
    {"Lifetime.EveryEntryPointMakesOneRecordThatIsGoneWithThePool",
     everyEntryPointMakesOneRecordThatIsGoneWithThePool},
    {"Lifetime.AFailedWriteLeavesNoRecordEither", aFailedWriteLeavesNoRecordEither},
    {"Lifetime.ARefusalOrANullMakesNoRecord", aRefusalOrANullMakesNoRecord},
    {"Lifetime.EveryInitialiserCallsTheRecordsOwnInitOnce",
     everyInitialiserCallsTheRecordsOwnInitOnce},
    {"Lifetime.ARecordReleasesWhatItHolds", aRecordReleasesWhatItHolds},
    {"Lifetime.AHostsObjectsAreNotHeldOnto", aHostsObjectsAreNotHeldOnto},
    {"Lifetime.MemoryInUseStaysTheSame", memoryInUseStaysTheSame},
    {"Lifetime.WithoutMemoryTheAnswerIsNoAndNothingIsRaised",
     withoutMemoryTheAnswerIsNoAndNothingIsRaised},
    {"Lifetime.AnIdentityThatFindsNoMemoryIsNotAMissingOne",
     anIdentityThatFindsNoMemoryIsNotAMissingOne},
    {"Lifetime.ALackOfMemoryLeavesTheEarlierDocument", aLackOfMemoryLeavesTheEarlierDocument},
    {"Lifetime.ThreadsRecordAtTheSameTimeAndLoseNothing", threadsRecordAtTheSameTimeAndLoseNothing},
    {NULL, NULL}};
