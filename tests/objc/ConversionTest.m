/* Texts and property lists on their way through the library. */
#import "Host.h"
#import "HostileObjects.h"

#include <limits.h>

static NSString* throughRecord(NSString* text) {
  return [[[[recordClass alloc] initWithContents:text] autorelease] contents];
}

static NSString* textOf(const unichar* units, NSUInteger count) {
  return [NSString stringWithCharacters:units length:count];
}

static void everyTextComesBackAsItWas(void) {
  const unichar units[] = {0,      'a',    0x7F,   0x80,   0x7FF,  0x800,  0xD7FF, 0xE000, 0xFEFF,
                           0xFFFD, 0xFFFF, 0xD800, 0xDC00, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF, 0};
  const unichar marked[] = {0xFEFF, 'x'};
  CHECK_EQUAL(throughRecord(textOf(units, 18)), textOf(units, 18));
  CHECK_EQUAL(throughRecord(textOf(marked, 2)), textOf(marked, 2));
  CHECK_EQUAL(throughRecord(@"e\u0301 \u00E9 日本語 𝄞"), @"e\u0301 \u00E9 日本語 𝄞");
  for (unsigned int unit = 0; unit < 0x10000; unit += 251) {
    const unichar one = (unichar)unit;
    if (one >= 0xD800 && one < 0xE000) continue;
    NSString* text = textOf(&one, 1);
    CHECK([[throughRecord(text) description] length] == 1);
    CHECK([throughRecord(text) characterAtIndex:0] == one);
  }
}

static void everyTextGoesThroughTheCoreAsItIs(void) {
  const unichar units[] = {0xFEFF, 'a', 0, 0x7FF, 0x800, 0xFFFF, 0xD800, 0xDC00, 0xDBFF, 0xDFFF};
  NSString* text = textOf(units, 10);
  CHECK_EQUAL([toolkitClass replaceString:text before:@"b" after:@"c"], text);
  WENLOLIB* record = [[[recordClass alloc] init] autorelease];
  [record serOtherInfo:[NSDictionary dictionaryWithObject:text forKey:@"SN"]];
  CHECK_EQUAL([record getSerialNum], text);
}

static void halfASurrogatePairIsNotText(void) {
  const unichar table[][2] = {
      {0xD800, 'a'}, {'a', 0xD800}, {0xDC00, 'a'}, {0xDC00, 0xD800}, {0xD800, 0xD800}};
  for (int i = 0; i < 5; ++i) {
    NSString* text = [UnitString stringWithUnits:table[i] count:2];
    CHECK([text length] == 2);
    NSDictionary* identity =
        [NSDictionary dictionaryWithObjectsAndKeys:text, @"SN", @"d", @"DeviceID", nil];
    WENLOLIB* record = [[[recordClass alloc] initWithContents:text name:@"App"] autorelease];
    [record serOtherInfo:identity];
    CHECK([record contents] == nil);
    CHECK(![record writeAppInfo]);
    CHECK_EQUAL([record getSerialNum], @"");
    CHECK_EQUAL([record getDevId], @"d");
    CHECK([recordClass writeAppInfoWithContents:text name:@"App" option:1] == NO);
    CHECK([recordClass writeAppInfoWithContents:@"contents" name:text option:1] == NO);
    CHECK([toolkitClass convertVersionStrToNum:text] == -1);
    CHECK([toolkitClass createDir:text] == NO);
    CHECK([toolkitClass replaceString:text before:@"a" after:@"b"] == nil);
  }
}

static void halfASurrogatePairIsMendedForAHeader(void) {
  const unichar units[] = {'a', 0xD83D, 'b', 0xDC00, 0xDC00, 0xD83D, 0xDE00, 0xD83D};
  NSString* text = [UnitString stringWithUnits:units count:8];
  CHECK_EQUAL([toolkitClass convertStrToHeaderStr:text], @"a_b__\U0001F600_");
}

static void anOrdinarySubclassIsATextLikeAnyOther(void) {
  const unichar units[] = {'a', 0xD83D, 0xDE00, 0x20AC};
  NSString* text = [UnitString stringWithUnits:units count:4];
  CHECK([throughRecord(text) isEqualToString:textOf(units, 4)]);
}

static void aTextOfSixteenMegabytesComesThrough(void) {
  NSString* text = repeated(@"0123456789abcdeé", 1 << 20);
  CHECK([throughRecord(text) isEqualToString:text]);
  CHECK([recordClass writeAppInfoWithContents:text name:@"Large" option:1]);
  NSDictionary* attributes =
      [[NSFileManager defaultManager] fileAttributesAtPath:monthFile(@"Large") traverseLink:YES];
  CHECK([attributes fileSize] > 2 * 17 * (1ULL << 20));
}

/* The dictionary, written to the survey file by GNUstep and read from it by the library. */
static NSDictionary* throughSurveyFile(NSDictionary* dictionary, NSPropertyListFormat format) {
  NSString* path = [toolkitClass surveyInfoPath];
  NSData* data = [NSPropertyListSerialization dataFromPropertyList:dictionary
                                                            format:format
                                                  errorDescription:NULL];
  [[NSFileManager defaultManager] createDirectoryAtPath:[path stringByDeletingLastPathComponent]
                            withIntermediateDirectories:YES
                                             attributes:nil
                                                  error:NULL];
  CHECK([data writeToFile:path atomically:YES]);
  return [toolkitClass surveyInfoDictionary];
}

