/* Whole records through the class operations, on real files below the case's own home. */
#import "Host.h"

#include <signal.h>
#include <stdio.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

static BOOL application(NSString* contents, NSString* name, unsigned int option) {
  return [recordClass writeAppInfoWithContents:contents name:name option:option];
}

static BOOL printerLog(NSString* contents, NSString* name, NSDictionary* otherInfo) {
  return [recordClass writePrinterLogInfoWithContents:contents
                                                 name:name
                                               option:1
                                            otherInfo:otherInfo];
}

static NSUInteger written(void) {
  return [namesIn(inSupportFolder(@"ALM")) count] + [namesIn(inSupportFolder(@"PLM")) count];
}

static BOOL isOpenToAll(NSString* path) {
  struct stat status;
  return stat([path fileSystemRepresentation], &status) == 0 && (status.st_mode & 07777) == 0666;
}

static void applicationUsageIsRecorded(void) {
  const mode_t mask = umask(077);
  CHECK(application(@"größer 𝄞", @"App", 1));
  umask(mask);
  NSString* document = textAt(monthFile(@"App"));
  CHECK([document hasPrefix:@"<OrvanQXApplication SUM=\""]);
  CHECK([document hasSuffix:@"</Encrypted></OrvanQXApplication>"]);
  CHECK_EQUAL(elementIn(document, @"Version"), @"1.0");
  CHECK_EQUAL(elementIn(document, @"Locale"), @"fr_FR");
  CHECK([[elementIn(document, @"ID") description] length] == 38);
  /* 13 bytes in UTF-8, two digits each */
  NSRange payload = [document rangeOfString:@"<Encrypted C=\"R\">"];
  CHECK([document length] - NSMaxRange(payload) ==
        26 + [@"</Encrypted></OrvanQXApplication>" length]);
  CHECK(isOpenToAll(monthFile(@"App")));
}

static void aSecondRecordOfTheMonthReplacesTheFirst(void) {
  CHECK(application(@"first", @"App", 1));
  NSString* first = textAt(monthFile(@"App"));
  CHECK(application(@"the second", @"App", 2));
  CHECK(![textAt(monthFile(@"App")) isEqual:first]);
  CHECK(written() == 1);
}

static void printerLogsAreNumberedFromTheLowestFree(void) {
  for (int i = 0; i < 3; ++i) CHECK(printerLog(@"contents", @"App", nil));
  CHECK(unlink([inSupportFolder(@"PLM/App_2.PLM") fileSystemRepresentation]) == 0);
  CHECK(mkdir([inSupportFolder(@"PLM/App_4.PLM") fileSystemRepresentation], 0700) == 0);
  CHECK(printerLog(@"contents", @"App", nil));
  CHECK(printerLog(@"contents", @"App", nil));
  NSArray* expected = [NSArray
      arrayWithObjects:@"App_1.PLM", @"App_2.PLM", @"App_3.PLM", @"App_4.PLM", @"App_5.PLM", nil];
  CHECK_EQUAL(namesIn(inSupportFolder(@"PLM")), expected);
}

static void printerLogsCarryTheirIdentity(void) {
  NSDictionary* printer = [NSDictionary
      dictionaryWithObjectsAndKeys:@"d", @"DeviceID", @"s", @"SN", @"r", @"ROMVER", nil];
  CHECK(printerLog(@"contents", @"App", printer));
  NSString* document = textAt(inSupportFolder(@"PLM/App_1.PLM"));
  CHECK([document hasPrefix:@"<OrvanQXPrinter SUM=\""]);
  CHECK([document rangeOfString:@"<Printer><DeviceID>d</DeviceID><SN>s</SN><ROMVER>r</ROMVER>"
                                 "<PLI C=\"R\">"]
            .length > 0);
}

static void printerLogsOfTheNewTagTypeCarryNone(void) {
  NSDictionary* printer = [NSDictionary
      dictionaryWithObjectsAndKeys:@"s", @"SN", [NSNumber numberWithInt:1], @"NEWTAGTYPE", nil];
  CHECK(printerLog(@"contents", @"App", printer));
  NSString* document = textAt(inSupportFolder(@"PLM/App_1.PLM"));
  CHECK([document hasPrefix:@"<OrvanQX2Application SUM=\""]);
  CHECK(elementIn(document, @"SN") == nil);
}

