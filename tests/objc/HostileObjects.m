#import "HostileObjects.h"

#include <string.h>

static void refuse(void) {
  [NSException raise:NSGenericException format:@"on purpose"];
}

@implementation LyingString
+ (id)stringOfLength:(NSUInteger)length {
  LyingString* string = [[[self alloc] init] autorelease];
  string->length_ = length;
  return string;
}
- (NSUInteger)length {
  return length_;
}
- (unichar)characterAtIndex:(NSUInteger)index {
  if (index >= 3) [NSException raise:NSRangeException format:@"on purpose"];
  return (unichar)('a' + index);
}
@end

@implementation SparingString
- (NSUInteger)length {
  return 1000;
}
- (unichar)characterAtIndex:(NSUInteger)index {
  return (unichar)('a' + index % 26);
}
- (void)getCharacters:(unichar*)characters range:(NSRange)range {
  (void)range;
  for (NSUInteger i = 0; i < 3; ++i) characters[i] = (unichar)('a' + i);
}
@end

@implementation UnitString
+ (id)stringWithUnits:(const unichar*)units count:(NSUInteger)count {
  UnitString* string = [[[self alloc] init] autorelease];
  memcpy(string->units_, units, count * sizeof *units);
  string->count_ = count;
  return string;
}
- (NSUInteger)length {
  return count_;
}
- (unichar)characterAtIndex:(NSUInteger)index {
  return units_[index];
}
@end

@implementation GrowingString
- (NSUInteger)length {
  return length_ + ++questions_;
}
@end

@implementation RaisingString
- (NSUInteger)length {
  refuse();
  return 0;
}
- (unichar)characterAtIndex:(NSUInteger)index {
  (void)index;
  refuse();
  return 0;
}
@end

@implementation RaisingDate
- (id)initWithTimeIntervalSinceReferenceDate:(NSTimeInterval)seconds {
  (void)seconds;
  return self;
}
- (NSTimeInterval)timeIntervalSinceReferenceDate {
  refuse();
  return 0;
}
- (NSTimeInterval)timeIntervalSince1970 {
  refuse();
  return 0;
}
@end

@implementation RaisingNumber
- (const char*)objCType {
  refuse();
  return NULL;
}
- (void)getValue:(void*)value {
  (void)value;
  refuse();
}
- (BOOL)boolValue {
  refuse();
  return NO;
}
- (long long)longLongValue {
  refuse();
  return 0;
}
@end

@implementation RaisingArray
- (NSUInteger)count {
  refuse();
  return 0;
}
- (id)objectAtIndex:(NSUInteger)index {
  (void)index;
  refuse();
  return nil;
}
@end

@implementation RaisingDictionary
- (NSUInteger)count {
  refuse();
  return 0;
}
- (NSEnumerator*)keyEnumerator {
  refuse();
  return nil;
}
- (id)objectForKey:(id)key {
  (void)key;
  refuse();
  return nil;
}
@end

@implementation RaisingProxy
+ (id)proxy {
  return [[self alloc] autorelease];
}
- (BOOL)isKindOfClass:(Class)class {
  (void)class;
  refuse();
  return NO;
}
- (NSMethodSignature*)methodSignatureForSelector:(SEL)selector {
  (void)selector;
  refuse();
  return nil;
}
- (void)forwardInvocation:(NSInvocation*)invocation {
  (void)invocation;
  refuse();
}
@end

@implementation LyingArray
+ (id)arrayOfCount:(NSUInteger)count {
  LyingArray* array = [[[self alloc] init] autorelease];
  array->count_ = count;
  return array;
}
- (NSUInteger)count {
  return count_;
}
- (id)objectAtIndex:(NSUInteger)index {
  if (index >= 2) [NSException raise:NSRangeException format:@"on purpose"];
  return @"item";
}
@end

