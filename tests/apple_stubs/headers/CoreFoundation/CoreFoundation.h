/* The part of Core Foundation that the port uses, declarations only. */
#ifndef WENLOLIB_STUB_COREFOUNDATION_H
#define WENLOLIB_STUB_COREFOUNDATION_H

#include <stdint.h>
#ifdef __APPLE__
#include <MacTypes.h>
#else
typedef uint8_t UInt8;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef unsigned char Boolean;
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned long CFTypeID;
typedef unsigned long CFHashCode;
typedef signed long CFIndex;
typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef struct __CFError* CFErrorRef;
typedef const struct __CFUUID* CFUUIDRef;
typedef struct __CFCalendar* CFCalendarRef;
typedef const struct __CFTimeZone* CFTimeZoneRef;
typedef CFTypeRef CFPropertyListRef;

typedef struct {
  CFIndex location, length;
} CFRange;

/* Objects */
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);

/* Strings */
typedef UInt32 CFStringEncoding;
enum { kCFStringEncodingUTF8 = 0x08000100 };
CFTypeID CFStringGetTypeID(void);
CFIndex CFStringGetLength(CFStringRef string); /* in UTF-16 units */
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean addByteOrderMark, UInt8* buffer, CFIndex room,
                         CFIndex* used);
#ifdef __APPLE__
#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))
#else
CFStringRef stubConstantString(const char* text);
#define CFSTR(text) stubConstantString("" text "")
#endif

/* Data */
CFTypeID CFDataGetTypeID(void);
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);

/* Dictionaries */
typedef struct {
  CFIndex version;
  const void* (*retain)(CFAllocatorRef allocator, const void* value);
  void (*release)(CFAllocatorRef allocator, const void* value);
  CFStringRef (*copyDescription)(const void* value);
  Boolean (*equal)(const void* left, const void* right);
} CFDictionaryValueCallBacks;
typedef struct {
  CFIndex version;
  const void* (*retain)(CFAllocatorRef allocator, const void* value);
  void (*release)(CFAllocatorRef allocator, const void* value);
  CFStringRef (*copyDescription)(const void* value);
  Boolean (*equal)(const void* left, const void* right);
  CFHashCode (*hash)(const void* value);
} CFDictionaryKeyCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks);
void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

/* The clock */
typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime; /* seconds since the beginning of 2001, GMT */
extern const CFTimeInterval kCFAbsoluteTimeIntervalSince1970;
CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);

/* Preferences */
extern const CFStringRef kCFPreferencesCurrentApplication;
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application);

/* UUIDs */
CFUUIDRef CFUUIDCreate(CFAllocatorRef allocator);
CFStringRef CFUUIDCreateString(CFAllocatorRef allocator, CFUUIDRef uuid);

/* Calendars */
extern const CFStringRef kCFGregorianCalendar;
CFCalendarRef CFCalendarCreateWithIdentifier(CFAllocatorRef allocator, CFStringRef identifier);
void CFCalendarSetTimeZone(CFCalendarRef calendar, CFTimeZoneRef zone);
Boolean CFCalendarDecomposeAbsoluteTime(CFCalendarRef calendar, CFAbsoluteTime time,
                                        const char* components, ...);
CFTimeZoneRef CFTimeZoneCopyDefault(void);
CFTimeInterval CFTimeZoneGetSecondsFromGMT(CFTimeZoneRef zone, CFAbsoluteTime time);

#ifdef __cplusplus
}
#endif

#endif
