/* What the torture programs share: a server that performs one named operation at a time, in a copy
 * of its process, while one thing goes wrong. Then it reports the result.
 *
 * A line of standard input asks:    OPERATION FAULT INDEX ERROR ONWARDS WITHOUT SECONDS
 * A line of standard output answers: a JSON object.
 *
 * FAULT is one of none, later (none, with other random bytes), kill, error, helper, allocation,
 * descriptors, and the names of sabotages (see harness.c). INDEX is the number of a system call or
 * of an allocation, counted from 1, or the number of descriptors. For `helper`, the system calls
 * are those of the processes that the library starts; otherwise they are those of the host's
 * process. */
#ifndef WENLOLIB_TESTS_TORTURE_HARNESS_H
#define WENLOLIB_TESTS_TORTURE_HARNESS_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct TortureOperation {
  const char* name;
  void (*run)(void); /* calls enter, the library, leave and answer, in this order */
} TortureOperation;

/* Between these two calls only the library runs, and only there can something go wrong. */
void enter(void);
void leave(void);

/* Reports the library's answer as text; null for no answer. */
void answer(const char* text);
void answerNumber(long number);

/* Serves until standard input ends. The arguments are the zone's offsets from GMT in seconds, in
 * winter and in summer, and "shown" if the host must show a local time before. */
int serve(const TortureOperation* operations, int count, char** arguments);

#ifdef __cplusplus
}
#endif

#endif
