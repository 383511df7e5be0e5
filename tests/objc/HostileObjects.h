/* Objects that a host should never pass, but one day will. */
#ifndef WENLOLIB_TESTS_OBJC_HOSTILEOBJECTS_H
#define WENLOLIB_TESTS_OBJC_HOSTILEOBJECTS_H

#import <Foundation/Foundation.h>

/* A string of three characters that gives another length, and raises if read past its end. */
@interface LyingString : NSString {
  NSUInteger length_;
}
+ (id)stringOfLength:(NSUInteger)length;
@end

/* A string of a thousand characters that gives only the first three. */
@interface SparingString : NSString
@end

/* An honest string that holds any units, even halves of surrogate pairs. */
@interface UnitString : NSString {
  unichar units_[8];
  NSUInteger count_;
}
+ (id)stringWithUnits:(const unichar*)units count:(NSUInteger)count;
@end

/* A string that gives another length every time it is asked. */
@interface GrowingString : LyingString {
  NSUInteger questions_;
}
@end

/* Subclasses that raise at every message, except when asked for their class. */
@interface RaisingString : NSString
@end
@interface RaisingDate : NSDate
@end
@interface RaisingNumber : NSNumber
@end
@interface RaisingArray : NSArray
@end
@interface RaisingDictionary : NSDictionary
@end

/* Raises even when asked for its class. */
@interface RaisingProxy : NSProxy
+ (id)proxy;
@end

/* Containers that give a wrong count. */
@interface LyingArray : NSArray {
  NSUInteger count_;
}
+ (id)arrayOfCount:(NSUInteger)count;
@end

/* A dictionary with one entry that claims a thousand, and names keys that it does not hold. */
@interface LyingDictionary : NSDictionary
@end

/* Data of three bytes that claims a gigabyte. */
@interface LyingData : NSData
@end

/* A number without a type. */
@interface UntypedNumber : NSNumber
@end

/* All of these objects, and ordinary objects of other classes: none is a usable text. The same for
 * dates, arrays and dictionaries. */
NSArray* notTexts(void);
NSArray* notDates(void);
NSArray* notArrays(void);
NSArray* notDictionaries(void);

#endif
