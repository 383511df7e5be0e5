/* Whatever a host passes, it gets an answer and no exception, and nothing wrong is written. */
#include <malloc.h>

#import "Host.h"
#import "HostileObjects.h"

static NSUInteger written(void) {
  return [namesIn(inSupportFolder(@"ALM")) count] + [namesIn(inSupportFolder(@"PLM")) count];
}

static BOOL printerLog(id contents, id name, id otherInfo) {
  return [recordClass writePrinterLogInfoWithContents:contents
                                                 name:name
                                               option:1
                                            otherInfo:otherInfo];
}

static void whatIsNotTextIsRefusedAsContentsAndName(void) {
  NSArray* objects = notTexts();
  CHECK([objects count] > 20);
  for (NSUInteger i = 0; i < [objects count]; ++i) {
    id object = [objects objectAtIndex:i];
    BOOL answer = NO;
    CHECK_RAISES_NOTHING(answer |= [recordClass writeAppInfoWithContents:object
                                                                    name:@"App"
                                                                  option:1]);
    CHECK_RAISES_NOTHING(answer |= [recordClass writeAppInfoWithContents:@"c"
                                                                    name:object
                                                                  option:1]);
    CHECK_RAISES_NOTHING(answer |= printerLog(object, @"App", nil));
    CHECK_RAISES_NOTHING(answer |= printerLog(@"c", object, nil));
    CHECK(answer == NO);
  }
  CHECK(written() == 0);
}

static void whatIsNotTextClearsARecordsText(void) {
  NSArray* objects = notTexts();
  for (NSUInteger i = 0; i < [objects count]; ++i) {
    WENLOLIB* record = [[[recordClass alloc] initWithContents:@"c" name:@"n"] autorelease];
    CHECK_RAISES_NOTHING([record setContents:[objects objectAtIndex:i]]);
    CHECK_RAISES_NOTHING([record setApplicationName:[objects objectAtIndex:i]]);
    CHECK([record contents] == nil);
    CHECK([record applicationName] == nil);
  }
}

static void whatIsNotTextIsNullToTheToolkit(void) {
  NSArray* objects = notTexts();
  for (NSUInteger i = 0; i < [objects count]; ++i) {
    id object = [objects objectAtIndex:i];
    id answer = nil;
    CHECK_RAISES_NOTHING(CHECK([toolkitClass convertVersionStrToNum:object] == -1));
    CHECK_RAISES_NOTHING(answer = [toolkitClass convertVersionStrToBiasStr:object]);
    CHECK(answer == nil);
    CHECK_RAISES_NOTHING(answer = [toolkitClass convertBiasVersionStrToVerStr:object]);
    CHECK(answer == nil);
    CHECK_RAISES_NOTHING(CHECK([toolkitClass createDir:object] == NO));
    CHECK_RAISES_NOTHING(answer = [toolkitClass replaceString:object before:@"a" after:@"b"]);
    CHECK(answer == nil);
    CHECK_RAISES_NOTHING(answer = [toolkitClass convertStrToHeaderStr:object]);
    CHECK(answer == nil);
    CHECK_RAISES_NOTHING(answer = [toolkitClass replaceString:@"abc" before:object after:@"b"]);
    CHECK_EQUAL(answer, @"abc");
    CHECK_RAISES_NOTHING(answer = [toolkitClass replaceString:@"abc" before:@"b" after:object]);
    CHECK_EQUAL(answer, @"ac");
    CHECK_RAISES_NOTHING(CHECK([recordClass createTask:object args:nil wait:1] == 0));
  }
}

static void whatIsNotADateIsNull(void) {
  NSArray* objects = notDates();
  for (NSUInteger i = 0; i < [objects count]; ++i) {
    id object = [objects objectAtIndex:i];
    id answer = nil;
    CHECK_RAISES_NOTHING(answer = [toolkitClass calendarFormatString:object isNeedDay:1]);
    CHECK(answer == nil);
    CHECK_RAISES_NOTHING(answer = [toolkitClass calendarWithTimeZoneFormatString:object]);
    CHECK(answer == nil);
    CHECK_RAISES_NOTHING(answer = [toolkitClass dateFormatWithHourMinSec:object]);
    CHECK(answer == nil);
  }
}

