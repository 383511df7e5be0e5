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
 * Class operations without state: every call asks the system again and nothing is cached. Any
 * thread may call at any time. The class is not meant to be instantiated.
 *
 * Whatever a host passes, only convertVersionStrToBiasStr: can raise. An object of a class other
 * than the declared one, a text that is not valid Unicode and an object that raises when it is read
 * all count as nil. If memory runs out, an operation returns what it returns on failure. Returned
 * objects are valid until the calling thread's autorelease pool drains.
 *
 * Version numbers are major * 10000 + minor * 100 + patch (or bug-fix) as a signed 32-bit integer:
 * 10.9.5 is 100905. -1 means unknown or invalid. OS versions and library versions share the form
 * and compare as plain integers.
 *
 * A flag is one byte (unsigned char) because some flags are compared with exactly 1 and others with
 * zero; each method says which.
 */
@interface CommonTooWenlolib : NSObject

/* --- The system --- */

/** The OS version without its bug-fix level, such as "10.15"; nil when it is unknown. */
+ (NSString* WENLOLIB_NULLABLE)systemVersion;

/**
 * The OS version number; -1 when a part of it is unknown. A minor or bug-fix part of 100 or more
 * spills into the next higher field; the number saturates at the 32-bit limits.
 */
+ (int)systemVersionNum;

/** The bug-fix level of the OS alone, or -1. */
+ (int)systemBugFixVersion;

/** 101700 (OS 10.17.0), a constant. From this OS version on, the support version list applies. */
+ (int)supportUpperOSVersion;

/** The OS version in full, such as "10.15.7"; nil when a part of it is unknown. */
+ (NSString* WENLOLIB_NULLABLE)osVersion;

/**
 * Compares (major, minor) with (otherMajor, otherMinor), majors first: -1 if lower, 0 if equal, 1
 * if higher.
 */
+ (NSInteger)compareSystemVersionNumber:(int)major
                                  minor:(int)minor
                             otherMajor:(int)otherMajor
                             otherMinor:(int)otherMinor;

/** The processor architecture: 1 for 68k, 2 for PowerPC, 10 for Intel, or -1 when unknown. */
+ (int)systemArchitecture;

/* --- Folders and the files in them ---
 *
 * Paths are absolute. A path is nil if a folder that it lies in cannot be determined. The library
 * creates none of these folders: the host does, for example with createDir:. */

/** The identifier of the app group whose container holds the folders: "K7MW2PL9QD.QX.common". */
+ (NSString* WENLOLIB_NULLABLE)groupIdentifier;

/**
 * The app-group container, as the system's lookup returns it, nil included. If the system offers no
 * lookup, it is "/Users/<login name>/Library/Group Containers/<identifier>". Linux's lookup returns
 * the same folder below the home folder.
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
 * The folder of printer logs. For any flag other than zero, "PLM" in the support folder; for zero,
 * "/Users/Shared/Orvan Quillmere/Logs", which needs no container.
 */
+ (NSString* WENLOLIB_NULLABLE)pliDirPath:(unsigned char)flag;

/** "ALM" in the support folder: application usage records. */
+ (NSString* WENLOLIB_NULLABLE)almDirPath;

/**
 * "Config" in the support folder: the preference file, the support version list and the library's
 * configuration file.
 */
+ (NSString* WENLOLIB_NULLABLE)confDirPath;

/**
 * For a flag of exactly 1, "PlugIns" in the support folder; for any other value, "Frameworks"
 * there. On purpose, 2 does not count as true here, unlike in pliDirPath:.
 */
+ (NSString* WENLOLIB_NULLABLE)WENLOLIBDirPath:(unsigned char)flag;

/** Two property lists in the user's Library folder; nil if the user has no such folder. */
+ (NSString* WENLOLIB_NULLABLE)printerListPath;
+ (NSString* WENLOLIB_NULLABLE)surveyInfoPath;

/**
 * The contents of these files. nil if the path is nil, if the file is missing or unreadable, or if
 * its root is not a dictionary. Keys are not checked. The dictionary belongs to the caller alone.
 */
+ (NSDictionary* WENLOLIB_NULLABLE)printerListDictionary;
+ (NSDictionary* WENLOLIB_NULLABLE)surveyInfoDictionary;

/**
 * Creates every missing level of path as a folder with mode 0700, whatever the file-creation mask.
 * YES if something already exists at path (even a file; it is left as it is) or if every level was
 * created. NO for nil and if a level cannot be created; the levels created before it stay.
 */
