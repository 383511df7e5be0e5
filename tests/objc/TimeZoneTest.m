/* The classes show dates in Foundation's default zone, the C functions in the C library's zone. */
#import "Host.h"

#include <dlfcn.h>
#include <limits.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include "Allocations.h"

/* A zone that a host might make: it gives the offset that the test sets, or raises. */
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

/* Sets Foundation's default zone for a case; nil sets the system's again. */
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

/* How the C library shows a date in GMT. */
static NSString* plainlyShown(time_t seconds) {
  struct tm fields;
  gmtime_r(&seconds, &fields);
  return [NSString stringWithFormat:@"%04ld/%02d/%02d %02d:%02d:%02d", fields.tm_year + 1900L,
                                    fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                                    fields.tm_min, fields.tm_sec];
}

/* All kinds of leap days and year ends, and steps that reach every month. */
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
    if ([expected hasPrefix:@"-"]) continue; /* negative years have other widths */
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

/* Half a year ahead, so that the month in the file's name is not the C library's. */
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

/* A record that a host makes itself, asked for its document alone. */
static void aRecordsOwnDocumentCarriesItToo(void) {
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

/* Makes Foundation forget its zone and look at this one next. GNUstep keeps zones by name, so each
 * case takes another zone. */
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

/* If GNUstep cannot open a zone's file, it takes GMT, and keeps it. */
static void withoutADescriptorAtTheFirstLookThereIsNoZone(void) {
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

/* The library checks that a descriptor is free, and needs only that one. */
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

/* Every allocation fails from then on: Foundation could not even raise. */
static void withoutMemoryAtTheFirstLookThereIsNoZone(void) {
  NSString* withoutMemory = @"";
  forgetTheSystemsZone(@"Asia/Dubai");
  CHECK_RAISES_NOTHING(shown()); /* the runtime makes its tables, GNUstep the zone's name */
  [NSTimeZone resetSystemTimeZone];
  failAllocations(1, LONG_MAX);
  withoutMemory = shown();
  CHECK(endFailingAllocations());
  CHECK_EQUAL(withoutMemory, nil);
  CHECK_EQUAL(shown(), @"2024-01-01T04:00:00+04:00");
  useTheSystemsZoneAgain();
}

enum { fine, broken, done };

/* What the second look at the zone gives after this allocation failed in the first one. */
static int afterALookWithout(long number) {
  NSString* answer;
  alarm(60); /* whoever waits for GNUstep's lock waits for ever */
  forgetTheSystemsZone(@"America/Caracas");
  failAllocations(number, 1);
  answer = shown();
  if (!endFailingAllocations()) return done;
  return answer != nil || [shown() hasSuffix:@"-04:00"] ? fine : broken;
}

/* Each in a process of its own, since GNUstep keeps a lock when an exception interrupts it. */
static void aFirstLookThatFailedIsNotTheLast(void) {
  int status = fine;
  long number;
  forgetTheSystemsZone(@"Asia/Karachi");
  CHECK_EQUAL(shown(), @"2024-01-01T05:00:00+05:00"); /* the runtime makes its tables */
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
    {"TimeZone.ARecordsOwnDocumentCarriesItToo", aRecordsOwnDocumentCarriesItToo},
    {"TimeZone.TheBundlesCFunctionsKeepTheCLibrarysZone", theBundlesCFunctionsKeepTheCLibrarysZone},
    {"TimeZone.AZoneThatRaisesOrSaysNoOffsetFailsTheRecord",
     aZoneThatRaisesOrSaysNoOffsetFailsTheRecord},
    {"TimeZone.WithoutADescriptorAtTheFirstLookThereIsNoZone",
     withoutADescriptorAtTheFirstLookThereIsNoZone},
    {"TimeZone.OneDescriptorAtTheFirstLookIsEnough", oneDescriptorAtTheFirstLookIsEnough},
    {"TimeZone.WithoutMemoryAtTheFirstLookThereIsNoZone", withoutMemoryAtTheFirstLookThereIsNoZone},
    {"TimeZone.AFirstLookThatFailedIsNotTheLast", aFirstLookThatFailedIsNotTheLast},
    {NULL, NULL}};
