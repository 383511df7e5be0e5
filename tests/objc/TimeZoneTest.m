/* Dates in Foundation's default zone for the classes, in the C library's for the C functions. */
#import "Host.h"

#include <dlfcn.h>
#include <limits.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include "Allocations.h"

/* A zone as a host might make one: says what it is told to, or raises. */
@interface OwnZone : NSTimeZone {
  NSInteger offset_;
  BOOL raises_;
}
+ (id)zoneWithOffset:(NSInteger)offset raising:(BOOL)raises;
@end

@implementation OwnZone
+ (id)zoneWithOffset:(NSInteger)offset raising:(BOOL)raises {
  OwnZone* zone = [[[self alloc] init] autorelease];
  zone->offset_ = offset;
  zone->raises_ = raises;
  return zone;
}
- (id)init {
  return self;
}
- (NSString*)name {
  return @"Own";
}
- (NSInteger)secondsFromGMTForDate:(NSDate*)date {
  (void)date;
  if (raises_) [NSException raise:NSGenericException format:@"on purpose"];
  return offset_;
}
@end

/* Foundation's default zone for one case: nil is the system's again. */
static void useZone(NSTimeZone* zone) {
  [NSTimeZone setDefaultTimeZone:zone];
}

static void useOffset(NSInteger seconds) {
  useZone([OwnZone zoneWithOffset:seconds raising:NO]);
}

static NSDate* dateAt(double seconds) {
  return [NSDate dateWithTimeIntervalSince1970:seconds];
}

static void datesAreShownInTheDefaultZone(void) {
  NSDate* date = dateAt(1710461107.9); /* 00:05:07 GMT */
  useOffset(9 * 3600);
  CHECK_EQUAL([toolkitClass calendarFormatString:date isNeedDay:0], @"2403");
  CHECK_EQUAL([toolkitClass calendarFormatString:date isNeedDay:1], @"240315");
  CHECK_EQUAL([toolkitClass calendarFormatString:date isNeedDay:2], @"2403");
  CHECK_EQUAL([toolkitClass calendarFormatString:date isNeedDay:255], @"2403");
  CHECK_EQUAL([toolkitClass calendarWithTimeZoneFormatString:date], @"2024-03-15T09:05:07+09:00");
  CHECK_EQUAL([toolkitClass dateFormatWithHourMinSec:date], @"2024/03/15 09:05:07");
  useOffset(-12600);
  CHECK_EQUAL([toolkitClass calendarWithTimeZoneFormatString:date], @"2024-03-14T20:35:07-03:30");
  useOffset(20700);
  CHECK_EQUAL([toolkitClass calendarWithTimeZoneFormatString:date], @"2024-03-15T05:50:07+05:45");
  useZone(nil);
}

static void theOffsetIsTheOneAtThatDate(void) {
  NSTimeZone* zone = [NSTimeZone timeZoneWithName:@"Europe/Berlin"];
  CHECK(zone != nil);
  useZone(zone);
  CHECK_EQUAL([toolkitClass calendarWithTimeZoneFormatString:dateAt(1704067200)],
              @"2024-01-01T01:00:00+01:00");
  CHECK_EQUAL([toolkitClass calendarWithTimeZoneFormatString:dateAt(1719792000)],
              @"2024-07-01T02:00:00+02:00");
  useZone(nil);
}

/* What the C library shows of a date in GMT. */
static NSString* plainlyShown(time_t seconds) {
  struct tm fields;
  gmtime_r(&seconds, &fields);
  return [NSString stringWithFormat:@"%04ld/%02d/%02d %02d:%02d:%02d", fields.tm_year + 1900L,
                                    fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                                    fields.tm_min, fields.tm_sec];
}

