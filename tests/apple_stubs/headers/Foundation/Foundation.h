/* The part of Foundation that the port and the classes use, declarations only. */
#ifndef WENLOLIB_STUB_FOUNDATION_H
#define WENLOLIB_STUB_FOUNDATION_H

#include <limits.h>
#include <objc/NSObject.h>
#include <objc/objc.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if __LP64__
typedef long NSInteger;
typedef unsigned long NSUInteger;
#else
typedef int NSInteger;
typedef unsigned int NSUInteger;
#endif
typedef struct _NSZone NSZone;
typedef unsigned short unichar;
typedef double NSTimeInterval;
typedef NSUInteger NSStringEncoding;
enum { NSUTF8StringEncoding = 4 };

typedef struct {
  NSUInteger location, length;
} NSRange;
static inline NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
  const NSRange range = {location, length};
  return range;
}

@class NSArray, NSData, NSDictionary, NSEnumerator, NSError, NSString, NSURL;

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

__attribute__((objc_exception))
@interface NSException : NSObject
+ (NSException*)exceptionWithName:(NSString*)name
                           reason:(NSString*)reason
                         userInfo:(NSDictionary*)information;
- (NSString*)name;
- (void)raise;
@end
extern NSString* const NSMallocException;
extern NSString* const NSRangeException;

@interface NSString : NSObject
+ (id)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length;
- (id)initWithBytes:(const void*)bytes
             length:(NSUInteger)length
           encoding:(NSStringEncoding)encoding;
- (NSUInteger)length;
- (void)getCharacters:(unichar*)buffer range:(NSRange)range;
- (NSData*)dataUsingEncoding:(NSStringEncoding)encoding;
@end

/* The class of literal strings. */
@interface NSSimpleCString : NSString {
  char* bytes;
  int length;
}
@end
@interface NSConstantString : NSSimpleCString
@end

@interface NSData : NSObject
+ (id)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
- (NSUInteger)length;
- (const void*)bytes;
- (void)getBytes:(void*)buffer length:(NSUInteger)length;
- (void)getBytes:(void*)buffer range:(NSRange)range;
@end

@interface NSValue : NSObject
- (const char*)objCType;
@end

@interface NSNumber : NSValue
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value;
+ (NSNumber*)numberWithDouble:(double)value;
- (BOOL)boolValue;
- (long long)longLongValue;
- (unsigned long long)unsignedLongLongValue;
- (double)doubleValue;
@end

@interface NSDate : NSObject
+ (id)dateWithTimeIntervalSince1970:(NSTimeInterval)seconds;
- (NSTimeInterval)timeIntervalSince1970;
@end

@interface NSTimeZone : NSObject
+ (NSTimeZone*)defaultTimeZone;
+ (void)resetSystemTimeZone;
- (NSInteger)secondsFromGMTForDate:(NSDate*)date;
@end

@interface NSEnumerator : NSObject
- (id)nextObject;
@end

@interface NSArray : NSObject
- (NSUInteger)count;
- (id)objectAtIndex:(NSUInteger)index;
@end
@interface NSMutableArray : NSArray
+ (id)arrayWithCapacity:(NSUInteger)capacity;
- (void)addObject:(id)object;
@end

@interface NSDictionary : NSObject
- (NSUInteger)count;
- (id)objectForKey:(id)key;
- (NSEnumerator*)keyEnumerator;
@end
@interface NSMutableDictionary : NSDictionary
+ (id)dictionaryWithCapacity:(NSUInteger)capacity;
- (void)setObject:(id)object forKey:(id)key;
@end

@interface NSURL : NSObject
- (NSString*)path;
@end

@interface NSFileManager : NSObject
+ (NSFileManager*)defaultManager;
@end

@interface NSUserDefaults : NSObject
+ (NSUserDefaults*)standardUserDefaults;
- (NSDictionary*)dictionaryRepresentation;
@end

@interface NSXMLDocument : NSObject
- (id)initWithXMLString:(NSString*)string options:(NSUInteger)options error:(NSError**)error;
- (NSData*)XMLData;
@end

NSString* NSUserName(void);
NSString* NSHomeDirectory(void);
typedef NSUInteger NSSearchPathDirectory;
typedef NSUInteger NSSearchPathDomainMask;
enum { NSLibraryDirectory = 5, NSUserDomainMask = 1 };
NSArray* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                             NSSearchPathDomainMask domains, BOOL expandTilde);

#ifdef __cplusplus
}
#endif

#endif
