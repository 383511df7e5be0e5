/* Foundation's default time zone. */
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#import "objc/Private.h"

/* More than the first look-up of the system's zone takes. */
enum { roomForAZone = 1 << 20 };

/* Whether the system's zone can be looked up now. GNUstep does so when it is first asked. If it
 * cannot read the zone for lack of memory or of a descriptor, it uses GMT from then on, for the
 * whole host. So both are tried first. Only a shortage that begins in between is not noticed. */
static BOOL isRoomForAZone(void) {
  const int descriptor = open("/", O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return NO;
  close(descriptor);
  return isRoomFor(roomForAZone);
}

/* nil if there is none. A first look-up that was broken off would leave GMT as the zone. */
static NSTimeZone* defaultZone(void) {
  NSTimeZone* volatile zone = nil;
  @try {
    zone = [NSTimeZone defaultTimeZone];
  } @catch (...) {
    [NSTimeZone resetSystemTimeZone];
  }
  return zone;
}

/* NO if there is no zone, if it raises, and for an impossible offset. */
static BOOL isKnownOffset(double date, int32_t* secondsFromGMT) {
  volatile BOOL known = NO;
  @try {
    NSDate* moment = [NSDate dateWithTimeIntervalSince1970:date];
    NSTimeZone* zone = defaultZone();
    const NSInteger offset = [zone secondsFromGMTForDate:moment];
    known = moment != nil && zone != nil && offset >= INT32_MIN && offset <= INT32_MAX;
    *secondsFromGMT = (int32_t)offset;
  } @catch (...) {
    known = NO;
  }
  return known;
}

uint8_t foundationOffset(double date, uint8_t isFirst, int32_t* secondsFromGMT) {
  int cancellation;
  BOOL known = NO;
  /* Files are opened here: a thread that the host cancels must return from here first. */
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancellation);
  if (isFirst != 1 || isRoomForAZone()) {
    /* A new pool has room left: GNUstep puts the zone into it while it holds a lock. */
    NSAutoreleasePool* pool = newPool();
    known = pool != nil && isKnownOffset(date, secondsFromGMT);
    drainPool(pool);
  }
  pthread_setcancelstate(cancellation, NULL);
  return known ? 1 : 0;
}
