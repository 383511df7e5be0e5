/* On a thread with little stack, deeply nested values work: nothing walks them by recursion. */
#import "Host.h"

#include <pthread.h>
#include <string.h>

enum { stackSize = 32 << 10, levels = 500 };

static id nested(void) {
  id value = @"bottom";
  for (int i = 0; i < levels; ++i) value = [NSArray arrayWithObject:value];
  return value;
}

/* How many arrays the text is nested in. */
static int depthOf(id value) {
  int depth = 0;
  for (; [value isKindOfClass:[NSArray class]]; ++depth) value = [value lastObject];
  return [value isEqual:@"bottom"] ? depth : -1;
}

static id given, answered;

static void* run(void* operation) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  void (*ask)(void);
  memcpy(&ask, &operation, sizeof ask);
  ask();
  [pool release];
  return NULL;
}

/* Asks for the zone first, since Foundation's first look at it takes much stack. */
static void onASmallStack(void (*ask)(void)) {
  void* operation;
  pthread_attr_t attributes;
  pthread_t thread;
  memcpy(&operation, &ask, sizeof ask);
  [toolkitClass calendarFormatString:[NSDate date] isNeedDay:0];
  answered = nil;
  pthread_attr_init(&attributes);
  CHECK(pthread_attr_setstacksize(&attributes, stackSize) == 0);
  CHECK(pthread_create(&thread, &attributes, run, operation) == 0);
  pthread_join(thread, NULL);
  pthread_attr_destroy(&attributes);
}

static void readAFile(void) {
  answered = [[toolkitClass surveyInfoDictionary] retain];
}

static void aDeeplyNestedFileIsHandedOut(void) {
  NSString* path = [toolkitClass surveyInfoPath];
  [toolkitClass createDir:[path stringByDeletingLastPathComponent]];
  writePropertyList([NSDictionary dictionaryWithObject:nested() forKey:@"deep"], path);
  onASmallStack(readAFile);
  CHECK(depthOf([answered objectForKey:@"deep"]) == levels);
  [answered release];
}

static void record(void) {
  const BOOL recorded = [recordClass writePrinterLogInfoWithContents:@"contents"
                                                                name:@"App"
                                                              option:1
                                                           otherInfo:given];
  answered = recorded ? @"recorded" : nil;
}

static void aDeeplyNestedIdentityIsRecorded(void) {
  given = [NSDictionary dictionaryWithObjectsAndKeys:nested(), @"deep", @"s", @"SN", nil];
  onASmallStack(record);
  CHECK_EQUAL(answered, @"recorded");
  CHECK_EQUAL(elementIn(textAt(inSupportFolder(@"PLM/App_1.PLM")), @"SN"), @"s");
}

static void keepAnIdentity(void) {
  answered = [[recordClass alloc] init];
  [answered serOtherInfo:given];
}

static void aDeeplyNestedIdentityIsKeptWhole(void) {
  given = [NSDictionary dictionaryWithObject:nested() forKey:@"deep"];
  onASmallStack(keepAnIdentity);
  CHECK(depthOf([[answered valueForKey:@"otherInfoDict"] objectForKey:@"deep"]) == levels);
  [answered release];
}

const Case stackCases[] = {
    {"Stack.ADeeplyNestedFileIsHandedOut", aDeeplyNestedFileIsHandedOut},
    {"Stack.ADeeplyNestedIdentityIsRecorded", aDeeplyNestedIdentityIsRecorded},
    {"Stack.ADeeplyNestedIdentityIsKeptWhole", aDeeplyNestedIdentityIsKeptWhole},
    {NULL, NULL}};
