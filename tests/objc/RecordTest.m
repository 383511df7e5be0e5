/* The record: how it is built, its texts, its identity and its values. */
#import "Host.h"

#include <objc/runtime.h>
#include <string.h>
#include <sys/stat.h>

static WENLOLIB* recordWith(NSString* contents, NSString* name, unsigned int option) {
  return [[[recordClass alloc] initWithContents:contents name:name option:option] autorelease];
}

static void beginsAsAPrinterLogWithoutContentsAndName(void) {
  WENLOLIB* record = [[[recordClass alloc] init] autorelease];
  CHECK(record != nil);
  CHECK([record contents] == nil);
  CHECK([record applicationName] == nil);
  CHECK([record fileType] == 1);
  CHECK_EQUAL([record getLocale], [recordWith(@"c", @"n", 0) getLocale]);
}

static void keepsContentsNameAndOption(void) {
  WENLOLIB* record = recordWith(@"contents", @"App", 0xABCDEF01U);
  CHECK_EQUAL([record contents], @"contents");
  CHECK_EQUAL([record applicationName], @"App");
  CHECK([record fileType] == 1);
  CHECK_EQUAL([record getLocale], @"fr_FR");
  CHECK_EQUAL([record valueForKey:@"options"], [NSNumber numberWithUnsignedInt:0xABCDEF01U]);
}

static void shorterInitialisersLeaveTheRestNullAndZero(void) {
  WENLOLIB* one = [[[recordClass alloc] initWithContents:@"c"] autorelease];
  WENLOLIB* two = [[[recordClass alloc] initWithContents:@"c" name:@"n"] autorelease];
  CHECK_EQUAL([one contents], @"c");
  CHECK([one applicationName] == nil);
  CHECK_EQUAL([two applicationName], @"n");
  CHECK_EQUAL([one valueForKey:@"options"], [NSNumber numberWithUnsignedInt:0]);
  CHECK_EQUAL([two valueForKey:@"options"], [NSNumber numberWithUnsignedInt:0]);
  CHECK([one fileType] == 1 && [two fileType] == 1);
}

static void takesNullAndEmptyTexts(void) {
  WENLOLIB* record = recordWith(nil, @"", 0);
  CHECK([record contents] == nil);
  CHECK_EQUAL([record applicationName], @"");
}

static void takesOnlyFileTypesOneAndTwo(void) {
  const unsigned int others[] = {0, 3, 4, 257, 0xFFFFFFFFU};
  WENLOLIB* record = recordWith(@"c", @"n", 0);
  for (int i = 0; i < 5; ++i) {
    [record setFileType:others[i]];
    CHECK([record fileType] == 1);
  }
  [record setFileType:2];
  for (int i = 0; i < 5; ++i) {
    [record setFileType:others[i]];
    CHECK([record fileType] == 2);
  }
  [record setFileType:1];
  CHECK([record fileType] == 1);
}

static void handingBackTheSameObjectChangesNothing(void) {
  WENLOLIB* record = recordWith(@"contents", @"App", 0);
  NSString* contents = [record contents];
  NSString* name = [record applicationName];
  [record setContents:contents];
  [record setApplicationName:name];
  CHECK([record contents] == contents);
  CHECK([record applicationName] == name);
}

static void askingTwiceForATextGivesTheSameObject(void) {
  WENLOLIB* record = recordWith(@"contents", @"App", 0);
  CHECK([record contents] == [record contents]);
  CHECK([record applicationName] == [record applicationName]);
}

static void settersCopy(void) {
  NSMutableString* contents = [NSMutableString stringWithString:@"contents"];
  NSMutableString* name = [NSMutableString stringWithString:@"App"];
  WENLOLIB* record = recordWith(contents, name, 0);
  CHECK([record contents] != contents);
  CHECK([record applicationName] != name);
  [contents setString:@"changed"];
  [name setString:@""];
  CHECK_EQUAL([record contents], @"contents");
  CHECK_EQUAL([record applicationName], @"App");
}

static void nullClearsATextAndAnotherReplacesIt(void) {
  WENLOLIB* record = recordWith(@"contents", @"App", 0);
  [record setContents:nil];
  [record setApplicationName:nil];
  CHECK([record contents] == nil);
  CHECK([record applicationName] == nil);
  [record setContents:@"other"];
  CHECK_EQUAL([record contents], @"other");
}

