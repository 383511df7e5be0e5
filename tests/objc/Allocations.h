/* Makes allocations of the calling thread fail: the host's own functions replace the C library's,
 * for the host and for everything that it loads. */
#ifndef WENLOLIB_TESTS_OBJC_ALLOCATIONS_H
#define WENLOLIB_TESTS_OBJC_ALLOCATIONS_H

#include <stdbool.h>

/* From the allocation of this number on (1 is the next one), `count` allocations fail. */
void failAllocations(long number, long count);

/* Ends the failures. True if an allocation has failed. */
bool endFailingAllocations(void);

#endif
