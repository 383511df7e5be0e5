/* Objects that a host should not pass, and one day will. */
#ifndef WENLOLIB_TESTS_OBJC_HOSTILEOBJECTS_H
#define WENLOLIB_TESTS_OBJC_HOSTILEOBJECTS_H

#import <Foundation/Foundation.h>

/* A string of three characters that gives another length, and raises beyond its end. */
@interface LyingString : NSString {
  NSUInteger length_;
}
+ (id)stringOfLength:(NSUInteger)length;
@end

/* One of a thousand characters that hands out the first three. */
@interface SparingString : NSString
@end

/* An honest one that holds any units, halves of surrogate pairs too. */
@interface UnitString : NSString {
  unichar units_[8];
  NSUInteger count_;
}
+ (id)stringWithUnits:(const unichar*)units count:(NSUInteger)count;
@end

/* One whose length is another at every question. */
@interface GrowingString : LyingString {
  NSUInteger questions_;
}
@end

/* Subclasses that raise whatever is asked of them but for their class. */
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

/* Raises even when it is asked for its class. */
@interface RaisingProxy : NSProxy
+ (id)proxy;
@end

/* Containers that give another count than they have items. */
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

/* All of them and ordinary objects of other classes, none of which is a text of use; and the same
 * for dates, arrays and dictionaries. */
NSArray* notTexts(void);
NSArray* notDates(void);
NSArray* notArrays(void);
NSArray* notDictionaries(void);

#endif
