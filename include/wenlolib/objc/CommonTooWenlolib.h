/* The common toolkit: system, folders, dates, text and version numbers, for Objective-C hosts. */
#ifndef WENLOLIB_OBJC_COMMONTOOWENLOLIB_H
#define WENLOLIB_OBJC_COMMONTOOWENLOLIB_H

#import <Foundation/Foundation.h>

/* Nullability, for compilers that know it. */
#ifndef WENLOLIB_NULLABLE
#ifdef __has_feature
#if __has_feature(nullability)
#define WENLOLIB_NULLABLE _Nullable
#define WENLOLIB_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define WENLOLIB_NONNULL_END _Pragma("clang assume_nonnull end")
#endif
#endif
#endif
#ifndef WENLOLIB_NULLABLE
#define WENLOLIB_NULLABLE
#define WENLOLIB_NONNULL_BEGIN
#define WENLOLIB_NONNULL_END
#endif

WENLOLIB_NONNULL_BEGIN

/**
 * Class operations without state: every call asks the system again, nothing is cached, any thread
 * may call at any time. The class is not meant to be instantiated.
 *
 * Whatever a host passes, no exception leaves, but for the range error that
 * convertVersionStrToBiasStr: names. An object of another class than the one declared, a text that
 * is no Unicode and an object that raises when it is read all count as nil. Where memory runs out,
 * the answer is the failing one. Objects that are answered are good until the calling thread's
 * autorelease pool drains.
 *
 * Version numbers are major * 10000 + minor * 100 + patch (or bug-fix) as a signed 32-bit integer:
 * 10.9.5 is 100905. -1 means unknown or invalid. OS versions and library versions share the form
 * and compare as plain integers.
 *
 * A flag is one byte (unsigned char) because some flags are compared with exactly 1 and others with
 * zero; which is said where the flag is.
 */
@interface CommonTooWenlolib : NSObject

/* --- The system --- */

/** The OS version without its bug-fix level, such as "10.15"; nil when it is unknown. */
+ (NSString* WENLOLIB_NULLABLE)systemVersion;

/**
 * The OS version number; -1 when a part of it is unknown. A minor or bug-fix part of 100 or more
 * spills into the next field; the number saturates at the 32-bit limits.
 */
+ (int)systemVersionNum;

/** The bug-fix level of the OS alone, or -1. */
+ (int)systemBugFixVersion;

/** 101700 (OS 10.17.0), the fixed bound from which on the support version list counts. */
+ (int)supportUpperOSVersion;

/** The OS version in full, such as "10.15.7"; nil when a part of it is unknown. */
+ (NSString* WENLOLIB_NULLABLE)osVersion;

/**
 * Compares (major, minor) with (otherMajor, otherMinor), majors first: -1 lower, 0 equal, 1 higher.
 */
+ (NSInteger)compareSystemVersionNumber:(int)major
                                  minor:(int)minor
                             otherMajor:(int)otherMajor
                             otherMinor:(int)otherMinor;

/** The processor architecture: 1 for 68k, 2 for PowerPC, 10 for Intel, or -1 when unknown. */
+ (int)systemArchitecture;

/* --- Folders and the files in them ---
 *
 * Paths are absolute. A path below a folder that cannot be determined is nil. The library makes
 * none of these folders: the host does, for instance with createDir:. */

/** The identifier of the app group whose container holds the folders: "K7MW2PL9QD.QX.common". */
+ (NSString* WENLOLIB_NULLABLE)groupIdentifier;

/**
 * The app-group container: what the system's lookup answers, nil included. Only where the system
 * offers no lookup is it "/Users/<login name>/Library/Group Containers/<identifier>".
 */
+ (NSString* WENLOLIB_NULLABLE)groupContainerDirPath;

/**
 * "Library/Application Support/QMR", "Library/Preferences/QMR" and "Library/Caches/QMR" in the
 * container.
 */
+ (NSString* WENLOLIB_NULLABLE)appSupportDirPath;
+ (NSString* WENLOLIB_NULLABLE)prefDirPath;
+ (NSString* WENLOLIB_NULLABLE)cacheDirPath;

/**
 * The folder of printer logs: "PLM" in the support folder for any flag other than zero; for zero
 * "/Users/Shared/Orvan Quillmere/Logs", which is there without a container too.
 */
+ (NSString* WENLOLIB_NULLABLE)pliDirPath:(unsigned char)flag;

/** "ALM" in the support folder: application usage records. */
+ (NSString* WENLOLIB_NULLABLE)almDirPath;

/** "Config" in the support folder: preferences, support version list, the library's own file. */
+ (NSString* WENLOLIB_NULLABLE)confDirPath;

/**
 * In the support folder "PlugIns" for a flag of exactly 1, "Frameworks" for any other value: unlike
 * in pliDirPath:, 2 is not true here. On purpose.
 */
