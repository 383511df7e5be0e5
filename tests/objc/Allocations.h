/* Lets allocations of the calling thread fail: the host's own functions stand in front of the C
 * library's, for the host and for everything that it loads. */
#ifndef WENLOLIB_TESTS_OBJC_ALLOCATIONS_H
#define WENLOLIB_TESTS_OBJC_ALLOCATIONS_H

#include <stdbool.h>

/* The allocation of this number from now on, 1 the next, fails; `last` none before that and
 * `count` of them. */
void failAllocations(long number, long count);

/* No more of them. Whether one has failed. */
bool endFailingAllocations(void);

#endif