static void aNullIdentityLeavesThePrinterValuesEmpty(void) {
  CHECK(printerLog(@"contents", @"App", nil));
  NSString* document = textAt(inSupportFolder(@"PLM/App_1.PLM"));
  CHECK_EQUAL(elementIn(document, @"DeviceID"), @"");
  CHECK_EQUAL(elementIn(document, @"SN"), @"");
  CHECK_EQUAL(elementIn(document, @"ROMVER"), @"");
}

static void emptyContentsAndNamePass(void) {
  CHECK(application(@"", @"", 1));
  CHECK(printerLog(@"", @"", nil));
  CHECK(textAt(monthFile(@"")) != nil);
  CHECK(textAt(inSupportFolder(@"PLM/_1.PLM")) != nil);
}

static void nullContentsOrNameAreRefused(void) {
  CHECK(!application(nil, @"App", 1));
  CHECK(!application(@"contents", nil, 1));
  CHECK(!printerLog(nil, @"App", nil));
  CHECK(!printerLog(@"contents", nil, nil));
  CHECK(written() == 0);
}

static void supportDependsOnModeAgreementAndDate(void) {
  for (unsigned int option = 0; option < 64; ++option) {
    const unsigned int mode = option & 15;
    CHECK([recordClass isSupported:option] == (mode <= 2 ? YES : NO));
    CHECK([recordClass isSupportedPlm:option] == YES);
  }
  writePreferences(agreedPreferences(1441));
  CHECK([recordClass isSupported:1] == NO);
  CHECK([recordClass isSupported:2] == YES);
  CHECK([recordClass isSupportedPlm:0xFFFFFFFFU] == YES);
  writePreferences(agreedPreferences(3615));
  CHECK([recordClass isSupportedPlm:1] == NO);
  NSMutableDictionary* preferences = agreedPreferences(100);
  [preferences setObject:@"YES" forKey:@"LatestSelectedAgreement"];
  writePreferences(preferences);
  CHECK([recordClass isSupported:0] == NO);
  [preferences setObject:[NSNumber numberWithDouble:2.5] forKey:@"LatestSelectedAgreement"];
  writePreferences(preferences);
  CHECK([recordClass isSupported:0] == YES);
  [preferences removeObjectForKey:@"InstalledDate"];
  writePreferences(preferences);
  CHECK([recordClass isSupported:0] == NO);
}

static void aRefusalComesFirstAndWritesNothing(void) {
  CHECK(!application(@"contents", @"App", 3));
  CHECK(!application(nil, nil, 3));
  writePreferences(agreedPreferences(5000));
  CHECK(!application(@"contents", @"App", 1));
  CHECK(!printerLog(@"contents", @"App", nil));
  CHECK(written() == 0);
  CHECK([namesIn(inSupportFolder(@"Config")) count] == 1);
}

static void aMissingFolderGivesNoAndIsNotMade(void) {
  CHECK(rmdir([inSupportFolder(@"ALM") fileSystemRepresentation]) == 0);
  CHECK(!application(@"contents", @"App", 1));
  CHECK(access([inSupportFolder(@"ALM") fileSystemRepresentation], F_OK) != 0);
}

/* While `on`, every write to a file fails. */
static void refuseWrites(BOOL on) {
  struct rlimit limit;
  signal(SIGXFSZ, on ? SIG_IGN : SIG_DFL);
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = on ? 0 : limit.rlim_max;
  setrlimit(RLIMIT_FSIZE, &limit);
}

static void anEarlierFileOutlivesAFailedWrite(void) {
  CHECK(application(@"contents", @"App", 1));
  NSString* before = textAt(monthFile(@"App"));
  refuseWrites(YES);
  const BOOL recorded = application(@"other", @"App", 1);
  refuseWrites(NO);
  CHECK(recorded == NO);
  CHECK_EQUAL(textAt(monthFile(@"App")), before);
  CHECK(application(@"other", @"App", 1));
  CHECK(![textAt(monthFile(@"App")) isEqual:before]);
}

static void markupThatCannotBeMendedLeavesNoFileAndStillAnswersYes(void) {
  NSDictionary* printer = [NSDictionary dictionaryWithObject:@"</SN><x>" forKey:@"SN"];
  CHECK(printerLog(@"contents", @"App", printer));
  CHECK(written() == 0);
}