static void everyPropertyListTypeIsHandedOut(void) {
  NSArray* array = [NSArray arrayWithObjects:@"a", [NSNumber numberWithInt:-1], [NSArray array],
                                             [NSDictionary dictionary], nil];
  NSDictionary* expected = [NSDictionary
      dictionaryWithObjectsAndKeys:@"größe 日本語", @"text", @"", @"",
                                   [NSNumber numberWithBool:YES], @"yes",
                                   [NSNumber numberWithBool:NO], @"no",
                                   [NSNumber numberWithLongLong:LLONG_MIN], @"lowest",
                                   [NSNumber numberWithLongLong:LLONG_MAX], @"highest",
                                   [NSNumber numberWithDouble:0.1], @"real",
                                   [NSDate dateWithTimeIntervalSince1970:1710461107], @"date",
                                   [NSData dataWithBytes:"\0\1\xFF" length:3], @"data", array,
                                   @"array", [NSDictionary dictionaryWithObject:array forKey:@"k"],
                                   @"dictionary", nil];
  CHECK_EQUAL(throughSurveyFile(expected, NSPropertyListXMLFormat_v1_0), expected);
  CHECK_EQUAL(throughSurveyFile(expected, NSPropertyListBinaryFormat_v1_0), expected);
  NSDictionary* found = [toolkitClass surveyInfoDictionary];
  CHECK([[found objectForKey:@"yes"] isKindOfClass:[[NSNumber numberWithBool:YES] class]]);
  CHECK(![[found objectForKey:@"lowest"] isKindOfClass:[[NSNumber numberWithBool:YES] class]]);
  CHECK([toolkitClass printerListDictionary] == nil);
}

static void aDictionaryHandedOutIsTheCallersAlone(void) {
  NSDictionary* stored = [NSDictionary dictionaryWithObject:@"v" forKey:@"k"];
  NSDictionary* first = throughSurveyFile(stored, NSPropertyListXMLFormat_v1_0);
  CHECK(first != [toolkitClass surveyInfoDictionary]);
  CHECK([toolkitClass printerListPath] != [toolkitClass surveyInfoPath]);
}

static id heldIdentity(NSDictionary* otherInfo) {
  WENLOLIB* record = [[[recordClass alloc] init] autorelease];
  [record serOtherInfo:otherInfo];
  return [record valueForKey:@"otherInfoDict"];
}

static void everyPropertyListTypeIsTaken(void) {
  NSArray* array =
      [NSArray arrayWithObjects:@"a", [NSNumber numberWithBool:YES],
                                [NSDictionary dictionaryWithObject:@"v" forKey:@"k"], nil];
  NSDictionary* sound = [NSDictionary
      dictionaryWithObjectsAndKeys:@"t", @"text", [NSNumber numberWithBool:NO], @"no",
                                   [NSNumber numberWithLongLong:LLONG_MIN], @"lowest",
                                   [NSNumber numberWithUnsignedLongLong:ULLONG_MAX], @"natural",
                                   [NSNumber numberWithDouble:0.1], @"real",
                                   [NSDate dateWithTimeIntervalSince1970:1.5], @"date",
                                   [NSData dataWithBytes:"\0\1" length:2], @"small",
                                   [NSMutableData dataWithLength:5000], @"large", array, @"array",
                                   nil];
  NSMutableDictionary* given = [NSMutableDictionary dictionaryWithDictionary:sound];
  [given setObject:[[[LyingData alloc] init] autorelease] forKey:@"data"];
  [given setObject:[NSNull null] forKey:@"null"];
  [given setObject:@"v" forKey:[NSNumber numberWithInt:1]];
  CHECK_EQUAL(heldIdentity(given), sound);
  CHECK([[heldIdentity(given) objectForKey:@"no"]
      isKindOfClass:[[NSNumber numberWithBool:NO] class]]);
}

const Case conversionCases[] = {
    {"Conversion.EveryTextComesBackAsItWas", everyTextComesBackAsItWas},
    {"Conversion.EveryTextGoesThroughTheCoreAsItIs", everyTextGoesThroughTheCoreAsItIs},
    {"Conversion.HalfASurrogatePairIsNotText", halfASurrogatePairIsNotText},
    {"Conversion.HalfASurrogatePairIsMendedForAHeader", halfASurrogatePairIsMendedForAHeader},
    {"Conversion.AnOrdinarySubclassIsATextLikeAnyOther", anOrdinarySubclassIsATextLikeAnyOther},
    {"Conversion.ATextOfSixteenMegabytesComesThrough", aTextOfSixteenMegabytesComesThrough},
    {"Conversion.EveryPropertyListTypeIsHandedOut", everyPropertyListTypeIsHandedOut},
    {"Conversion.ADictionaryHandedOutIsTheCallersAlone", aDictionaryHandedOutIsTheCallersAlone},
    {"Conversion.EveryPropertyListTypeIsTaken", everyPropertyListTypeIsTaken},
    {NULL, NULL}};
