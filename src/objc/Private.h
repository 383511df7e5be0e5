/* What stands between the Objective-C classes and the core.
 *
 * Values cross in plain C. A host's objects are read only in Objective-C, where what they raise can
 * be caught. The core is called only in C++, where what it throws can be caught. So no object or
 * exception of one side ever reaches a frame of the other. */
#ifndef WENLOLIB_OBJC_PRIVATE_H
#define WENLOLIB_OBJC_PRIVATE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum PlainKind {
  plainNothing,  /* null, and what cannot be converted */
  plainShortage, /* what could not be converted for lack of memory */
  plainBoolean,
  plainInteger,
  plainNatural,
  plainReal,
  plainDate,
  plainText,
  plainData,
  plainArray,
  plainDictionary
} PlainKind;

/* A value. It owns what it points to, from malloc or calloc, until plainFree. */
typedef struct Plain {
  PlainKind kind;
  size_t count; /* of characters, bytes or items; each entry of a dictionary is two items */
  union {
    int64_t integer; /* a boolean too */
    uint64_t natural;
    double real;     /* a date too, in seconds since 1970 */
    uint16_t* units; /* a text's characters, in UTF-16 */
    uint8_t* bytes;
    struct Plain* items;
  } as;
  struct Plain* around; /* the array or dictionary that it lies in; for plainFree alone */
} Plain;

/* Frees what the value holds, all the way down, and makes it nothing. */
void plainFree(Plain* plain);

/* The core's operations. Arguments stay the caller's; the caller frees the results. Nothing is
 * thrown; a text that is not valid Unicode counts as nothing. */

/* A record's fields, lent for one operation. */
typedef struct CoreRecord {
  Plain contents, applicationName, otherInfo;
  Plain identifier, document; /* the operation may replace these two */
  uint32_t options, fileType;
} CoreRecord;

void coreTraceEntry(Plain name);
uint8_t coreIsSupported(uint32_t option);
uint8_t coreIsSupportedPlm(uint32_t option);
int32_t coreCreateTask(Plain path, Plain arguments, uint8_t wait);
uint8_t coreCreateXMLDocument(CoreRecord* record);
uint8_t coreWriteAppInfo(CoreRecord* record);
Plain coreCliantVersion(void);
Plain coreCliantVersionforALM(void);
Plain coreMarkedOSVersion(void);
Plain coreLocale(uint32_t options);
Plain coreIdentifier(void);
Plain coreDevId(Plain otherInfo);
Plain coreSerialNum(Plain otherInfo);
Plain coreRomVersion(Plain otherInfo);
uint8_t coreIsNewTagTypePrinter(Plain otherInfo);

Plain coreSystemVersion(void);
int32_t coreSystemVersionNum(void);
int32_t coreSystemBugFixVersion(void);
int32_t coreSupportUpperOSVersion(void);
Plain coreOsVersion(void);
ptrdiff_t coreCompareSystemVersionNumber(int32_t major, int32_t minor, int32_t otherMajor,
                                         int32_t otherMinor);
int32_t coreSystemArchitecture(void);

Plain coreGroupIdentifier(void);
Plain coreGroupContainerDirPath(void);
Plain coreAppSupportDirPath(void);
Plain corePrefDirPath(void);
Plain coreCacheDirPath(void);
Plain corePliDirPath(uint8_t flag);
Plain coreAlmDirPath(void);
Plain coreConfDirPath(void);
Plain coreWENLOLIBDirPath(uint8_t flag);
Plain corePrinterListPath(void);
Plain coreSurveyInfoPath(void);
Plain corePrinterListDictionary(void);
Plain coreSurveyInfoDictionary(void);
uint8_t coreCreateDir(Plain path);

/* A date must be a value of the kind plainDate; any other value gives nothing. */
Plain coreCalendarFormatString(Plain date, uint8_t isNeedDay);
Plain coreCalendarWithTimeZoneFormatString(Plain date);
Plain coreDateFormatWithHourMinSec(Plain date);
Plain coreReplaceString(Plain string, Plain before, Plain after);

Plain coreConvertStrToHeaderStr(Plain string);

int32_t coreConvertVersionStrToNum(Plain version);
Plain coreConvertVersionNumToStr(int32_t version);
Plain coreConvertVersionNumToBiasStr(int32_t version);
Plain coreConvertVersionStrToBiasStr(Plain version, uint8_t* outOfRange);
Plain coreConvertBiasVersionStrToVerStr(Plain bias);
int32_t coreModuleVersion(void);
int32_t coreModuleVersionFromBundle(void);
int32_t coreGetandcompLocalSupportVersion(int32_t version);

/* What the core asks of Foundation: the offset of the default time zone at a date, which is given
 * in seconds since 1970. `isFirst` is 1 until the caller has had an answer: such a call may be the
 * one that reads the system's zone. Returns 0 if Foundation cannot tell. Raises nothing. */
uint8_t foundationOffset(double date, uint8_t isFirst, int32_t* secondsFromGMT);

#ifdef __cplusplus
}
#endif

#ifdef __OBJC__
#import <Foundation/Foundation.h>

/* From a host. Nothing for nil, for an object of another class and for one that raises; a shortage
 * if memory runs out. */
Plain textFrom(id string);
Plain mendedTextFrom(id string); /* half a surrogate pair that stands alone becomes "_" */
Plain dateFrom(id date);
Plain arrayFrom(id array);           /* an item that cannot be converted is nothing */
Plain dictionaryFrom(id dictionary); /* an entry that cannot be converted is left out */
Plain dataFrom(id data);

/* For a host: frees the value and returns an autoreleased object; nil for another kind of value. */
NSString* stringTaking(Plain text);
NSDictionary* dictionaryTaking(Plain dictionary);
NSData* dataTaking(Plain data);

/* Whether Foundation will find memory for this many more bytes. Without memory it raises, which
 * itself takes memory: GNUstep ends the process if there is none at all. */
BOOL isRoomFor(size_t bytes);

/* A pool for the objects made on the way; nil if there is no memory for one. */
NSAutoreleasePool* newPool(void);
void drainPool(NSAutoreleasePool* pool);

/* The host's own object, valid until the pool drains; nil for one that raises. */
id stillGood(id object);

/* One step of reading a host's object. */
struct Reading;
typedef BOOL (*ReadingStep)(struct Reading* reading, Plain* plain, id object);

/* What the step returns, or NO if the object raises. If it raises for lack of memory, noMemory
 * becomes YES; otherwise it stays as it is. */
BOOL succeedsGuarded(ReadingStep step, struct Reading* reading, Plain* plain, id object,
                     BOOL* noMemory);
#endif

#ifdef __cplusplus
#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib::objc {

/// From plain values to the core's own. These need memory and throw if there is none.
Text textIn(const Plain& plain);
std::optional<Dictionary> dictionaryIn(const Plain& plain);

/// And back; nothing if there is no memory.
Plain plain(const Text& text) noexcept;
Plain plain(const std::optional<Dictionary>& dictionary) noexcept;
Plain plainBytes(std::string_view bytes) noexcept;

}  // namespace wenlolib::objc
#endif

#endif
