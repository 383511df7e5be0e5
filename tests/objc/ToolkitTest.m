/* The toolkit's class operations. */
#import "Host.h"

#include <limits.h>
#include <sys/stat.h>
#include <sys/utsname.h>

static void theSystemIsKnownInAllItsForms(void) {
  int major = 0, minor = 0, bugFix = 0;
  struct utsname name;
  CHECK(uname(&name) == 0);
  sscanf(name.release, "%d.%d.%d", &major, &minor, &bugFix);
  CHECK_EQUAL([toolkitClass systemVersion], ([NSString stringWithFormat:@"%d.%d", major, minor]));
  CHECK_EQUAL([toolkitClass osVersion],
              ([NSString stringWithFormat:@"%d.%d.%d", major, minor, bugFix]));
  CHECK([toolkitClass systemBugFixVersion] == bugFix);
  CHECK([toolkitClass systemVersionNum] == major * 10000 + minor * 100 + bugFix);
  CHECK([toolkitClass supportUpperOSVersion] == 101700);
#if defined(__x86_64__) || defined(__i386__)
  CHECK([toolkitClass systemArchitecture] == 10);
#else
  CHECK([toolkitClass systemArchitecture] == -1);
#endif
}

static NSInteger compared(int major, int minor, int otherMajor, int otherMinor) {
  return [toolkitClass compareSystemVersionNumber:major
                                            minor:minor
                                       otherMajor:otherMajor
                                       otherMinor:otherMinor];
}

static void versionsCompareMajorsFirst(void) {
  CHECK(compared(10, 9, 10, 10) == -1);
  CHECK(compared(11, 0, 10, 15) == 1);
  CHECK(compared(10, 9, 10, 9) == 0);
  CHECK(compared(INT_MIN, 0, INT_MAX, 0) == -1);
  CHECK(compared(-1, 5, 0, 0) == -1);
  CHECK(compared(INT_MAX, INT_MAX, INT_MAX, INT_MIN) == 1);
}

static NSString* inContainer(NSString* path) {
  return [NSString
      stringWithFormat:@"%s/Library/Group Containers/K7MW2PL9QD.QX.common%@", getenv("HOME"), path];
}

static void foldersLieInTheContainer(void) {
  NSString* support = inContainer(@"/Library/Application Support/QMR");
  CHECK_EQUAL([toolkitClass groupIdentifier], @"K7MW2PL9QD.QX.common");
  CHECK_EQUAL([toolkitClass groupContainerDirPath], inContainer(@""));
  CHECK_EQUAL([toolkitClass appSupportDirPath], support);
  CHECK_EQUAL([toolkitClass prefDirPath], inContainer(@"/Library/Preferences/QMR"));
  CHECK_EQUAL([toolkitClass cacheDirPath], inContainer(@"/Library/Caches/QMR"));
  CHECK_EQUAL([toolkitClass almDirPath], [support stringByAppendingString:@"/ALM"]);
  CHECK_EQUAL([toolkitClass confDirPath], [support stringByAppendingString:@"/Config"]);
  CHECK_EQUAL([toolkitClass printerListPath],
              ([NSString stringWithFormat:@"%s/Library/Preferences/com.orvan.printing."
                                           "Quillmere.TargetPrinterList.plist",
                                          getenv("HOME")]));
  CHECK_EQUAL([toolkitClass surveyInfoPath],
              ([NSString stringWithFormat:@"%s/Library/Preferences/com.orvan.printing."
                                           "Quillmere.SurveyInfo.plist",
                                          getenv("HOME")]));
}

static void flagsAreTestedEachInItsWay(void) {
  const unsigned char flags[] = {0, 1, 2, 128, 255};
  NSString* support = [toolkitClass appSupportDirPath];
  for (int i = 0; i < 5; ++i) {
    const unsigned char flag = flags[i];
    CHECK_EQUAL([toolkitClass pliDirPath:flag], flag == 0
                                                    ? @"/Users/Shared/Orvan Quillmere/Logs"
                                                    : [support stringByAppendingString:@"/PLM"]);
    CHECK_EQUAL([toolkitClass WENLOLIBDirPath:flag],
                [support stringByAppendingString:flag == 1 ? @"/PlugIns" : @"/Frameworks"]);
  }
}