static void whatIsNotAnArrayOfTextsStartsNoProgram(void) {
  NSArray* objects = notArrays();
  NSString* trace = inSupportFolder(@"trace");
  for (NSUInteger i = 0; i < [objects count]; ++i) {
    id arguments = [objects objectAtIndex:i];
    CHECK_RAISES_NOTHING(CHECK([recordClass createTask:@"/bin/false" args:arguments wait:1] == 0));
  }
  objects = notTexts();
  for (NSUInteger i = 0; i < [objects count]; ++i) {
    NSArray* arguments = [NSArray arrayWithObjects:trace, [objects objectAtIndex:i], nil];
    CHECK_RAISES_NOTHING(CHECK([recordClass createTask:@"/bin/touch" args:arguments wait:1] == 0));
  }
  CHECK([namesIn(inSupportFolder(@"")) count] == 3);
}

static void whatIsNotADictionaryGivesNoIdentity(void) {
  NSArray* objects = notDictionaries();
  for (NSUInteger i = 0; i < [objects count]; ++i) {
    BOOL answer = NO;
    CHECK_RAISES_NOTHING(answer = printerLog(@"c", @"App", [objects objectAtIndex:i]));
    CHECK(answer == YES);
    NSString* path = [NSString stringWithFormat:@"PLM/App_%d.PLM", (int)i + 1];
    CHECK_EQUAL(elementIn(textAt(inSupportFolder(path)), @"SN"), @"");
  }
}

static void anEntryThatIsNotTextLeavesTheOthers(void) {
  NSArray* objects = notTexts();
  for (NSUInteger i = 0; i < [objects count]; ++i) {
    WENLOLIB* record = [[[recordClass alloc] init] autorelease];
    NSDictionary* printer =
        [NSDictionary dictionaryWithObjectsAndKeys:@"d", @"DeviceID", [objects objectAtIndex:i],
                                                   @"SN", @"r", @"ROMVER", nil];
    CHECK_RAISES_NOTHING([record serOtherInfo:printer]);
    CHECK_EQUAL([record getDevId], @"d");
    CHECK_EQUAL([record getSerialNum], @"");
    CHECK_EQUAL([record getRomVersion], @"r");
  }
}

static void aDictionaryThatLiesGivesWhatItHas(void) {
  WENLOLIB* record = [[[recordClass alloc] init] autorelease];
  CHECK_RAISES_NOTHING([record serOtherInfo:[[[LyingDictionary alloc] init] autorelease]]);
  CHECK_EQUAL([record getSerialNum], @"s");
}

static void aStringThatSaysLessGivesLess(void) {
  WENLOLIB* record = [[[recordClass alloc] init] autorelease];
  [record setContents:[LyingString stringOfLength:2]];
  CHECK_EQUAL([record contents], @"ab");
  [record setContents:[LyingString stringOfLength:0]];
  CHECK_EQUAL([record contents], @"");
}

/* The characters that it does not fill in hold nothing from the host's memory. */
static void aStringThatFillsLessThanItsLengthGivesNothingElse(void) {
  WENLOLIB* record = [[[recordClass alloc] init] autorelease];
  NSString* contents;
  mallopt(M_PERTURB, 0x5A);
  [record setContents:[[[SparingString alloc] init] autorelease]];
  mallopt(M_PERTURB, 0);
  contents = [record contents];
  CHECK([contents length] == 1000 && [contents hasPrefix:@"abc"]);
  for (NSUInteger i = 3; i < [contents length]; ++i) CHECK([contents characterAtIndex:i] == 0);
}

