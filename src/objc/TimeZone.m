/* Foundation's default time zone. */
#include <pthread.h>

#import "objc/Private.h"

/* NO where there is no zone, where it raises, and for an offset that is none. */
static BOOL isKnownOffset(double date, int32_t* secondsFromGMT) {
  volatile BOOL known = NO;
  @try {
    NSDate* moment = [NSDate dateWithTimeIntervalSince1970:date];
    NSTimeZone* zone = [NSTimeZone defaultTimeZone];
    const NSInteger offset = [zone secondsFromGMTForDate:moment];
    known = moment != nil && zone != nil && offset >= INT32_MIN && offset <= INT32_MAX;
    *secondsFromGMT = (int32_t)offset;
  } @catch (...) {
    known = NO;
  }
  return known;
}

uint8_t foundationOffset(double date, int32_t* secondsFromGMT) {
  int cancellation;
  BOOL known;
  NSAutoreleasePool* pool;
  /* The zone's file may be read here: a thread that the host cancels has to come back first. */
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancellation);
  pool = newPool();
  known = pool != nil && isKnownOffset(date, secondsFromGMT);
  drainPool(pool);
  pthread_setcancelstate(cancellation, NULL);
  return known ? 1 : 0;
}
