/* The record, and the library's entry points, for Objective-C hosts. */
#ifndef WENLOLIB_OBJC_WENLOLIB_H
#define WENLOLIB_OBJC_WENLOLIB_H

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
 * One record on its way into a file, and the class operations by which a host records.
 *
 * Most hosts need writeAppInfoWithContents:name:option: and
 * writePrinterLogInfoWithContents:name:option:otherInfo: alone. A host may also build a record
 * itself and write it with writeAppInfo, which asks no one's permission.
 *
 * Whatever a host passes, no exception leaves and nothing is printed. An object of another class
 * than the one declared, a text that is no Unicode (half a surrogate pair) and an object that
 * raises when it is read all count as nil. Where memory runs out, the answer is the failing one.
 * What a subclass's own method raises ends in the two operations that record, which then answer NO,
 * and in the initialisers, which answer nil. (The alloc that a host sends is Foundation's, and
 * raises as it does anywhere.)
 *
 * Local time is that of Foundation's default zone, [NSTimeZone defaultTimeZone].
 *
 * Nothing is kept in memory between calls. Calls are synchronous; class operations may be called
 * from any thread, a record by one thread at a time. The calling thread needs an autorelease pool,
 * and objects that are answered are good until it drains.
 *
 * Answers of type BOOL are YES or NO. A flag is one byte (unsigned char) because some flags are
 * compared with exactly 1 and others with zero; which is said where the flag is.
 */
@interface WENLOLIB : NSObject {
  NSString* _xmlContents;
  NSString* _applicationName;
  unsigned int _options;
  unsigned int _fileType;
  NSString* _pathToPrefFile;     /* reserved: always nil */
  NSDictionary* _prefDictionary; /* reserved: always nil */
  NSData* _xmlDocment;           /* from document creation until the file is written */
  NSDictionary* _otherInfoDict;
  NSString* _libUUID; /* the installation's identifier, once asked for */
}

/**
 * Records application usage: asks isSupported: first, and only then looks at the other arguments.
 *
 * contents is the payload, name the application's name, which becomes part of the file's name;
 * neither may be nil, both may be empty. option is kept as it is; its low four bits, the mode,
 * choose what is asked before recording, and where the document's language comes from.
 *
 * NO when refused, when contents or name is nil, and when writeAppInfo answers NO.
 */
+ (BOOL)writeAppInfoWithContents:(NSString* WENLOLIB_NULLABLE)contents
                            name:(NSString* WENLOLIB_NULLABLE)name
                          option:(unsigned int)option;

/**
 * Records a printer log in the same way, after isSupportedPlm:. otherInfo is the printer's
 * identity, see serOtherInfo:; nil means that nothing is known of the printer.
 */
+ (BOOL)writePrinterLogInfoWithContents:(NSString* WENLOLIB_NULLABLE)contents
                                   name:(NSString* WENLOLIB_NULLABLE)name
                                 option:(unsigned int)option
                              otherInfo:(NSDictionary* WENLOLIB_NULLABLE)otherInfo;

/**
 * Whether application usage may be recorded now. The rule stands with isSupported in
 * <wenlolib/WENLOLIB.h>. Of option the low four bits count.
 */
+ (BOOL)isSupported:(unsigned int)option;

@end

/** Building, writing and asking a record; two more class operations. */
@interface WENLOLIB (WENLOLIBMethods)

/* --- Building a record --- */

/** A printer log record (file type 1) without contents and name, option 0. */
- (id WENLOLIB_NULLABLE)init;

/** The same as initWithContents:name:option: without a name and with option 0. */
- (id WENLOLIB_NULLABLE)initWithContents:(NSString* WENLOLIB_NULLABLE)contents;

/** The same as initWithContents:name:option: with option 0. */
- (id WENLOLIB_NULLABLE)initWithContents:(NSString* WENLOLIB_NULLABLE)contents
                                    name:(NSString* WENLOLIB_NULLABLE)name;

/**
 * A record as init makes it (the record's own init is called), then given contents and name by
 * setContents: and setApplicationName:, and this option word, which is kept as it is.
 */
- (id WENLOLIB_NULLABLE)initWithContents:(NSString* WENLOLIB_NULLABLE)contents
                                    name:(NSString* WENLOLIB_NULLABLE)name
                                  option:(unsigned int)option;

/**
 * The payload. The record makes a text of its own with the same characters, so that later changes
 * to the host's text do not reach it. nil clears the field. The very object that the record holds
 * already (see contents) changes nothing.
 */
- (void)setContents:(NSString* WENLOLIB_NULLABLE)contents;