static void containersThatHoldThemselvesComeToAnEnd(void) {
  NSMutableArray* array = [NSMutableArray array];
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionaryWithObject:@"s" forKey:@"SN"];
  [array addObject:array];
  [array addObject:array];
  [dictionary setObject:dictionary forKey:@"self"];
  [dictionary setObject:array forKey:@"array"];
  [dictionary setObject:@"d" forKey:@"DeviceID"];
  CHECK_RAISES_NOTHING(CHECK(printerLog(@"c", @"App", dictionary)));
  NSString* document = textAt(inSupportFolder(@"PLM/App_1.PLM"));
  CHECK_EQUAL(elementIn(document, @"SN"), @"s");
  CHECK_EQUAL(elementIn(document, @"DeviceID"), @"d");
  [array removeAllObjects];
  [dictionary removeAllObjects];
}

static void deepNestingIsTakenUpToABound(void) {
  id deep = @"bottom";
  for (int i = 0; i < 10000; ++i) deep = [NSArray arrayWithObject:deep];
  NSDictionary* printer =
      [NSDictionary dictionaryWithObjectsAndKeys:deep, @"deep", @"s", @"SN", nil];
  CHECK_RAISES_NOTHING(CHECK(printerLog(@"c", @"App", printer)));
  CHECK_EQUAL(elementIn(textAt(inSupportFolder(@"PLM/App_1.PLM")), @"SN"), @"s");
}

static void mutableObjectsMayChangeAfterwards(void) {
  NSMutableString* contents = [NSMutableString stringWithString:repeated(@"c", 1000)];
  NSMutableString* serial = [NSMutableString stringWithString:@"serial"];
  NSMutableArray* list = [NSMutableArray arrayWithObject:serial];
  NSMutableDictionary* printer =
      [NSMutableDictionary dictionaryWithObjectsAndKeys:serial, @"SN", list, @"list", nil];
  WENLOLIB* record = [[[recordClass alloc] initWithContents:contents name:contents] autorelease];
  [record serOtherInfo:printer];
  [record setApplicationName:@"App"];
  [contents setString:@""];
  [serial setString:@"</SN>"];
  [list addObject:list];
  [printer setObject:printer forKey:@"SN"];
  CHECK([record writeAppInfo]);
  CHECK_EQUAL(elementIn(textAt(inSupportFolder(@"PLM/App_1.PLM")), @"SN"), @"serial");
  [list removeAllObjects];
  [printer removeAllObjects];
}

const Case hostileCases[] = {
    {"Hostile.WhatIsNotTextIsRefusedAsContentsAndName", whatIsNotTextIsRefusedAsContentsAndName},
    {"Hostile.WhatIsNotTextClearsARecordsText", whatIsNotTextClearsARecordsText},
    {"Hostile.WhatIsNotTextIsNullToTheToolkit", whatIsNotTextIsNullToTheToolkit},
    {"Hostile.WhatIsNotADateIsNull", whatIsNotADateIsNull},
    {"Hostile.WhatIsNotAnArrayOfTextsStartsNoProgram", whatIsNotAnArrayOfTextsStartsNoProgram},
    {"Hostile.WhatIsNotADictionaryGivesNoIdentity", whatIsNotADictionaryGivesNoIdentity},
    {"Hostile.AnEntryThatIsNotTextLeavesTheOthers", anEntryThatIsNotTextLeavesTheOthers},
    {"Hostile.ADictionaryThatLiesGivesWhatItHas", aDictionaryThatLiesGivesWhatItHas},
    {"Hostile.AStringThatSaysLessGivesLess", aStringThatSaysLessGivesLess},
    {"Hostile.AStringThatFillsLessThanItsLengthGivesNothingElse",
     aStringThatFillsLessThanItsLengthGivesNothingElse},
    {"Hostile.ContainersThatHoldThemselvesComeToAnEnd", containersThatHoldThemselvesComeToAnEnd},
    {"Hostile.DeepNestingIsTakenUpToABound", deepNestingIsTakenUpToABound},
    {"Hostile.MutableObjectsMayChangeAfterwards", mutableObjectsMayChangeAfterwards},
    {NULL, NULL}};
