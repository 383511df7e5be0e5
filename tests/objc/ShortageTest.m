/* Every single allocation fails once: nothing is raised, and no answer is wrong. */
#import "Host.h"

#include <limits.h>
#include <stdio.h>
#include <unistd.h>

#include "Allocations.h"

enum { mostAllocations = 100000 };

static NSDictionary* printer(void) {
  return [NSDictionary dictionaryWithObjectsAndKeys:@"d", @"DeviceID", @"serial", @"SN", nil];
}

static void removeFile(NSString* path) {
  unlink([path fileSystemRepresentation]);
}

/* A pool like a new thread's: after 32 objects it takes memory for more. If `full`, it already
 * holds 32. */
static NSAutoreleasePool* newestPool(BOOL full) {
  [NSAutoreleasePool freeCache];
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  for (int i = 0; full && i < 32; ++i) [[[NSObject alloc] init] autorelease];
  return pool;
}

/* Runs `operation` with its first allocation failing, then with its second, and so on, until it
 * ends without a failure. `check` checks the result each time. */
static void withEachAllocationFailing(void (*operation)(void), void (*check)(void), BOOL full) {
  long number = 0;
  BOOL failed = YES;
  operation(); /* lets Foundation make what it makes at the first use of a class */
  for (check(); failed && number < mostAllocations; check()) {
    NSAutoreleasePool* pool = newestPool(full);
    failAllocations(++number, 1);
    CHECK_RAISES_NOTHING(operation());
    failed = endFailingAllocations();
    [pool release];
  }
  CHECK(!failed);
}

static void withEveryShortage(void (*operation)(void), void (*check)(void)) {
  withEachAllocationFailing(operation, check, NO);
  withEachAllocationFailing(operation, check, YES);
}

static BOOL recorded;

static void recordApplicationUsage(void) {
  recorded = NO;
  recorded = [recordClass writeAppInfoWithContents:@"contents" name:@"App" option:1];
}

static void checkApplicationUsage(void) {
  NSString* document = textAt(monthFile(@"App"));
  CHECK((document != nil) == recorded);
  if (recorded) CHECK([elementIn(document, @"Date") length] == 25);
  removeFile(monthFile(@"App"));
}

static void applicationUsage(void) {
  withEveryShortage(recordApplicationUsage, checkApplicationUsage);
}

static NSDictionary* identity;

static void recordPrinterLog(void) {
  recorded = NO;
  recorded = [recordClass writePrinterLogInfoWithContents:@"contents"
                                                     name:@"App"
                                                   option:1
                                                otherInfo:identity];
}

static void checkPrinterLog(void) {
  NSString* path = inSupportFolder(@"PLM/App_1.PLM");
  NSString* document = textAt(path);
  CHECK((document != nil) == recorded);
  if (recorded) CHECK_EQUAL(elementIn(document, @"SN"), @"serial");
  if (recorded) CHECK_EQUAL(elementIn(document, @"DeviceID"), @"d");
  removeFile(path);
}

static void printerLogs(void) {
  identity = printer();
  withEveryShortage(recordPrinterLog, checkPrinterLog);
}

/* Makes a new record and writes it, step by step. */
static void writeARecord(void) {
  WENLOLIB* record = nil;
  recorded = NO;
  @try {
    record = [recordClass alloc];
  } @catch (NSException* raised) {
    return; /* Foundation's own answer to the host */
  }
  record = [record initWithContents:@"other" name:@"App" option:1];
  [record setContents:@"contents"];
  [record setApplicationName:@"App"];
  [record serOtherInfo:identity];
  [record setFileType:1];
  recorded = [record WENLOLIBCreateXMLDocument] && [record writeAppInfo];
  [record release];
}

static void recordsOfTheHostsOwn(void) {
  identity = printer();
  withEveryShortage(writeARecord, checkPrinterLog);
}

/* The number of the question asked below, and the record that is asked. */
static int question;
static WENLOLIB* asked;
static id answer;

static id objectAnswered(void) {
  NSDate* date = identity == nil ? nil : [identity objectForKey:@"date"];
  switch (question) {
    case 0:
      return [asked contents];
    case 1:
      return [asked applicationName];
    case 2:
      return [asked getCliantVersion];
    case 3:
      return [asked getCliantVersionforALM];
    case 4:
      return [asked getOSVersion];
    case 5:
      return [asked getLocale];
    case 6:
      return [asked getWENLOLIBId];
    case 7:
      return [asked getDevId];
    case 8:
      return [asked getSerialNum];
    case 9:
      return [asked getRomVersion];
    case 10:
      return [toolkitClass systemVersion];
    case 11:
      return [toolkitClass osVersion];
    case 12:
      return [toolkitClass groupIdentifier];
    case 13:
      return [toolkitClass groupContainerDirPath];
    case 14:
      return [toolkitClass prefDirPath];
    case 15:
      return [toolkitClass cacheDirPath];
    case 16:
      return [toolkitClass pliDirPath:1];
    case 17:
      return [toolkitClass almDirPath];
    case 18:
      return [toolkitClass WENLOLIBDirPath:1];
    case 19:
      return [toolkitClass printerListPath];
    case 20:
      return [toolkitClass surveyInfoDictionary];
    case 21:
      return [toolkitClass calendarFormatString:date isNeedDay:1];
    case 22:
      return [toolkitClass calendarWithTimeZoneFormatString:date];
    case 23:
      return [toolkitClass dateFormatWithHourMinSec:date];
    case 24:
      return [toolkitClass replaceString:@"a/b" before:@"/" after:@"-"];
    case 25:
      return [toolkitClass replaceString:@"a/b" before:@"/" after:@"/"];
    case 26:
      return [toolkitClass convertVersionNumToStr:30105];
    case 27:
      return [toolkitClass convertVersionNumToBiasStr:30105];
    case 28:
      return [toolkitClass convertVersionStrToBiasStr:@"3.1.5"];
    case 29:
      return [toolkitClass convertBiasVersionStrToVerStr:@"1003.1"];
    case 30:
      return [toolkitClass convertStrToHeaderStr:@"<b>"];
    default:
      return nil;
  }
}