static void foldersAreMadeForTheirOwnerAlone(void) {
  NSString* base = [NSString stringWithFormat:@"%s/größe", getenv("HOME")];
  NSString* path = [base stringByAppendingString:@"/b//c/"];
  struct stat status;
  CHECK([toolkitClass createDir:path] == YES);
  CHECK(stat([base fileSystemRepresentation], &status) == 0 && (status.st_mode & 07777) == 0700);
  CHECK([toolkitClass createDir:path] == YES);
  CHECK([toolkitClass createDir:nil] == NO);
  [@"text" writeToFile:[base stringByAppendingString:@"/file"]
            atomically:YES
              encoding:NSUTF8StringEncoding
                 error:NULL];
  CHECK([toolkitClass createDir:[base stringByAppendingString:@"/file"]] == YES);
  CHECK([toolkitClass createDir:[base stringByAppendingString:@"/file/c"]] == NO);
}

static void aDateThatCannotBeShownIsNull(void) {
  NSDate* far = [NSDate dateWithTimeIntervalSince1970:1e300];
  CHECK([toolkitClass calendarFormatString:nil isNeedDay:1] == nil);
  CHECK([toolkitClass calendarWithTimeZoneFormatString:nil] == nil);
  CHECK([toolkitClass dateFormatWithHourMinSec:nil] == nil);
  CHECK([toolkitClass dateFormatWithHourMinSec:far] == nil);
}

static NSString* fit(NSString* string) {
  return [toolkitClass convertStrToHeaderStr:string];
}

static void aTextIsMadeFitForAHeader(void) {
  CHECK_EQUAL(fit(@"<QX> & \r\001\t\"größe\""), @"_QX_ _ __\t\"größe\"");
  CHECK_EQUAL(fit(@""), @"");
  CHECK(fit(nil) == nil);
  CHECK([fit([@"" stringByPaddingToLength:2000 withString:@"ö" startingAtIndex:0]) length] == 511);
}

static NSString* replaced(NSString* string, NSString* before, NSString* after) {
  return [toolkitClass replaceString:string before:before after:after];
}

static void textIsReplacedUntilNoneIsLeft(void) {
  CHECK_EQUAL(replaced(@"a/b/c", @"/", @"-"), @"a-b-c");
  CHECK_EQUAL(replaced(@"a/b/c", @"/", nil), @"abc");
  CHECK_EQUAL(replaced(@"aaaa", @"aa", @"a"), @"a");
  CHECK_EQUAL(replaced(@"größe", @"ö", @"oe"), @"groeße");
  CHECK_EQUAL(replaced(@"none", @"x", @"y"), @"none");
}

static void whatHasNothingToReplaceComesBackItself(void) {
  NSMutableString* text = [NSMutableString stringWithString:@"a/b"];
  NSMutableString* empty = [NSMutableString string];
  CHECK(replaced(nil, @"a", @"b") == nil);
  CHECK(replaced(empty, @"a", @"b") == empty);
  CHECK(replaced(text, @"/", [NSMutableString stringWithString:@"/"]) == text);
  CHECK(replaced(text, nil, @"b") == text);
  CHECK(replaced(text, @"", @"b") == text);
  NSString* copy = replaced(text, @"x", @"b");
  [text setString:@"changed"];
  CHECK_EQUAL(copy, @"a/b");
}

static void versionTextsBecomeNumbers(void) {
  const struct {
    const char* text;
    int number;
  } table[] = {{"10.9", 100900},   {"10.9.5", 100905}, {"3", 30000},    {"1.2.3.4", 10203},
               {"2.1.0b3", 20100}, {"0.9.1", -1},      {"100.0.0", -1}, {"abc", -1},
               {"3.100.0", 3},     {"3.1.250", 3},     {"", -1},        {" 3.1", 30100},
               {"9999999999", -1}};
  for (size_t i = 0; i < sizeof table / sizeof *table; ++i) {
    NSString* text = [NSString stringWithUTF8String:table[i].text];
    checked([toolkitClass convertVersionStrToNum:text] == table[i].number, table[i].text, __FILE__,
            __LINE__);
  }
  CHECK([toolkitClass convertVersionStrToNum:nil] == -1);
}

static void versionNumbersBecomeTexts(void) {
  CHECK_EQUAL([toolkitClass convertVersionNumToStr:30105], @"3.1.5");
  CHECK_EQUAL([toolkitClass convertVersionNumToStr:30005], @"3.0.5");
  CHECK([toolkitClass convertVersionNumToStr:9999] == nil);
  CHECK([toolkitClass convertVersionNumToStr:1000000] == nil);
  CHECK([toolkitClass convertVersionNumToStr:INT_MIN] == nil);
  CHECK_EQUAL([toolkitClass convertVersionNumToBiasStr:30105], @"1003.1");
  CHECK([toolkitClass convertVersionNumToBiasStr:-1] == nil);
}