/** The name used in the file's name, by the same rule. */
- (void)setApplicationName:(NSString* WENLOLIB_NULLABLE)name;

/**
 * The text that the record holds itself, or nil. It stays valid until the caller's autorelease pool
 * drains, even when the record is changed or goes away before that.
 */
- (NSString* WENLOLIB_NULLABLE)contents;
- (NSString* WENLOLIB_NULLABLE)applicationName;

/** 1 for a printer log record, 2 for application usage; any other value is ignored. */
- (void)setFileType:(unsigned int)fileType;
- (unsigned int)fileType;

/**
 * The printer's identity: texts under "DeviceID", "SN" and "ROMVER"; under "NEWTAGTYPE" a boolean,
 * a number (true unless it is zero) or a text (true where it begins with Y, y, T, t or a digit 1 to
 * 9 after white space, a sign and zeros). Other keys are ignored.
 *
 * The record makes a dictionary of its own, all the way down; later changes to the host's objects
 * do not reach it. Entries whose key is no text or whose value is no text, number, date, data (of a
 * class of Foundation's own), array or dictionary are left out. nil is ignored: the record keeps
 * what it had.
 *
 * Where there is no memory to keep an identity, the record comes to no document until it is given
 * one again.
 */
- (void)serOtherInfo:(NSDictionary* WENLOLIB_NULLABLE)otherInfo;

/* --- Writing it --- */

/**
 * Makes the survey document from the record and keeps it for writeAppInfo. NO when memory runs out
 * and for contents of 2 GiB and more. YES does not mean that there is a new document: there is none
 * where a value holds markup that cannot be mended or a character that XML does not have, such as
 * U+0001 or U+FFFE, which is never mended. Whenever no new document is made the record keeps the
 * one that an earlier call has made, if any.
 */
- (BOOL)WENLOLIBCreateXMLDocument;

/**
 * Makes the document and writes it, with mode 0666, to the first free number in the folder of
 * printer logs or to this month's file in the folder of application usage. NO without contents or
 * name, when there is no document for lack of memory or because the system cannot say what is in a
 * file, and when the file could not be written. An earlier file then holds what it held; after a
 * failed write its mode is opened to 0666 all the same, on purpose, where it is a regular file with
 * no other name and not reached through a link.
 *
 * YES when the file is written, and also, on purpose, when the record holds no document (see above)
 * and so comes to no file. Where no new document can be made, but an earlier call has made one,
 * that one is written, whatever the record was changed to since. Once a write was tried the record
 * holds no document.
 */
- (BOOL)writeAppInfo;

/* --- The values that a document carries; @"" where a value is unknown, never nil --- */

/** The host application's version, cut to two components, such as "2.1". */
- (NSString*)getCliantVersion;

/** This library's own version, cut to two components. */
- (NSString*)getCliantVersionforALM;

/** "M." and the OS version, such as "M.10.13.6". */
- (NSString*)getOSVersion;

/**
 * Language and one more component, such as "zh_Hans". The low four bits of the option choose the
 * source: 1 the language last selected in the host, 0 and 2 the user's locale; others give @"".
 */
- (NSString*)getLocale;

/**
 * The identifier of this installation, such as "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}". The first
 * call on a record reads the library's configuration file, and where that has none yet makes one
 * and tries to store it; the record then keeps it, and later calls answer the same object.
 */
- (NSString*)getWENLOLIBId;

/** The texts given by serOtherInfo:; a value that is not text counts as absent. */
- (NSString*)getDevId;
- (NSString*)getSerialNum;
- (NSString*)getRomVersion;

/** The truth value of "NEWTAGTYPE"; NO where it is absent. */
- (BOOL)isNewTagTypePrinter;

/* --- More class operations --- */

/**
 * Whether a printer log may be recorded now, by the rule of isSupportedPlm there. option is
 * ignored.
 */
+ (BOOL)isSupportedPlm:(unsigned int)option;

/**
 * Runs the executable file at path with the texts in args (nil: none). With a wait of exactly 1 the
 * call ends with the program and answers its exit status (the signal's number where a signal ended
 * it); with any other value the answer is 0 at once and the program runs on by itself.
 *
 * 0 too when path is nil or no executable file, and when the program could not be started. Where
 * args is no array or holds anything but texts, the program is not started: it would run with other
 * arguments than those meant.
 */
+ (int)createTask:(NSString* WENLOLIB_NULLABLE)path
             args:(NSArray* WENLOLIB_NULLABLE)args
             wait:(unsigned char)wait;

@end

WENLOLIB_NONNULL_END

#endif
