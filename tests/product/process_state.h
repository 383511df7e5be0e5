/* What a process is at one moment: all that a plug-in has to leave alone. */
#ifndef WENLOLIB_TESTS_PRODUCT_PROCESS_STATE_H
#define WENLOLIB_TESTS_PRODUCT_PROCESS_STATE_H

#include <limits.h>
#include <locale.h>
#include <signal.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { signalCount = 64, longestEnvironment = 1 << 16 };

/* What a call could have changed. */
typedef struct ProcessState {
  char localeName[256];
  locale_t threadLocale;
  mode_t mask;
  char workingFolder[PATH_MAX];
  struct sigaction actions[signalCount + 1];
  sigset_t blocked;
  char** environment; /* the host's own array, and what it holds */
  char entries[longestEnvironment];
} ProcessState;

void takeState(ProcessState* state);

/* Null when both are alike, else what differs. */
const char* changeOf(const ProcessState* before, const ProcessState* after);

/* What may not grow as the plug-in comes and goes. */
typedef struct ProcessUse {
  long descriptors;
  long mappings;
  long heapBytes;     /* in use */
  long residentBytes; /* of private memory, as the system sees it */
} ProcessUse;

ProcessUse takeUse(void);

/* The number of mappings of the file at `path`, or -1 when that cannot be told. */
long mappingsOf(const char* path);

#ifdef __cplusplus
}
#endif

#endif