+ (NSString* WENLOLIB_NULLABLE)WENLOLIBDirPath:(unsigned char)flag;

/** Two preference files in the user's Library folder; nil where the user has no such folder. */
+ (NSString* WENLOLIB_NULLABLE)printerListPath;
+ (NSString* WENLOLIB_NULLABLE)surveyInfoPath;

/**
 * What these files hold; nil when the path is nil, or the file is missing, unreadable, or has no
 * dictionary at its root. Keys are not checked. The dictionary is the caller's alone.
 */
+ (NSDictionary* WENLOLIB_NULLABLE)printerListDictionary;
+ (NSDictionary* WENLOLIB_NULLABLE)surveyInfoDictionary;

/**
 * Makes every missing level of path a folder with mode 0700, whatever the file-creation mask. YES
 * when something already stood at path (a file too; it is left as it is), or when all is made. NO
 * for nil and for a failed creation; what was made until then stays.
 */
+ (BOOL)createDir:(NSString* WENLOLIB_NULLABLE)path;

/* --- Dates and text ---
 *
 * Dates are shown in the Gregorian calendar and Foundation's default zone ([NSTimeZone
 * defaultTimeZone]), as it is at that date. Fields are padded with zeros to the width shown and
 * never cut. nil for a nil date, for one that the calendar cannot show (one that is not finite,
 * say), and where the zone raises. */

/**
 * Two-digit year and month, "2403", with the day after it, "240315", for a flag of exactly 1. The
 * year is counted from 2000: in 2100 the text begins with three digits.
 */
+ (NSString* WENLOLIB_NULLABLE)calendarFormatString:(NSDate* WENLOLIB_NULLABLE)date
                                          isNeedDay:(unsigned char)isNeedDay;

/** "2024-03-15T09:05:07+09:00"; odd seconds of the zone's offset are dropped. */
+ (NSString* WENLOLIB_NULLABLE)calendarWithTimeZoneFormatString:(NSDate* WENLOLIB_NULLABLE)date;

/** "2024/03/15 09:05:07". */
+ (NSString* WENLOLIB_NULLABLE)dateFormatWithHourMinSec:(NSDate* WENLOLIB_NULLABLE)date;

/**
 * string with every occurrence of before replaced by after (nil: removed). The search starts again
 * from the beginning after every replacement, so text that a replacement brings together is found
 * too: replacing "aa" by "a" in "aaaa" gives "a".
 *
 * A replacement that contains the text to find never comes to an end: do not ask for it.
 *
 * string itself, the same object, is the answer when it is nil or empty, when before is nil or
 * empty, and when both texts are the same; in all other cases the answer is a new text.
 */
+ (NSString* WENLOLIB_NULLABLE)replaceString:(NSString* WENLOLIB_NULLABLE)string
                                      before:(NSString* WENLOLIB_NULLABLE)before
                                       after:(NSString* WENLOLIB_NULLABLE)after;

/* --- Version numbers --- */

/**
 * The number of a version text such as "3.1.0"; parts after the third are ignored, missing ones are
 * 0, and a part is what its leading digits say. -1 for nil and for a major of 0 or of 100 and more.
 * A minor or patch of 100 or more gives the bare major ("3.100.0" gives 3), on purpose. Saturates
 * at the 32-bit limits.
 */
+ (int)convertVersionStrToNum:(NSString* WENLOLIB_NULLABLE)version;

/** "major.minor.patch"; nil when the major is not 1 to 99. */
+ (NSString* WENLOLIB_NULLABLE)convertVersionNumToStr:(int)version;

/**
 * The key of the support version list, "major + 1000.minor", such as "1003.1"; nil when the major
 * is not 1 to 99.
 */
+ (NSString* WENLOLIB_NULLABLE)convertVersionNumToBiasStr:(int)version;

/**
 * The same for a version text with at least two points; nil for nil. With fewer points it raises
 * NSRangeException, the one operation of this library that raises.
 */
+ (NSString* WENLOLIB_NULLABLE)convertVersionStrToBiasStr:(NSString* WENLOLIB_NULLABLE)version;

/**
 * "major.minor" of a list key: "1003.1" gives "3.1". nil for nil and for a first part that is not
 * 1000 to 1099.
 */
+ (NSString* WENLOLIB_NULLABLE)convertBiasVersionStrToVerStr:(NSString* WENLOLIB_NULLABLE)bias;

/**
 * "CFBundleVersion" as a number, of the host application and of the installed library, each at its
 * fixed path; -1 without the bundle or the key.
 */
+ (int)moduleVersion;
+ (int)moduleVersionFromBundle;

/**
 * Whether the support version list allows the library version given on the running OS: 1 for yes;
 * -1 for no, and when the list, its entry or the OS version is not known.
 */
+ (int)getandcompLocalSupportVersion:(int)version;

@end

WENLOLIB_NONNULL_END

#endif
