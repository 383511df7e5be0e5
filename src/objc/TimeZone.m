/* Foundation's default time zone. */
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#import "objc/Private.h"

/* More than the first look at the system's zone takes. */
enum { roomForAZone = 1 << 20 };

/* Whether the system's zone can be looked up now. GNUstep does so when it is first asked, and takes
 * for GMT, for the whole host and for good, what it could not read for want of memory or of a
 * descriptor; so both are tried before. What is left is a shortage that begins in between. */
static BOOL isRoomForAZone(void) {
  const int descriptor = open("/", O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return NO;
  close(descriptor);
  return isRoomFor(roomForAZone);
}

/* nil where there is none. A first look that was broken off would leave GMT behind. */
static NSTimeZone* defaultZone(void) {
  NSTimeZone* volatile zone = nil;
  @try {
    zone = [NSTimeZone defaultTimeZone];
  } @catch (...) {
    [NSTimeZone resetSystemTimeZone];
  }
  return zone;
}

/* NO where there is no zone, where it raises, and for an offset that is none. */
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
  /* Files are opened here: a thread that the host cancels has to come back first. */
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancellation);
  if (isFirst != 1 || isRoomForAZone()) {
    /* A pool of its own has room: GNUstep puts the zone into it while it holds a lock. */
    NSAutoreleasePool* pool = newPool();
    known = pool != nil && isKnownOffset(date, secondsFromGMT);
    drainPool(pool);
  }
  pthread_setcancelstate(cancellation, NULL);
  return known ? 1 : 0;
}