enum { objectQuestions = 31 };

static void askForAnObject(void) {
  answer = nil;
  answer = [objectAnswered() retain];
}

static id expected;

static void checkTheObject(void) {
  const BOOL failing = answer == nil || [answer isEqual:@""];
  if (!failing && ![answer isEqual:expected]) {
    CHECK_EQUAL(answer, expected);
    printf("  question %d\n", question);
  }
  [answer release];
  answer = nil;
}

static void prepareQuestions(void) {
  NSString* path = [toolkitClass surveyInfoPath];
  NSDictionary* survey = [NSDictionary
      dictionaryWithObjectsAndKeys:printer(), @"k", [NSArray arrayWithObject:@"x"], @"list", nil];
  identity = [NSDictionary dictionaryWithObjectsAndKeys:@"d", @"DeviceID", @"serial", @"SN", @"r",
                                                        @"ROMVER", [NSDate date], @"date", nil];
  asked = [[[recordClass alloc] initWithContents:@"contents" name:@"App" option:1] autorelease];
  [asked serOtherInfo:identity];
  [toolkitClass createDir:[path stringByDeletingLastPathComponent]];
  writePropertyList(survey, path);
}

static void objectsAreTheRightOnesOrNone(void) {
  prepareQuestions();
  for (question = 0; question < objectQuestions; ++question) {
    expected = [objectAnswered() copy];
    CHECK(expected != nil);
    withEveryShortage(askForAnObject, checkTheObject);
    [expected release];
  }
}

static long number;
static NSString* folder;
static NSArray* arguments;

static long numberAnswered(void) {
  switch (question) {
    case 0:
      return [toolkitClass systemVersionNum];
    case 1:
      return [toolkitClass systemBugFixVersion];
    case 2:
      return [toolkitClass convertVersionStrToNum:@"3.1.5"];
    case 3:
      return [toolkitClass createDir:folder];
    case 4:
      return [recordClass isSupported:1];
    case 5:
      return [recordClass isSupportedPlm:1];
    case 6:
      return [recordClass createTask:@"/bin/false" args:arguments wait:1];
    case 7:
      return [asked isNewTagTypePrinter];
    default:
      return [toolkitClass getandcompLocalSupportVersion:30100];
  }
}

static void askForANumber(void) {
  number = -1;
  number = numberAnswered();
}

static long expectedNumber;

static void checkTheNumber(void) {
  CHECK(number == -1 || number == 0 || number == expectedNumber);
}

static void numbersAreTheRightOnesOrFailing(void) {
  prepareQuestions();
  folder = inSupportFolder(@"made");
  arguments = [NSArray arrayWithObject:@"x"];
  for (question = 0; question < 9; ++question) {
    expectedNumber = numberAnswered();
    withEveryShortage(askForANumber, checkTheNumber);
  }
}

/* Not even an exception of Foundation's could be made. */
static void nothingIsAnsweredWithoutAnyMemory(void) {
  prepareQuestions();
  for (int i = 0; i < 2 * objectQuestions; ++i) {
    question = i % objectQuestions;
    askForAnObject();
    [answer release];
    NSAutoreleasePool* pool = newestPool(i >= objectQuestions);
    failAllocations(1, LONG_MAX);
    askForAnObject();
    (void)endFailingAllocations();
    CHECK(answer == nil || [answer isEqual:@""]);
    [pool release];
  }
}

const Case shortageCases[] = {
    {"Shortage.ApplicationUsageIsRecordedOrNot", applicationUsage},
    {"Shortage.PrinterLogsAreRecordedWithTheirIdentityOrNot", printerLogs},
    {"Shortage.RecordsOfTheHostsOwnAreWrittenWithTheirIdentityOrNot", recordsOfTheHostsOwn},
    {"Shortage.ObjectsAreTheRightOnesOrNone", objectsAreTheRightOnesOrNone},
    {"Shortage.NothingIsAnsweredWithoutAnyMemory", nothingIsAnsweredWithoutAnyMemory},
    {"Shortage.NumbersAreTheRightOnesOrFailing", numbersAreTheRightOnesOrFailing},
    {NULL, NULL}};