/* Leap days and turns of years in all their kinds, and steps that meet every month. */
static void everyDateIsWhatTheCalendarSays(void) {
  const time_t turns[] = {0,
                          -1,
                          951782399,
                          951868800,
                          4107542399,
                          4107542400,
                          -2203891201,
                          253402300799,
                          32503679999,
                          971890963199,
                          -62167219201,
                          -62167219200,
                          1e12,
                          7999999999999,
                          -7999999999999};
  useOffset(0);
  for (size_t i = 0; i < sizeof turns / sizeof *turns; ++i) {
    CHECK_EQUAL([toolkitClass dateFormatWithHourMinSec:dateAt((double)turns[i])],
                plainlyShown(turns[i]));
  }
  for (time_t at = -100000000000; at < 100000000000; at += 98765432) {
    NSString* expected = plainlyShown(at);
    if ([expected hasPrefix:@"-"]) continue; /* widths of negative years are the next case's */
    CHECK_EQUAL([toolkitClass dateFormatWithHourMinSec:dateAt((double)at)], expected);
  }
  CHECK_EQUAL([toolkitClass dateFormatWithHourMinSec:dateAt(-0.5)], @"1969/12/31 23:59:59");
  CHECK([toolkitClass dateFormatWithHourMinSec:dateAt(8e12)] == nil);
  CHECK([toolkitClass dateFormatWithHourMinSec:dateAt(-1e300)] == nil);
  useZone(nil);
}

static void theYearIsCountedFrom2000AndNeverCut(void) {
  useOffset(0);
  CHECK_EQUAL([toolkitClass calendarFormatString:dateAt(4102444800.) isNeedDay:0], @"10001");
  CHECK_EQUAL([toolkitClass calendarFormatString:dateAt(1231113600.) isNeedDay:1], @"090105");
  useZone(nil);
}

/* Half a year ahead, so that another month than the C library's stands in the file's name. */
static void recordsCarryTheDefaultZonesDate(void) {
  const NSInteger ahead = 183 * 86400 + 2700;
  useOffset(ahead);
  CHECK([recordClass writeAppInfoWithContents:@"contents" name:@"App" option:1]);
  CHECK([recordClass writePrinterLogInfoWithContents:@"c" name:@"App" option:1 otherInfo:nil]);
  NSString* month = [plainlyShown(time(NULL) + ahead) substringWithRange:NSMakeRange(2, 5)];
  month = [month stringByReplacingOccurrencesOfString:@"/" withString:@""];
  NSString* name = [NSString stringWithFormat:@"Quillmere_Log_App_%@.ALM", month];
  CHECK_EQUAL(namesIn(inSupportFolder(@"ALM")), [NSArray arrayWithObject:name]);
  CHECK([elementIn(textAt(monthFile(@"App")), @"Date") hasSuffix:@"+4392:45"]);
  CHECK([elementIn(textAt(inSupportFolder(@"PLM/App_1.PLM")), @"Date") hasSuffix:@"+4392:45"]);
  useZone(nil);
}

/* The same object, asked for its document alone. */
static void aRecordsOwnDocumentDoesSoToo(void) {
  WENLOLIB* record = [[[recordClass alloc] initWithContents:@"c" name:@"n"] autorelease];
  useOffset(-12600);
  CHECK([record WENLOLIBCreateXMLDocument]);
  NSString* text = [[[NSString alloc] initWithData:[record valueForKey:@"xmlDocment"]
                                          encoding:NSUTF8StringEncoding] autorelease];
  CHECK([elementIn(text, @"Date") hasSuffix:@"-03:30"]);
  useZone(nil);
}

typedef int (*WriteAppInfo)(const char*, const char*, uint32_t);

static void theBundlesCFunctionsKeepTheCLibrarysZone(void) {
  void* library = dlopen([[bundle executablePath] fileSystemRepresentation], RTLD_NOW);
  void* found = library == NULL ? NULL : dlsym(library, "WENLOLIB_writeAppInfoWithContents");
  WriteAppInfo write;
  CHECK(found != NULL);
  if (found == NULL) return;
  memcpy(&write, &found, sizeof write);
  setenv("TZ", "TEST-5:45", 1);
  tzset();
  useOffset(183 * 86400);
  CHECK(write("contents", "App", 1) == 1);
  useZone(nil);
  unsetenv("TZ");
  tzset();
  NSArray* names = namesIn(inSupportFolder(@"ALM"));
  CHECK([names count] == 1);
  NSString* document =
      textAt([inSupportFolder(@"ALM") stringByAppendingPathComponent:[names lastObject]]);
  CHECK([elementIn(document, @"Date") hasSuffix:@"+05:45"]);
  dlclose(library);
}