static void whatItHandsOutOutlivesIt(void) {
  WENLOLIB* record = [[recordClass alloc] initWithContents:repeated(@"c", 100) name:@"n"];
  NSString* contents = [record contents];
  NSString* identifier = [record getWENLOLIBId];
  [record setContents:nil];
  [record release];
  CHECK_EQUAL(contents, repeated(@"c", 100));
  CHECK([identifier length] == 38);
}

static void identityIsCopiedAllTheWayDown(void) {
  NSMutableString* serial = [NSMutableString stringWithString:@"A-1"];
  NSMutableDictionary* otherInfo =
      [NSMutableDictionary dictionaryWithObjectsAndKeys:serial, @"SN", @"d", @"DeviceID", nil];
  WENLOLIB* record = recordWith(@"c", @"n", 0);
  [record serOtherInfo:otherInfo];
  [serial setString:@"changed"];
  [otherInfo removeAllObjects];
  CHECK_EQUAL([record getSerialNum], @"A-1");
  CHECK_EQUAL([record getDevId], @"d");
}

static void aNullIdentityKeepsTheOneSetEarlier(void) {
  WENLOLIB* record = recordWith(@"c", @"n", 0);
  [record serOtherInfo:[NSDictionary dictionaryWithObject:@"A-1" forKey:@"SN"]];
  [record serOtherInfo:nil];
  CHECK_EQUAL([record getSerialNum], @"A-1");
  [record serOtherInfo:[NSDictionary dictionaryWithObject:@"d" forKey:@"DeviceID"]];
  CHECK_EQUAL([record getSerialNum], @"");
  CHECK_EQUAL([record getDevId], @"d");
}

static void identityTextsAreFoundByTheirExactKeys(void) {
  WENLOLIB* record = recordWith(@"c", @"n", 0);
  CHECK_EQUAL([record getDevId], @"");
  CHECK_EQUAL([record getSerialNum], @"");
  CHECK_EQUAL([record getRomVersion], @"");
  CHECK(![record isNewTagTypePrinter]);
  [record serOtherInfo:[NSDictionary dictionaryWithObjectsAndKeys:@" d <&> ", @"DeviceID", @"s",
                                                                  @"Sn", @"2.14", @"ROMVER", nil]];
  CHECK_EQUAL([record getDevId], @" d <&> ");
  CHECK_EQUAL([record getSerialNum], @"");
  CHECK_EQUAL([record getRomVersion], @"2.14");
}

static BOOL isNewTagType(id value) {
  WENLOLIB* record = recordWith(@"c", @"n", 0);
  [record serOtherInfo:[NSDictionary dictionaryWithObject:value forKey:@"NEWTAGTYPE"]];
  return [record isNewTagTypePrinter];
}

static void tagTypesAreReadAsBooleansNumbersAndTexts(void) {
  NSArray* newer = [NSArray
      arrayWithObjects:@"YES", @"true", @"1", @" \t+00y", @"-2", [NSNumber numberWithBool:YES],
                       [NSNumber numberWithInt:-1], [NSNumber numberWithDouble:0.5],
                       [NSNumber numberWithUnsignedLongLong:~0ULL],
                       [NSNumber numberWithLongLong:1LL << 40], [NSNumber numberWithChar:3], nil];
  NSArray* older = [NSArray
      arrayWithObjects:@"NO", @"0", @"", @"x1", [NSNumber numberWithBool:NO],
                       [NSNumber numberWithInt:0], [NSNumber numberWithDouble:0], [NSDate date],
                       [NSArray arrayWithObject:@"YES"], [NSData dataWithBytes:"1" length:1], nil];
  for (NSUInteger i = 0; i < [newer count]; ++i) CHECK(isNewTagType([newer objectAtIndex:i]));
  for (NSUInteger i = 0; i < [older count]; ++i) CHECK(!isNewTagType([older objectAtIndex:i]));
}