static void nothingIsPrinted(void) {
  NSString* path = [NSString stringWithFormat:@"%s/printed", getenv("HOME")];
  fflush(stdout);
  const int kept[] = {dup(1), dup(2)};
  FILE* file = fopen([path fileSystemRepresentation], "w");
  dup2(fileno(file), 1);
  dup2(fileno(file), 2);
  application(@"contents", @"App", 1);
  application((id)[NSNumber numberWithInt:1], (id)[NSNull null], 1);
  printerLog(@"contents", @"App", (id)[NSArray array]);
  application(@"contents", @"App", 3);
  fflush(stdout);
  dup2(kept[0], 1);
  dup2(kept[1], 2);
  fclose(file);
  close(kept[0]);
  close(kept[1]);
  CHECK_EQUAL(textAt(path), @"");
}

static NSString* script(NSString* body) {
  NSString* path = [NSString stringWithFormat:@"%s/script", getenv("HOME")];
  NSString* text = [@"#!/bin/sh\n" stringByAppendingString:body];
  [text writeToFile:path atomically:YES encoding:NSUTF8StringEncoding error:NULL];
  chmod([path fileSystemRepresentation], 0700);
  return path;
}

static void programsRunAndAnswerTheirStatus(void) {
  NSString* path = script(@"[ \"$1\" = 'größe a' ] && [ -z \"$2\" ] && exit 7\nexit $#\n");
  NSArray* arguments = [NSArray arrayWithObjects:@"größe a", @"", nil];
  CHECK([recordClass createTask:path args:arguments wait:1] == 7);
  CHECK([recordClass createTask:path args:nil wait:1] == 0);
  CHECK([recordClass createTask:path args:[NSArray arrayWithObject:@"x"] wait:1] == 1);
  CHECK([recordClass createTask:path args:arguments wait:0] == 0);
  CHECK([recordClass createTask:path args:arguments wait:2] == 0);
}

static void whatIsNotAProgramGivesZero(void) {
  CHECK([recordClass createTask:nil args:nil wait:1] == 0);
  CHECK([recordClass createTask:@"/nowhere" args:nil wait:1] == 0);
  CHECK([recordClass createTask:inSupportFolder(@"ALM") args:nil wait:1] == 0);
  NSString* path = script(@"exit 7\n");
  chmod([path fileSystemRepresentation], 0600);
  CHECK([recordClass createTask:path args:nil wait:1] == 0);
}

const Case entryPointCases[] = {
    {"EntryPoints.ApplicationUsageIsRecorded", applicationUsageIsRecorded},
    {"EntryPoints.ASecondRecordOfTheMonthReplacesTheFirst",
     aSecondRecordOfTheMonthReplacesTheFirst},
    {"EntryPoints.PrinterLogsAreNumberedFromTheLowestFree",
     printerLogsAreNumberedFromTheLowestFree},
    {"EntryPoints.PrinterLogsCarryTheirIdentity", printerLogsCarryTheirIdentity},
    {"EntryPoints.PrinterLogsOfTheNewTagTypeCarryNone", printerLogsOfTheNewTagTypeCarryNone},
    {"EntryPoints.ANullIdentityLeavesThePrinterValuesEmpty",
     aNullIdentityLeavesThePrinterValuesEmpty},
    {"EntryPoints.EmptyContentsAndNamePass", emptyContentsAndNamePass},
    {"EntryPoints.NullContentsOrNameAreRefused", nullContentsOrNameAreRefused},
    {"EntryPoints.SupportDependsOnModeAgreementAndDate", supportDependsOnModeAgreementAndDate},
    {"EntryPoints.ARefusalComesFirstAndWritesNothing", aRefusalComesFirstAndWritesNothing},
    {"EntryPoints.AMissingFolderGivesNoAndIsNotMade", aMissingFolderGivesNoAndIsNotMade},
    {"EntryPoints.AnEarlierFileOutlivesAFailedWrite", anEarlierFileOutlivesAFailedWrite},
    {"EntryPoints.MarkupThatCannotBeMendedLeavesNoFileAndStillAnswersYes",
     markupThatCannotBeMendedLeavesNoFileAndStillAnswersYes},
    {"EntryPoints.NothingIsPrinted", nothingIsPrinted},
    {"EntryPoints.ProgramsRunAndAnswerTheirStatus", programsRunAndAnswerTheirStatus},
    {"EntryPoints.WhatIsNotAProgramGivesZero", whatIsNotAProgramGivesZero},
    {NULL, NULL}};