static void checkThatNothingIsShownOrWritten(void) {
  BOOL recorded = NO;
  id answers[3] = {nil, nil, nil};
  CHECK_RAISES_NOTHING(answers[0] = [toolkitClass calendarFormatString:dateAt(0) isNeedDay:1]);
  CHECK_RAISES_NOTHING(answers[1] = [toolkitClass calendarWithTimeZoneFormatString:dateAt(0)]);
  CHECK_RAISES_NOTHING(answers[2] = [toolkitClass dateFormatWithHourMinSec:dateAt(0)]);
  CHECK(answers[0] == nil && answers[1] == nil && answers[2] == nil);
  CHECK_RAISES_NOTHING(recorded |= [recordClass writeAppInfoWithContents:@"c"
                                                                    name:@"App"
                                                                  option:1]);
  CHECK_RAISES_NOTHING(recorded |= [recordClass writePrinterLogInfoWithContents:@"c"
                                                                           name:@"App"
                                                                         option:1
                                                                      otherInfo:nil]);
  CHECK(!recorded);
  CHECK([namesIn(inSupportFolder(@"ALM")) count] == 0);
  CHECK([namesIn(inSupportFolder(@"PLM")) count] == 0);
}

static void aZoneThatRaisesOrSaysNoOffsetFailsTheRecord(void) {
  useZone([OwnZone zoneWithOffset:0 raising:YES]);
  checkThatNothingIsShownOrWritten();
  useOffset(NSIntegerMax);
  checkThatNothingIsShownOrWritten();
  useOffset(NSIntegerMin);
  checkThatNothingIsShownOrWritten();
  useZone(nil);
  CHECK([recordClass writeAppInfoWithContents:@"c" name:@"App" option:1]);
}

/* As if Foundation had never been asked for its zone, which is this one: GNUstep keeps zones by
 * name, so that each case takes another. */
static NSDate* winter;

