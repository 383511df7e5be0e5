/* A world in which one thing at a time goes wrong: a program that is linked with this library, or
 * has it preloaded, sees a clock that stands still and the same random bytes in every run, and its
 * allocations fail where it asks for that. */
#ifndef WENLOLIB_TESTS_TORTURE_TORTURE_WORLD_H
#define WENLOLIB_TESTS_TORTURE_TORTURE_WORLD_H

#ifdef __cplusplus
extern "C" {
#endif

enum { tortureDepth = 32 };

/* What came of the allocations since they were armed. */
typedef struct AllocationFaults {
  long failing; /* which one fails, counted from 1; 0 for none */
  int onwards;  /* and all that follow it */
  long seen;
  int inside; /* what the C library was at when the first one failed: see torture_watch */
  int depth;  /* of the first that failed: where it was asked for */
  void* places[tortureDepth];
} AllocationFaults;

/* Until they are disarmed, allocations are counted, and fail as `faults` says. */
void torture_arm(AllocationFaults* faults);
void torture_disarm(void);

/* From then on `*inside` tells what the C library is at that it reads but once: nothing (0), local
 * time, or the user's entry in the password database. */
enum { atLocalTime = 1, atPasswords = 2 };
void torture_watch(volatile int* inside);

/* Other random bytes than in the first run, for a host that comes later. */
void torture_other_bytes(void);

#ifdef __cplusplus
}
#endif

#endif