static void theIdentifierIsMadeOnceStoredAndKept(void) {
  NSString* path = inSupportFolder(@"Config/com.orvan.printing.WENLOLIB.Conf.plist");
  WENLOLIB* record = recordWith(@"c", @"n", 0);
  NSString* identifier = [record getWENLOLIBId];
  struct stat status;
  CHECK([identifier length] == 38);
  CHECK([identifier hasPrefix:@"{"] && [identifier hasSuffix:@"}"]);
  CHECK_EQUAL([[NSDictionary dictionaryWithContentsOfFile:path] objectForKey:@"WENLIBUUID"],
              identifier);
  CHECK(stat([path fileSystemRepresentation], &status) == 0 && (status.st_mode & 07777) == 0666);
  writePropertyList([NSDictionary dictionaryWithObject:@"{OTHER}" forKey:@"WENLIBUUID"], path);
  CHECK([record getWENLOLIBId] == identifier);
  CHECK_EQUAL([recordWith(@"c", @"n", 0) getWENLOLIBId], @"{OTHER}");
}

static void aStoredEmptyIdentifierIsKeptAndThePlaceholderIsNot(void) {
  NSString* path = inSupportFolder(@"Config/com.orvan.printing.WENLOLIB.Conf.plist");
  NSMutableDictionary* stored = [NSMutableDictionary dictionaryWithObject:@"" forKey:@"WENLIBUUID"];
  writePropertyList(stored, path);
  CHECK_EQUAL([recordWith(@"c", @"n", 0) getWENLOLIBId], @"");
  [stored setObject:@"NOTDETERMINED" forKey:@"WENLIBUUID"];
  [stored setObject:[NSNumber numberWithInt:7] forKey:@"other"];
  writePropertyList(stored, path);
  CHECK([[recordWith(@"c", @"n", 0) getWENLOLIBId] length] == 38);
  CHECK_EQUAL([[NSDictionary dictionaryWithContentsOfFile:path] objectForKey:@"other"],
              [NSNumber numberWithInt:7]);
}

static void localesComeFromTheSourceThatTheOptionNames(void) {
  setenv("LC_ALL", "sr_RS_X.UTF-8@latin", 1);
  CHECK_EQUAL([recordWith(@"c", @"n", 0) getLocale], @"sr_RS");
  CHECK_EQUAL([recordWith(@"c", @"n", 1) getLocale], @"fr_FR");
  CHECK_EQUAL([recordWith(@"c", @"n", 2) getLocale], @"sr_RS");
  CHECK_EQUAL([recordWith(@"c", @"n", 3) getLocale], @"");
  CHECK_EQUAL([recordWith(@"c", @"n", 17) getLocale], @"fr_FR");
  unsetenv("LC_ALL");
}

static void versionsAreCutAndMarked(void) {
  WENLOLIB* record = recordWith(@"c", @"n", 0);
  CHECK_EQUAL([record getCliantVersionforALM], @"1.0");
  CHECK([record getCliantVersion] != nil);
  CHECK_EQUAL([record getOSVersion], [@"M." stringByAppendingString:[toolkitClass osVersion]]);
}

static void aDocumentIsKeptUntilItIsWritten(void) {
  WENLOLIB* record = recordWith(@"contents", @"App", 1);
  CHECK([record valueForKey:@"xmlDocment"] == nil);
  CHECK([record WENLOLIBCreateXMLDocument]);
  NSData* document = [record valueForKey:@"xmlDocment"];
  CHECK([document length] > 100);
  CHECK(memcmp([document bytes], "<OrvanQXPrinter SUM=\"", 21) == 0);
  CHECK([namesIn(inSupportFolder(@"PLM")) count] == 0);
  CHECK([record writeAppInfo]);
  CHECK([record valueForKey:@"xmlDocment"] == nil);
  CHECK_EQUAL(namesIn(inSupportFolder(@"PLM")), [NSArray arrayWithObject:@"App_1.PLM"]);
}

static void aRecordWithoutContentsOrNameIsNotWritten(void) {
  CHECK(![recordWith(nil, @"App", 1) writeAppInfo]);
  CHECK(![recordWith(@"contents", nil, 1) writeAppInfo]);
  CHECK(![[[[recordClass alloc] init] autorelease] writeAppInfo]);
  CHECK([namesIn(inSupportFolder(@"PLM")) count] == 0);
}

static void aRecordOfNoContentsStillHasADocument(void) {
  WENLOLIB* record = [[[recordClass alloc] init] autorelease];
  CHECK([record WENLOLIBCreateXMLDocument]);
  CHECK([record valueForKey:@"xmlDocment"] != nil);
}

