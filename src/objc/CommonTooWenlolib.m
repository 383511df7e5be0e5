#import "wenlolib/objc/CommonTooWenlolib.h"

#include <string.h>

#import "objc/Private.h"

static BOOL sameText(Plain one, Plain other) {
  return one.kind == plainText && other.kind == plainText && one.count == other.count &&
         memcmp(one.as.units, other.as.units, one.count * sizeof(unichar)) == 0;
}

/* Whether a text is null or empty. Then there is nothing to replace in it, and nothing to search
 * for. */
static BOOL isEmpty(Plain text) {
  return text.kind != plainText || text.count == 0;
}

/* nil if there is no memory for one. */
static NSException* rangeError(void) {
  NSException* volatile error = nil;
  @try {
    error = [NSException exceptionWithName:NSRangeException
                                    reason:@"A version needs two points"
                                  userInfo:nil];
  } @catch (...) {
    error = nil;
  }
  return error;
}

@implementation CommonTooWenlolib

+ (NSString*)systemVersion {
  return stringTaking(coreSystemVersion());
}

+ (int)systemVersionNum {
  return coreSystemVersionNum();
}

+ (int)systemBugFixVersion {
  return coreSystemBugFixVersion();
}

+ (int)supportUpperOSVersion {
  return coreSupportUpperOSVersion();
}

+ (NSString*)osVersion {
  return stringTaking(coreOsVersion());
}

+ (NSInteger)compareSystemVersionNumber:(int)major
                                  minor:(int)minor
                             otherMajor:(int)otherMajor
                             otherMinor:(int)otherMinor {
  return coreCompareSystemVersionNumber(major, minor, otherMajor, otherMinor);
}

+ (int)systemArchitecture {
  return coreSystemArchitecture();
}

+ (NSString*)groupIdentifier {
  return stringTaking(coreGroupIdentifier());
}

+ (NSString*)groupContainerDirPath {
  return stringTaking(coreGroupContainerDirPath());
}

+ (NSString*)appSupportDirPath {
  return stringTaking(coreAppSupportDirPath());
}

+ (NSString*)prefDirPath {
  return stringTaking(corePrefDirPath());
}

+ (NSString*)cacheDirPath {
  return stringTaking(coreCacheDirPath());
}

+ (NSString*)pliDirPath:(unsigned char)flag {
  return stringTaking(corePliDirPath(flag));
}

+ (NSString*)almDirPath {
  return stringTaking(coreAlmDirPath());
}

+ (NSString*)confDirPath {
  return stringTaking(coreConfDirPath());
}

+ (NSString*)WENLOLIBDirPath:(unsigned char)flag {
  return stringTaking(coreWENLOLIBDirPath(flag));
}

+ (NSString*)printerListPath {
  return stringTaking(corePrinterListPath());
}

+ (NSString*)surveyInfoPath {
  return stringTaking(coreSurveyInfoPath());
}

+ (NSDictionary*)printerListDictionary {
  return dictionaryTaking(corePrinterListDictionary());
}

+ (NSDictionary*)surveyInfoDictionary {
  return dictionaryTaking(coreSurveyInfoDictionary());
}

+ (BOOL)createDir:(NSString*)path {
  Plain text = textFrom(path);
  const BOOL there = coreCreateDir(text) != 0;
  plainFree(&text);
  return there;
}

+ (NSString*)calendarFormatString:(NSDate*)date isNeedDay:(unsigned char)isNeedDay {
  return stringTaking(coreCalendarFormatString(dateFrom(date), isNeedDay));
}

+ (NSString*)calendarWithTimeZoneFormatString:(NSDate*)date {
  return stringTaking(coreCalendarWithTimeZoneFormatString(dateFrom(date)));
}

+ (NSString*)dateFormatWithHourMinSec:(NSDate*)date {
  return stringTaking(coreDateFormatWithHourMinSec(dateFrom(date)));
}

+ (NSString*)replaceString:(NSString*)string before:(NSString*)before after:(NSString*)after {
  Plain texts[] = {textFrom(string), textFrom(before), textFrom(after)};
  NSString* answer = nil;
  if (texts[0].kind == plainText && texts[1].kind != plainShortage &&
      texts[2].kind != plainShortage) {
    const BOOL same = isEmpty(texts[0]) || isEmpty(texts[1]) || sameText(texts[1], texts[2]);
    answer =
        same ? stillGood(string) : stringTaking(coreReplaceString(texts[0], texts[1], texts[2]));
  }
  plainFree(&texts[0]);
  plainFree(&texts[1]);
  plainFree(&texts[2]);
  return answer;
}

+ (NSString*)convertStrToHeaderStr:(NSString*)string {
  Plain text = mendedTextFrom(string);
  NSString* answer = stringTaking(coreConvertStrToHeaderStr(text));
  plainFree(&text);
  return answer;
}

+ (int)convertVersionStrToNum:(NSString*)version {
  Plain text = textFrom(version);
  const int number = coreConvertVersionStrToNum(text);
  plainFree(&text);
  return number;
}

+ (NSString*)convertVersionNumToStr:(int)version {
  return stringTaking(coreConvertVersionNumToStr(version));
}

+ (NSString*)convertVersionNumToBiasStr:(int)version {
  return stringTaking(coreConvertVersionNumToBiasStr(version));
}

+ (NSString*)convertVersionStrToBiasStr:(NSString*)version {
  Plain text = textFrom(version);
  uint8_t outOfRange = 0;
  NSString* bias = stringTaking(coreConvertVersionStrToBiasStr(text, &outOfRange));
  plainFree(&text);
  if (outOfRange != 0) [rangeError() raise];
  return bias;
}

+ (NSString*)convertBiasVersionStrToVerStr:(NSString*)bias {
  Plain text = textFrom(bias);
  NSString* version = stringTaking(coreConvertBiasVersionStrToVerStr(text));
  plainFree(&text);
  return version;
}

+ (int)moduleVersion {
  return coreModuleVersion();
}

+ (int)moduleVersionFromBundle {
  return coreModuleVersionFromBundle();
}

+ (int)getandcompLocalSupportVersion:(int)version {
  return coreGetandcompLocalSupportVersion(version);
}

@end
