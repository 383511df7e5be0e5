/* What Foundation may raise for lack of memory, and a host's class for any reason: an answer
 * instead. */
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

BOOL saysNoMemory(NSException* raised) {
  volatile BOOL says = NO;
  @try {
    says = [[raised name] isEqual:NSMallocException];
  } @catch (...) {
    says = NO;
  }
  return says;
}
