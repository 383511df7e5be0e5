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
 * One record on its way into a file, and the class operations with which a host records.
 *
 * Most hosts need only writeAppInfoWithContents:name:option: and
 * writePrinterLogInfoWithContents:name:option:otherInfo:. A host may also build a record itself and
 * write it with writeAppInfo, which does not check whether recording is allowed.
 *
 * Whatever a host passes, no exception reaches it and nothing is printed. An object of a class
 * other than the declared one, a text that is not valid Unicode (half a surrogate pair) and an
 * object that raises when it is read all count as nil. If memory runs out, a call returns what it
 * returns on failure. What a subclass's own method raises is caught by the two operations that
 * record, which then return NO, and by the initialisers, which then return nil. (The alloc that a
 * host sends is Foundation's own, and raises as it does anywhere.)
 *
 * Local time is that of Foundation's default zone, [NSTimeZone defaultTimeZone].
 *
 * Nothing is kept in memory between calls. Calls are synchronous. Class operations may be called
 * from any thread; a record may be used by one thread at a time. The calling thread needs an
 * autorelease pool; returned objects are valid until it drains.
 *
 * Results of type BOOL are YES or NO. A flag is one byte (unsigned char) because some flags are
 * compared with exactly 1 and others with zero; each method says which.
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
 * Records application usage: asks isSupported: first, and looks at the other arguments only if
 * recording is allowed.
 *
 * contents is the text to record; name is the application's name, which becomes part of the file's
 * name. Neither may be nil; both may be empty. option is kept as it is. Its low four bits, the
 * mode, choose what recording requires and where the document's language comes from.
 *
 * NO if recording is refused, if contents or name is nil, and whenever writeAppInfo returns NO.
 */
+ (BOOL)writeAppInfoWithContents:(NSString* WENLOLIB_NULLABLE)contents
                            name:(NSString* WENLOLIB_NULLABLE)name
                          option:(unsigned int)option;

/**
 * Records a printer log in the same way, after asking isSupportedPlm:. otherInfo is the printer's
 * identity, see serOtherInfo:; nil means that nothing is known about the printer.
 */
+ (BOOL)writePrinterLogInfoWithContents:(NSString* WENLOLIB_NULLABLE)contents
                                   name:(NSString* WENLOLIB_NULLABLE)name
                                 option:(unsigned int)option
                              otherInfo:(NSDictionary* WENLOLIB_NULLABLE)otherInfo;

/**
 * Whether application usage may be recorded now. The rule is given at isSupported in
 * <wenlolib/WENLOLIB.h>. Only the low four bits of option count.
 */
+ (BOOL)isSupported:(unsigned int)option;

@end

/** Building, writing and querying a record; two more class operations. */
@interface WENLOLIB (WENLOLIBMethods)

/* --- Building a record --- */

/** A printer log record (file type 1) without contents or name, and with option 0. */
- (id WENLOLIB_NULLABLE)init;

/** The same as initWithContents:name:option: without a name and with option 0. */
- (id WENLOLIB_NULLABLE)initWithContents:(NSString* WENLOLIB_NULLABLE)contents;

/** The same as initWithContents:name:option: with option 0. */
- (id WENLOLIB_NULLABLE)initWithContents:(NSString* WENLOLIB_NULLABLE)contents
                                    name:(NSString* WENLOLIB_NULLABLE)name;

/**
 * Makes a record with init (a subclass's own, if it has one), then sets contents and name with
 * setContents: and setApplicationName:. The option word is kept as it is.
 */
- (id WENLOLIB_NULLABLE)initWithContents:(NSString* WENLOLIB_NULLABLE)contents
                                    name:(NSString* WENLOLIB_NULLABLE)name
                                  option:(unsigned int)option;

/**
 * Sets the contents. The record makes its own text with the same characters, so later changes to
 * the host's text do not affect it. nil clears the field. Passing the very object that the record
 * already holds (see contents) changes nothing.
 */
- (void)setContents:(NSString* WENLOLIB_NULLABLE)contents;

/** Sets the name used in the file's name, in the same way. */
- (void)setApplicationName:(NSString* WENLOLIB_NULLABLE)name;

/**
 * The text that the record holds itself, or nil. It stays valid until the caller's autorelease pool
 * drains, even if the record is changed or released before that.
 */
- (NSString* WENLOLIB_NULLABLE)contents;
- (NSString* WENLOLIB_NULLABLE)applicationName;

/** 1 for a printer log record, 2 for application usage; any other value is ignored. */
- (void)setFileType:(unsigned int)fileType;
- (unsigned int)fileType;

/**
 * The printer's identity: texts under "DeviceID", "SN" and "ROMVER"; under "NEWTAGTYPE" a boolean,
 * a number (true unless it is zero) or a text (true if, after white space, a sign and zeros, it
 * continues with Y, y, T, t or a digit 1 to 9). Other keys are ignored.
 *
 * The record makes a deep copy; later changes to the host's objects do not affect it. An entry is
 * left out if its key is not a text, or if its value is not a text, number, date, data (of one of
 * Foundation's own classes), array or dictionary. nil is ignored: the record keeps what it had.
 *
 * If there is no memory to keep an identity, no document can be made from the record until it is
 * given one again.
 */
- (void)serOtherInfo:(NSDictionary* WENLOLIB_NULLABLE)otherInfo;

/* --- Writing it --- */

/**
 * Makes the survey document from the record and keeps it for writeAppInfo. NO if memory runs out
 * and for contents of 2 GiB or more. YES does not mean that there is a new document: none is made
 * if a value holds markup that cannot be repaired, or a character that XML does not allow, such as
 * U+0001 or U+FFFE, which is never repaired. If no new document is made, the record keeps the one
 * that an earlier call made, if any.
 */
- (BOOL)WENLOLIBCreateXMLDocument;

/**
 * Makes the document and writes it to a file with mode 0666: to the first free number in the folder
 * of printer logs, or to this month's file in the folder of application usage. NO without contents
 * or name, if there is no document because memory runs out or the system cannot tell what is in a
 * file, and if the file cannot be written. An earlier file then keeps its contents. After a failed
 * write its mode is still set to 0666, on purpose, if it is a regular file with no other name and
 * is not reached through a link.
 *
 * YES if the file is written and also, on purpose, if there is no document to write (see above), so
 * that no file is made. If no new document can be made but an earlier call made one, that one is
 * written, however the record has changed since. Once a write has been tried, the record no longer
 * holds a document.
 */
- (BOOL)writeAppInfo;

/* --- The values that a document carries; @"" if a value is unknown, never nil --- */

/** The host application's version, cut to two components, such as "2.1". */
- (NSString*)getCliantVersion;

/** This library's own version, cut to two components. */
- (NSString*)getCliantVersionforALM;

/** "M." and the OS version, such as "M.10.13.6". */
- (NSString*)getOSVersion;

/**
 * Language and one more component, such as "zh_Hans". The low four bits of the option choose the
 * source: 1 for the language last selected in the host, 0 and 2 for the user's locale; other values
 * give @"".
 */
- (NSString*)getLocale;

/**
 * The identifier of this installation, such as "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}". The first
 * call on a record reads it from the library's configuration file; if there is none yet, the call
 * makes one and tries to store it there. The record then keeps it, and later calls return the same
 * object.
 */
- (NSString*)getWENLOLIBId;

/** The texts given to serOtherInfo:; a value that is not text counts as absent. */
- (NSString*)getDevId;
- (NSString*)getSerialNum;
- (NSString*)getRomVersion;

/** The truth value of "NEWTAGTYPE"; NO if it is absent. */
- (BOOL)isNewTagTypePrinter;

/* --- More class operations --- */

/**
 * Whether a printer log may be recorded now, by the rule of isSupportedPlm in
 * <wenlolib/WENLOLIB.h>. option is ignored.
 */
+ (BOOL)isSupportedPlm:(unsigned int)option;

/**
 * Runs the executable file at path with the texts in args (nil: none). With a wait of exactly 1 the
 * call waits for the program to end and returns its exit status, or the number of the signal that
 * ended it. With any other value it returns 0 at once, and the program runs on by itself.
 *
 * Also 0 if path is nil or not an executable file, and if the program cannot be started. If args is
 * not an array or holds anything but texts, the program is not started, because it would run with
 * the wrong arguments.
 */
+ (int)createTask:(NSString* WENLOLIB_NULLABLE)path
             args:(NSArray* WENLOLIB_NULLABLE)args
             wait:(unsigned char)wait;

@end

WENLOLIB_NONNULL_END

#endif
