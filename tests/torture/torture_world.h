/* A world in which one thing at a time goes wrong. A program that is linked with this library, or
 * has it preloaded, sees a clock that stands still and the same random bytes in every run. Its
 * allocations fail if it asks for that. */
#ifndef WENLOLIB_TESTS_TORTURE_TORTURE_WORLD_H
#define WENLOLIB_TESTS_TORTURE_TORTURE_WORLD_H

#ifdef __cplusplus
extern "C" {
#endif

enum { tortureDepth = 32 };

/* Which allocations fail, and what was seen since the faults were armed. */
typedef struct AllocationFaults {
  long failing; /* which one fails, counted from 1; 0 for none */
  int onwards;  /* not 0 if all later ones fail too */
  long seen;
  int inside; /* what the C library was reading when the first one failed: see torture_watch */
  int depth;  /* of the stack at the first failure; then the stack */
  void* places[tortureDepth];
} AllocationFaults;

/* Until torture_disarm, allocations are counted and fail as `faults` says. */
void torture_arm(AllocationFaults* faults);
void torture_disarm(void);

/* The C library reads some things only once. From now on `*inside` says which of them it is
 * reading: none (0), local time, or the user's entry in the password database. */
enum { atLocalTime = 1, atPasswords = 2 };
void torture_watch(volatile int* inside);

/* Gives other random bytes than the first host's, for a later host. */
void torture_other_bytes(void);

#ifdef __cplusplus
}
#endif

#endif