static void listKeysAreReadBack(void) {
  CHECK_EQUAL([toolkitClass convertVersionStrToBiasStr:@"3.1.5"], @"1003.1");
  CHECK([toolkitClass convertVersionStrToBiasStr:nil] == nil);
  CHECK_EQUAL([toolkitClass convertBiasVersionStrToVerStr:@"1003.1"], @"3.1");
  CHECK_EQUAL([toolkitClass convertBiasVersionStrToVerStr:@"1003"], @"3.0");
  CHECK([toolkitClass convertBiasVersionStrToVerStr:@"999.5"] == nil);
  CHECK([toolkitClass convertBiasVersionStrToVerStr:@"1100.0"] == nil);
  CHECK([toolkitClass convertBiasVersionStrToVerStr:nil] == nil);
}

static NSString* raisedBy(NSString* version) {
  NSString* name = @"nothing";
  @try {
    [toolkitClass convertVersionStrToBiasStr:version];
  } @catch (NSException* exception) {
    name = [exception name];
  }
  return name;
}

static void tooFewPointsRaiseARangeError(void) {
  CHECK_EQUAL(raisedBy(@"3.1"), NSRangeException);
  CHECK_EQUAL(raisedBy(@"3"), NSRangeException);
  CHECK_EQUAL(raisedBy(@""), NSRangeException);
  CHECK_EQUAL(raisedBy(@".."), @"nothing");
}

static void theSupportListIsComparedWithTheRunningSystem(void) {
  NSString* path = inSupportFolder(@"Config/com.orvan.printing.Quillmere.SupportVersionList.plist");
  CHECK([toolkitClass getandcompLocalSupportVersion:30100] == -1);
  NSDictionary* list =
      [NSDictionary dictionaryWithObjectsAndKeys:@"99.0.0", @"1003.1", @"1.0.0", @"1003.2",
                                                 [NSNumber numberWithInt:990000], @"1003.3", nil];
  writePropertyList(list, path);
  CHECK([toolkitClass getandcompLocalSupportVersion:30100] == 1);
  CHECK([toolkitClass getandcompLocalSupportVersion:30200] == -1);
  CHECK([toolkitClass getandcompLocalSupportVersion:30300] == -1);
  CHECK([toolkitClass getandcompLocalSupportVersion:30400] == -1);
  CHECK([toolkitClass getandcompLocalSupportVersion:-1] == -1);
}

static void bundlesThatAreNotInstalledHaveNoVersion(void) {
  NSFileManager* files = [NSFileManager defaultManager];
  if (![files fileExistsAtPath:@"/Applications/Orvan Utilities/Quillmere/Quillmere.app"]) {
    CHECK([toolkitClass moduleVersion] == -1);
  }
  if (![files fileExistsAtPath:@"/Library/Application Support/Orvan/Quillmere/Plugins"]) {
    CHECK([toolkitClass moduleVersionFromBundle] == -1);
  }
}

const Case toolkitCases[] = {
    {"Toolkit.TheSystemIsKnownInAllItsForms", theSystemIsKnownInAllItsForms},
    {"Toolkit.VersionsCompareMajorsFirst", versionsCompareMajorsFirst},
    {"Toolkit.FoldersLieInTheContainer", foldersLieInTheContainer},
    {"Toolkit.FlagsAreTestedEachInItsWay", flagsAreTestedEachInItsWay},
    {"Toolkit.FoldersAreMadeForTheirOwnerAlone", foldersAreMadeForTheirOwnerAlone},
    {"Toolkit.ADateThatCannotBeShownIsNull", aDateThatCannotBeShownIsNull},
    {"Toolkit.ATextIsMadeFitForAHeader", aTextIsMadeFitForAHeader},
    {"Toolkit.TextIsReplacedUntilNoneIsLeft", textIsReplacedUntilNoneIsLeft},
    {"Toolkit.WhatHasNothingToReplaceComesBackItself", whatHasNothingToReplaceComesBackItself},
    {"Toolkit.VersionTextsBecomeNumbers", versionTextsBecomeNumbers},
    {"Toolkit.VersionNumbersBecomeTexts", versionNumbersBecomeTexts},
    {"Toolkit.ListKeysAreReadBack", listKeysAreReadBack},
    {"Toolkit.TooFewPointsRaiseARangeError", tooFewPointsRaiseARangeError},
    {"Toolkit.TheSupportListIsComparedWithTheRunningSystem",
     theSupportListIsComparedWithTheRunningSystem},
    {"Toolkit.BundlesThatAreNotInstalledHaveNoVersion", bundlesThatAreNotInstalledHaveNoVersion},
    {NULL, NULL}};
