/* The state of a process at one moment: everything that a plug-in must leave alone. */
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

/* What a call could change. */
typedef struct ProcessState {
  char localeName[256];
  locale_t threadLocale;
  mode_t mask;
  char workingFolder[PATH_MAX];
  struct sigaction actions[signalCount + 1];
  sigset_t blocked;
  char** environment; /* the host's own array; its entries follow */
  char entries[longestEnvironment];
} ProcessState;

void takeState(ProcessState* state);

/* Null if both are the same, else what differs. */
const char* changeOf(const ProcessState* before, const ProcessState* after);

/* What must not grow when the plug-in is loaded and unloaded. */
typedef struct ProcessUse {
  long descriptors;
  long mappings;
  long heapBytes;     /* in use */
  long residentBytes; /* private memory, as the system counts it */
} ProcessUse;

ProcessUse takeUse(void);

/* The number of mappings of the file at `path`, or -1 if it cannot be read. */
long mappingsOf(const char* path);

#ifdef __cplusplus
}
#endif

#endif