static void forgetTheSystemsZone(NSString* zone) {
  winter = dateAt(1704067200);
  NSDictionary* defaults = [NSDictionary dictionaryWithObject:zone forKey:@"Local Time Zone"];
  [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
  [NSTimeZone resetSystemTimeZone];
}

static void useTheSystemsZoneAgain(void) {
  [[NSUserDefaults standardUserDefaults] removeVolatileDomainForName:NSRegistrationDomain];
  [NSTimeZone resetSystemTimeZone];
}

static NSString* shown(void) {
  return [toolkitClass calendarWithTimeZoneFormatString:winter];
}

static void limitDescriptors(rlim_t most) {
  struct rlimit limit;
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = most;
  setrlimit(RLIMIT_NOFILE, &limit);
}

/* GNUstep takes a zone's file that it cannot open for GMT, and stays with that. */
static void noDescriptorAtTheFirstLookIsNoZone(void) {
  struct rlimit before;
  const int next = dup(0);
  NSString* withoutOne = @"";
  getrlimit(RLIMIT_NOFILE, &before);
  forgetTheSystemsZone(@"Asia/Tokyo");
  close(next);
  limitDescriptors((rlim_t)next);
  CHECK_RAISES_NOTHING(withoutOne = shown());
  limitDescriptors(before.rlim_cur);
  CHECK_EQUAL(withoutOne, nil);
  CHECK_EQUAL(shown(), @"2024-01-01T09:00:00+09:00");
  useTheSystemsZoneAgain();
}

/* The one that is tried is enough. */
static void oneDescriptorAtTheFirstLookIsEnough(void) {
  struct rlimit before;
  const int next = dup(0);
  getrlimit(RLIMIT_NOFILE, &before);
  forgetTheSystemsZone(@"Asia/Kathmandu");
  close(next);
  limitDescriptors((rlim_t)next + 1);
  CHECK_EQUAL(shown(), @"2024-01-01T05:45:00+05:45");
  limitDescriptors(before.rlim_cur);
  useTheSystemsZoneAgain();
}

/* From then on without any: Foundation could not even raise. */
static void noMemoryAtTheFirstLookIsNoZone(void) {
  NSString* withoutMemory = @"";
  forgetTheSystemsZone(@"Asia/Dubai");
  CHECK_RAISES_NOTHING(shown()); /* the runtime has its tables, GNUstep the zone's name */
  [NSTimeZone resetSystemTimeZone];
  failAllocations(1, LONG_MAX);
  withoutMemory = shown();
  CHECK(endFailingAllocations());
  CHECK_EQUAL(withoutMemory, nil);
  CHECK_EQUAL(shown(), @"2024-01-01T04:00:00+04:00");
  useTheSystemsZoneAgain();
}

enum { fine, broken, done };

/* What becomes of the zone after a first look in which this allocation failed, and which said so.
 */
static int afterALookWithout(long number) {
  NSString* answer;
  alarm(60); /* whoever waits for GNUstep's lock waits for good */
  forgetTheSystemsZone(@"America/Caracas");
  failAllocations(number, 1);
  answer = shown();
  if (!endFailingAllocations()) return done;
  return answer != nil || [shown() hasSuffix:@"-04:00"] ? fine : broken;
}

/* Each in a process of its own: GNUstep keeps a lock when it is broken off. */
static void aFirstLookThatWasBrokenOffIsNotTheLast(void) {
  int status = fine;
  long number;
  forgetTheSystemsZone(@"Asia/Karachi");
  CHECK_EQUAL(shown(), @"2024-01-01T05:00:00+05:00"); /* the runtime has its tables */
  for (number = 1; status == fine && number < 10000; ++number) {
    const pid_t child = fork();
    if (child == 0) _exit(afterALookWithout(number));
    CHECK(waitpid(child, &status, 0) == child);
    status = WIFEXITED(status) ? WEXITSTATUS(status) : broken;
  }
  CHECK(status == done && number > 20);
  useTheSystemsZoneAgain();
}

const Case timeZoneCases[] = {
    {"TimeZone.DatesAreShownInTheDefaultZone", datesAreShownInTheDefaultZone},
    {"TimeZone.TheOffsetIsTheOneAtThatDate", theOffsetIsTheOneAtThatDate},
    {"TimeZone.EveryDateIsWhatTheCalendarSays", everyDateIsWhatTheCalendarSays},
    {"TimeZone.TheYearIsCountedFrom2000AndNeverCut", theYearIsCountedFrom2000AndNeverCut},
    {"TimeZone.RecordsCarryTheDefaultZonesDate", recordsCarryTheDefaultZonesDate},
    {"TimeZone.ARecordsOwnDocumentDoesSoToo", aRecordsOwnDocumentDoesSoToo},
    {"TimeZone.TheBundlesCFunctionsKeepTheCLibrarysZone", theBundlesCFunctionsKeepTheCLibrarysZone},
    {"TimeZone.AZoneThatRaisesOrSaysNoOffsetFailsTheRecord",
     aZoneThatRaisesOrSaysNoOffsetFailsTheRecord},
    {"TimeZone.NoDescriptorAtTheFirstLookIsNoZone", noDescriptorAtTheFirstLookIsNoZone},
    {"TimeZone.OneDescriptorAtTheFirstLookIsEnough", oneDescriptorAtTheFirstLookIsEnough},
    {"TimeZone.NoMemoryAtTheFirstLookIsNoZone", noMemoryAtTheFirstLookIsNoZone},
    {"TimeZone.AFirstLookThatWasBrokenOffIsNotTheLast", aFirstLookThatWasBrokenOffIsNotTheLast},
    {NULL, NULL}};
