/* A host's subclass may answer nil, keep nothing, or raise. The entry points answer no or go on. */
#import "Host.h"

#include <objc/runtime.h>

#include "Allocations.h"

typedef void (*Anything)(void); /* a method before it is cast to its type */

/* Makes a subclass with one method at run time, since the record's class is loaded then. */
static Class subclass(NSString* name, NSString* method, Anything implementation) {
  Class class = objc_allocateClassPair(recordClass, [name UTF8String], 0);
  SEL selector = NSSelectorFromString(method);
  Method own = class_getInstanceMethod(recordClass, selector);
  BOOL ofClass = own == NULL;
  if (ofClass) own = class_getClassMethod(recordClass, selector);
  objc_registerClassPair(class);
  class_addMethod(ofClass ? object_getClass(class) : class, selector, (IMP)implementation,
                  method_getTypeEncoding(own));
  return class;
}

static NSDictionary* printer(void) {
  return [NSDictionary dictionaryWithObjectsAndKeys:@"d", @"DeviceID", @"s", @"SN", nil];
}

static void checkThatNothingIsRecordedBy(Class class) {
  BOOL written = NO;
  CHECK_RAISES_NOTHING(written |= [class writeAppInfoWithContents:@"c" name:@"App" option:1]);
  CHECK_RAISES_NOTHING(written |= [class writePrinterLogInfoWithContents:@"c"
                                                                    name:@"App"
                                                                  option:1
                                                               otherInfo:printer()]);
  CHECK(!written);
  CHECK([namesIn(inSupportFolder(@"ALM")) count] == 0);
  CHECK([namesIn(inSupportFolder(@"PLM")) count] == 0);
}

static id answersNil(id self, SEL selector) {
  (void)selector;
  [self release];
  return nil;
}

static void anInitThatAnswersNilRecordsNothing(void) {
  Class class = subclass(@"NilRecord", @"init", (Anything)answersNil);
  checkThatNothingIsRecordedBy(class);
  CHECK([[class alloc] initWithContents:@"c" name:@"n" option:1] == nil);
}

static id raises(id self, SEL selector) {
  (void)self;
  (void)selector;
  [NSException raise:NSGenericException format:@"on purpose"];
  return nil;
}

static void overridesThatRaiseRecordNothing(void) {
  NSArray* methods = [NSArray
      arrayWithObjects:@"alloc", @"init", @"initWithContents:name:option:", @"setContents:",
                       @"setApplicationName:", @"setFileType:", @"autorelease", @"writeAppInfo",
                       nil];
  for (NSUInteger i = 0; i < [methods count]; ++i) {
    NSString* method = [methods objectAtIndex:i];
    NSString* name = [NSString stringWithFormat:@"RaisingRecord%d", (int)i];
    checkThatNothingIsRecordedBy(subclass(name, method, (Anything)raises));
  }
}

static void aDecisionThatRaisesIsARefusal(void) {
  BOOL written = NO;
  Class class = subclass(@"RaisingDecision", @"isSupported:", (Anything)raises);
  CHECK_RAISES_NOTHING(written |= [class writeAppInfoWithContents:@"c" name:@"App" option:1]);
  class = subclass(@"RaisingPlmDecision", @"isSupportedPlm:", (Anything)raises);
  CHECK_RAISES_NOTHING(written |= [class writePrinterLogInfoWithContents:@"c"
                                                                    name:@"App"
                                                                  option:1
                                                               otherInfo:nil]);
  CHECK(!written);
}

static void anInitialiserAnswersNilWhereAnOverrideRaises(void) {
  NSArray* methods =
      [NSArray arrayWithObjects:@"init", @"setContents:", @"setApplicationName:", nil];
  for (NSUInteger i = 0; i < [methods count]; ++i) {
    NSString* name = [NSString stringWithFormat:@"RaisingInitialiser%d", (int)i];
    Class class = subclass(name, [methods objectAtIndex:i], (Anything)raises);
    id record = @"";
    CHECK_RAISES_NOTHING(record = [[class alloc] initWithContents:@"c" name:@"n" option:1]);
    CHECK(record == nil);
  }
}

static void keepsNothing(id self, SEL selector, id otherInfo) {
  (void)self;
  (void)selector;
  (void)otherInfo;
}

static void anIdentityThatASubclassDoesNotKeepIsAbsent(void) {
  Class class = subclass(@"ForgetfulRecord", @"serOtherInfo:", (Anything)keepsNothing);
  CHECK([class writePrinterLogInfoWithContents:@"c" name:@"App" option:1 otherInfo:printer()]);
  CHECK_EQUAL(elementIn(textAt(inSupportFolder(@"PLM/App_1.PLM")), @"SN"), @"");
}

/* When the library itself lacks memory, the record fails: a log without its identity is wrong. */
static void anIdentityThatFoundNoMemoryFailsTheRecordUntilItIsGivenAgain(void) {
  WENLOLIB* record = [[[recordClass alloc] initWithContents:@"c" name:@"App"] autorelease];
  [record serOtherInfo:printer()];
  NSDictionary* other = [NSDictionary dictionaryWithObject:@"other" forKey:@"SN"];
  [NSAutoreleasePool freeCache];
  failAllocations(1, 1);
  [record serOtherInfo:other];
  CHECK(endFailingAllocations());
  [record serOtherInfo:nil];
  CHECK_EQUAL([record getSerialNum], @"");
  CHECK(![record isNewTagTypePrinter]);
  CHECK(![record WENLOLIBCreateXMLDocument]);
  CHECK(![record writeAppInfo]);
  CHECK([namesIn(inSupportFolder(@"PLM")) count] == 0);
  [record serOtherInfo:other];
  CHECK([record writeAppInfo]);
  CHECK_EQUAL(elementIn(textAt(inSupportFolder(@"PLM/App_1.PLM")), @"SN"), @"other");
}

const Case subclassCases[] = {
    {"Subclass.AnInitThatAnswersNilRecordsNothing", anInitThatAnswersNilRecordsNothing},
    {"Subclass.OverridesThatRaiseRecordNothing", overridesThatRaiseRecordNothing},
    {"Subclass.ADecisionThatRaisesIsARefusal", aDecisionThatRaisesIsARefusal},
    {"Subclass.AnInitialiserAnswersNilWhereAnOverrideRaises",
     anInitialiserAnswersNilWhereAnOverrideRaises},
    {"Subclass.AnIdentityThatItDoesNotKeepIsAbsent", anIdentityThatASubclassDoesNotKeepIsAbsent},
    {"Subclass.AnIdentityThatFoundNoMemoryFailsTheRecordUntilItIsGivenAgain",
     anIdentityThatFoundNoMemoryFailsTheRecordUntilItIsGivenAgain},
    {NULL, NULL}};