+ (BOOL)createDir:(NSString* WENLOLIB_NULLABLE)path;

/* --- Dates and text ---
 *
 * Dates are shown in the Gregorian calendar and Foundation's default zone ([NSTimeZone
 * defaultTimeZone]), with the offset in force at that date. Fields are padded with zeros to the
 * width shown and never cut. nil for a nil date, for one that the calendar cannot show (one that is
 * not finite, for example), and if the zone raises. */

/**
 * Two-digit year and month, such as "2403"; for a flag of exactly 1, followed by the day, such as
 * "240315". The year is counted from 2000, so from 2100 on the text begins with three digits.
 */
+ (NSString* WENLOLIB_NULLABLE)calendarFormatString:(NSDate* WENLOLIB_NULLABLE)date
                                          isNeedDay:(unsigned char)isNeedDay;

/** "2024-03-15T09:05:07+09:00"; any seconds in the zone's offset are dropped. */
+ (NSString* WENLOLIB_NULLABLE)calendarWithTimeZoneFormatString:(NSDate* WENLOLIB_NULLABLE)date;

/** "2024/03/15 09:05:07". */
+ (NSString* WENLOLIB_NULLABLE)dateFormatWithHourMinSec:(NSDate* WENLOLIB_NULLABLE)date;

/**
 * string with every occurrence of before replaced by after (nil: removed). The search starts again
 * from the beginning after every replacement, so text that a replacement brings together is found
 * too: replacing "aa" with "a" in "aaaa" gives "a".
 *
 * Do not pass an after that contains before and more: the replacing would never end.
 *
 * Returns string itself, the same object, if it is nil or empty, if before is nil or empty, and if
 * before and after are the same. In all other cases it returns a new text.
 */
+ (NSString* WENLOLIB_NULLABLE)replaceString:(NSString* WENLOLIB_NULLABLE)string
                                      before:(NSString* WENLOLIB_NULLABLE)before
                                       after:(NSString* WENLOLIB_NULLABLE)after;

/**
 * string made fit for a header value, which goes into a document without escaping: what a printer
 * says about itself, for example. "<", ">", "&", carriage returns, characters that XML does not
 * allow and half a surrogate pair that stands alone become "_". The result is cut at a character to
 * at most 1,023 bytes of UTF-8, so every XML serialiser leaves it as it is. A new text, empty for
 * an empty one; nil for nil alone.
 */
+ (NSString* WENLOLIB_NULLABLE)convertStrToHeaderStr:(NSString* WENLOLIB_NULLABLE)string;

/* --- Version numbers --- */

/**
 * The number of a version text such as "3.1.0". Only the leading digits of a part count, a missing
 * part is 0, and parts after the third are ignored. -1 for nil and for a major of 0, or of 100 or
 * more. A minor or patch of 100 or more gives the bare major ("3.100.0" gives 3), on purpose.
 * Saturates at the 32-bit limits.
 */
+ (int)convertVersionStrToNum:(NSString* WENLOLIB_NULLABLE)version;

/** "major.minor.patch"; nil if the major is not 1 to 99. */
+ (NSString* WENLOLIB_NULLABLE)convertVersionNumToStr:(int)version;

/**
 * The key of the support version list: (major + 1000), a point, minor, such as "1003.1"; nil if the
 * major is not 1 to 99.
 */
+ (NSString* WENLOLIB_NULLABLE)convertVersionNumToBiasStr:(int)version;

/**
 * The same for a version text, which must have at least two points; nil for nil. With fewer points
 * it raises NSRangeException. No other operation of this library raises.
 */
+ (NSString* WENLOLIB_NULLABLE)convertVersionStrToBiasStr:(NSString* WENLOLIB_NULLABLE)version;

/**
 * "major.minor" of a list key: "1003.1" gives "3.1". nil for nil and for a first part that is not
 * 1000 to 1099.
 */
+ (NSString* WENLOLIB_NULLABLE)convertBiasVersionStrToVerStr:(NSString* WENLOLIB_NULLABLE)bias;

/**
 * "CFBundleVersion" of the host application, at its fixed path, as a number; -1 if the bundle or
 * the key is missing.
 */
+ (int)moduleVersion;

/** The same for the installed library, at its fixed path. */
+ (int)moduleVersionFromBundle;

/**
 * Whether the support version list allows the given library version on the running OS: 1 for yes;
 * -1 for no, and also if the list, its entry or the OS version is not known.
 */
+ (int)getandcompLocalSupportVersion:(int)version;

@end

WENLOLIB_NONNULL_END

#endif