static void initOnceMoreForgetsEverything(void) {
  WENLOLIB* record = recordWith(@"contents", @"App", 2);
  [record setFileType:2];
  [record serOtherInfo:[NSDictionary dictionaryWithObject:@"A-1" forKey:@"SN"]];
  CHECK([record WENLOLIBCreateXMLDocument]);
  CHECK([record init] == record);
  CHECK([record contents] == nil && [record applicationName] == nil);
  CHECK([record fileType] == 1);
  CHECK_EQUAL([record valueForKey:@"options"], [NSNumber numberWithUnsignedInt:0]);
  CHECK_EQUAL([record getSerialNum], @"");
  CHECK([record valueForKey:@"xmlDocment"] == nil && [record valueForKey:@"libUUID"] == nil);
}

/* No setter takes such a type, but a subclass can put it there. */
static void anUnknownFileTypeHasNoDocument(void) {
  WENLOLIB* record = recordWith(@"contents", @"App", 1);
  const ptrdiff_t at = ivar_getOffset(class_getInstanceVariable(recordClass, "_fileType"));
  const unsigned int unknown = 3;
  memcpy((char*)record + at, &unknown, sizeof unknown);
  CHECK([record fileType] == 3);
  CHECK(![record WENLOLIBCreateXMLDocument]);
  CHECK([record valueForKey:@"xmlDocment"] == nil);
  CHECK(![record writeAppInfo]);
  CHECK([namesIn(inSupportFolder(@"PLM")) count] == 0);
}

const Case recordCases[] = {
    {"Record.BeginsAsAPrinterLogWithoutContentsAndName", beginsAsAPrinterLogWithoutContentsAndName},
    {"Record.KeepsContentsNameAndOption", keepsContentsNameAndOption},
    {"Record.ShorterInitialisersLeaveTheRestNullAndZero",
     shorterInitialisersLeaveTheRestNullAndZero},
    {"Record.TakesNullAndEmptyTexts", takesNullAndEmptyTexts},
    {"Record.TakesOnlyFileTypesOneAndTwo", takesOnlyFileTypesOneAndTwo},
    {"Record.HandingBackTheSameObjectChangesNothing", handingBackTheSameObjectChangesNothing},
    {"Record.AskingTwiceForATextGivesTheSameObject", askingTwiceForATextGivesTheSameObject},
    {"Record.SettersCopy", settersCopy},
    {"Record.NullClearsATextAndAnotherReplacesIt", nullClearsATextAndAnotherReplacesIt},
    {"Record.WhatItHandsOutOutlivesIt", whatItHandsOutOutlivesIt},
    {"Record.IdentityIsCopiedAllTheWayDown", identityIsCopiedAllTheWayDown},
    {"Record.ANullIdentityKeepsTheOneSetEarlier", aNullIdentityKeepsTheOneSetEarlier},
    {"Record.IdentityTextsAreFoundByTheirExactKeys", identityTextsAreFoundByTheirExactKeys},
    {"Record.TagTypesAreReadAsBooleansNumbersAndTexts", tagTypesAreReadAsBooleansNumbersAndTexts},
    {"Record.TheIdentifierIsMadeOnceStoredAndKept", theIdentifierIsMadeOnceStoredAndKept},
    {"Record.AStoredEmptyIdentifierIsKeptAndThePlaceholderIsNot",
     aStoredEmptyIdentifierIsKeptAndThePlaceholderIsNot},
    {"Record.LocalesComeFromTheSourceThatTheOptionNames",
     localesComeFromTheSourceThatTheOptionNames},
    {"Record.VersionsAreCutAndMarked", versionsAreCutAndMarked},
    {"Record.ADocumentIsKeptUntilItIsWritten", aDocumentIsKeptUntilItIsWritten},
    {"Record.WithoutContentsOrNameIsNotWritten", aRecordWithoutContentsOrNameIsNotWritten},
    {"Record.OfNoContentsStillHasADocument", aRecordOfNoContentsStillHasADocument},
    {"Record.InitOnceMoreForgetsEverything", initOnceMoreForgetsEverything},
    {"Record.AnUnknownFileTypeHasNoDocument", anUnknownFileTypeHasNoDocument},
    {NULL, NULL}};
