/* What the torture programs share: a server that performs one named operation at a time, in a copy
 * of its process, while one thing goes wrong, and tells what came of it.
 *
 * A line of standard input asks:    OPERATION FAULT INDEX ERROR ONWARDS WITHOUT SECONDS
 * A line of standard output answers: a JSON object.
 *
 * FAULT is one of none, later (none, with other random bytes), kill, error, helper, allocation,
 * descriptors, and the names of sabotages (see harness.c). INDEX counts system calls (of the host's
 * process, or for `helper` of the processes that the library starts) or allocations from 1, or is
 * the number of descriptors. */
#ifndef WENLOLIB_TESTS_TORTURE_HARNESS_H
#define WENLOLIB_TESTS_TORTURE_HARNESS_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct TortureOperation {
  const char* name;
  void (*run)(void); /* calls enter, the library, leave and answer, in this order */
} TortureOperation;

/* Between these two everything is the library's doing, and only there anything goes wrong. */
void enter(void);
void leave(void);

/* What the library answered, as text; null for no answer. */
void answer(const char* text);
void answerNumber(long number);

/* Serves until standard input ends. The arguments are the zone's offsets from GMT in seconds, in
 * winter and in summer, and "shown" where the host has shown a local time before. */
int serve(const TortureOperation* operations, int count, char** arguments);

#ifdef __cplusplus
}
#endif

#endif
