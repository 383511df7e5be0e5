/* Catches what a host's objects and Foundation raise, and returns a result instead. A host's class
 * may raise for any reason, Foundation for lack of memory. */
#include <stdlib.h>

#import "objc/Private.h"

BOOL isRoomFor(size_t bytes) {
  enum { toRaise = 1 << 14 };
  void* volatile memory = bytes < SIZE_MAX - toRaise ? malloc(bytes + toRaise) : NULL;
  free(memory);
  return memory != NULL;
}

NSAutoreleasePool* newPool(void) {
  NSAutoreleasePool* volatile pool = nil;
  if (!isRoomFor(0)) return nil;
  @try {
    pool = [[NSAutoreleasePool alloc] init];
  } @catch (...) {
    pool = nil;
  }
  return pool;
}

void drainPool(NSAutoreleasePool* pool) {
  @try {
    [pool release];
  } @catch (...) {
    /* The pool around it drains what is left. */
  }
}

id stillGood(id object) {
  id volatile kept = nil;
  if (!isRoomFor(0)) return nil;
  @try {
    kept = [[object retain] autorelease];
  } @catch (...) {
    kept = nil;
  }
  return kept;
}

static BOOL saysNoMemory(NSException* raised) {
  volatile BOOL says = NO;
  @try {
    says = [[raised name] isEqual:NSMallocException];
  } @catch (...) {
    says = NO;
  }
  return says;
}

BOOL succeedsGuarded(ReadingStep step, struct Reading* reading, Plain* plain, id object,
                     BOOL* noMemory) {
  volatile BOOL done = NO;
  @try {
    done = step(reading, plain, object);
  } @catch (NSException* raised) {
    if (saysNoMemory(raised)) *noMemory = YES;
  } @catch (...) {
    done = NO;
  }
  return done;
}
