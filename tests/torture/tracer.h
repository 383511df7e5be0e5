/* Runs a traced child to its end and lets one of its system calls go wrong. */
#ifndef WENLOLIB_TESTS_TORTURE_TRACER_H
#define WENLOLIB_TESTS_TORTURE_TRACER_H

#include <sys/types.h>

/* The system calls that the child makes at entering and at leaving, and that fail: no library makes
 * them. */
enum { enteringMark = -4710, leavingMark = -4711 };

typedef enum CallFault { noFault, killBefore, errorAt, errorInHelper } CallFault;

/* What the file system does not know, besides. */
enum { exclusiveRename = 1, hardLinks = 2 };

typedef struct TracePlan {
  CallFault fault;
  long index; /* of the call, counted from 1 */
  int error;
  int onwards;
  int without;                /* some of these */
  const volatile int* inside; /* see torture_world.h */
} TracePlan;

typedef struct Trace {
  long calls;       /* between the marks, by the child itself */
  long helperCalls; /* and by the processes that it started */
  int struck;
  int inside;  /* when the first call was struck */
  long number; /* of that call, and its path if it has one */
  char path[256];
} Trace;

/* To be called in the child, when all is ready. */
void traceMe(void);

/* Answers the child's exit status, or -1 when `*late` told it to give up. */
int traceChild(pid_t child, const TracePlan* plan, Trace* trace, const volatile int* late);

#endif
