/* Runs a traced child to its end and makes one of its system calls fail, or those from one on. */
#ifndef WENLOLIB_TESTS_TORTURE_TRACER_H
#define WENLOLIB_TESTS_TORTURE_TRACER_H

#include <sys/types.h>

/* The child closes these descriptors when it enters and leaves the library. The calls fail, and no
 * library makes them. */
enum { enteringMark = -4710, leavingMark = -4711 };

typedef enum CallFault { noFault, killBefore, errorAt, errorInHelper } CallFault;

/* What the file system lacks, in addition to the fault. */
enum { exclusiveRename = 1, hardLinks = 2 };

typedef struct TracePlan {
  CallFault fault;
  long index; /* of the call, counted from 1 */
  int error;
  int onwards;
  int without;                /* the sum of some of these */
  const volatile int* inside; /* see torture_world.h */
} TracePlan;

typedef struct Trace {
  long calls;       /* between the marks, by the child itself */
  long helperCalls; /* by the processes that it started */
  int struck;
  int inside;  /* `*inside` when the first call was struck */
  long number; /* the number of that call; then its path, if it has one */
  char path[256];
} Trace;

/* The child calls this when it is ready. */
void traceMe(void);

/* Answers the child's exit status, or -1 if `*late` was set before it ended. */
int traceChild(pid_t child, const TracePlan* plan, Trace* trace, const volatile int* late);

#endif