@implementation LyingDictionary
- (NSUInteger)count {
  return 1000;
}
- (NSEnumerator*)keyEnumerator {
  return [[NSArray arrayWithObjects:@"SN", @"missing", nil] objectEnumerator];
}
- (id)objectForKey:(id)key {
  return [key isEqual:@"SN"] ? @"s" : nil;
}
@end

@implementation LyingData
- (id)init {
  return self;
}
- (NSUInteger)length {
  return 1 << 30;
}
- (const void*)bytes {
  return "abc";
}
@end

@implementation UntypedNumber
- (const char*)objCType {
  return NULL;
}
- (long long)longLongValue {
  return 1;
}
- (BOOL)boolValue {
  return YES;
}
- (void)getValue:(void*)value {
  *(int*)value = 1;
}
@end

static NSArray* others(void) {
  return [NSArray arrayWithObjects:[NSNull null], [NSData dataWithBytes:"abc" length:3],
                                   [[[LyingData alloc] init] autorelease],
                                   [[[NSObject alloc] init] autorelease], [NSObject class],
                                   [RaisingProxy proxy], [NSSet setWithObject:@"x"],
                                   [NSURL URLWithString:@"file:///"], nil];
}

static NSArray* texts(void) {
  return [NSArray arrayWithObjects:@"text", [RaisingString string], nil];
}

static NSArray* numbers(void) {
  return [NSArray arrayWithObjects:[NSNumber numberWithInt:3], [NSNumber numberWithDouble:0.5],
                                   [[[UntypedNumber alloc] init] autorelease],
                                   [[[RaisingNumber alloc] init] autorelease], nil];
}

static NSArray* dates(void) {
  return [NSArray arrayWithObjects:[NSDate date], [[[RaisingDate alloc] init] autorelease], nil];
}

static NSArray* arrays(void) {
  return [NSArray arrayWithObjects:[NSArray arrayWithObject:@"text"],
                                   [[[RaisingArray alloc] init] autorelease], nil];
}

static NSArray* dictionaries(void) {
  return [NSArray arrayWithObjects:[NSDictionary dictionaryWithObject:@"s" forKey:@"SN"],
                                   [[[RaisingDictionary alloc] init] autorelease], nil];
}

static NSArray* joined(NSArray* first, NSArray* second, NSArray* third, NSArray* fourth) {
  NSMutableArray* all = [NSMutableArray arrayWithArray:others()];
  [all addObjectsFromArray:first];
  [all addObjectsFromArray:second];
  [all addObjectsFromArray:third];
  [all addObjectsFromArray:fourth];
  return all;
}

NSArray* notTexts(void) {
  NSMutableArray* all = [NSMutableArray
      arrayWithObjects:[RaisingString string], [LyingString stringOfLength:4],
                       [LyingString stringOfLength:100000], [LyingString stringOfLength:INT32_MAX],
                       [LyingString stringOfLength:NSUIntegerMax],
                       [LyingString stringOfLength:NSUIntegerMax / 2 + 1],
                       [GrowingString stringOfLength:100], nil];
  [all addObjectsFromArray:joined(numbers(), dates(), arrays(), dictionaries())];
  return all;
}

NSArray* notDates(void) {
  return [joined(texts(), numbers(), arrays(), dictionaries())
      arrayByAddingObject:[[[RaisingDate alloc] init] autorelease]];
}

NSArray* notArrays(void) {
  NSMutableArray* all = [NSMutableArray arrayWithObjects:[[[RaisingArray alloc] init] autorelease],
                                                         [LyingArray arrayOfCount:3],
                                                         [LyingArray arrayOfCount:NSUIntegerMax],
                                                         [LyingArray arrayOfCount:1 << 20], nil];
  [all addObjectsFromArray:joined(texts(), numbers(), dates(), dictionaries())];
  return all;
}

NSArray* notDictionaries(void) {
  return [joined(texts(), numbers(), dates(), arrays())
      arrayByAddingObject:[[[RaisingDictionary alloc] init] autorelease]];
}
