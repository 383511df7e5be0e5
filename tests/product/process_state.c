#define _GNU_SOURCE
#include "process_state.h"

#include <dirent.h>
#include <malloc.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static void takeEnvironment(ProcessState* state) {
  size_t used = 0;
  char** entry;
  state->environment = environ;
  for (entry = environ; *entry != NULL; ++entry) {
    const size_t length = strlen(*entry) + 1;
    if (used + length >= sizeof state->entries) abort(); /* the test needs a small environment */
    memcpy(state->entries + used, *entry, length);
    used += length;
  }
}

void takeState(ProcessState* state) {
  int number;
  memset(state, 0, sizeof *state);
  strncpy(state->localeName, setlocale(LC_ALL, NULL), sizeof state->localeName - 1);
  state->threadLocale = uselocale((locale_t)0);
  state->mask = umask(0);
  umask(state->mask);
  if (getcwd(state->workingFolder, sizeof state->workingFolder) == NULL) abort();
  for (number = 1; number <= signalCount; ++number) {
    /* This fails for the two signals that the C library keeps for itself; they stay zero. */
    (void)sigaction(number, NULL, &state->actions[number]);
  }
  sigprocmask(SIG_SETMASK, NULL, &state->blocked);
  takeEnvironment(state);
}

/* Compares signal by signal, since a set's bits after the last signal are undefined. */
static int sameSets(const sigset_t* left, const sigset_t* right) {
  int number;
  for (number = 1; number <= signalCount; ++number) {
    if (sigismember(left, number) != sigismember(right, number)) return 0;
  }
  return 1;
}

static int sameActions(const struct sigaction* left, const struct sigaction* right) {
  return left->sa_handler == right->sa_handler && left->sa_flags == right->sa_flags &&
         sameSets(&left->sa_mask, &right->sa_mask);
}

const char* changeOf(const ProcessState* before, const ProcessState* after) {
  int number;
  if (strcmp(before->localeName, after->localeName) != 0) return "the locale";
  if (before->threadLocale != after->threadLocale) return "the thread's locale";
  if (before->mask != after->mask) return "the file-creation mask";
  if (strcmp(before->workingFolder, after->workingFolder) != 0) return "the working folder";
  for (number = 1; number <= signalCount; ++number) {
    if (!sameActions(&before->actions[number], &after->actions[number])) return "a signal's action";
  }
  if (!sameSets(&before->blocked, &after->blocked)) return "the blocked signals";
  if (before->environment != after->environment) return "the environment's place";
  if (memcmp(before->entries, after->entries, sizeof before->entries) != 0) {
    return "the environment";
  }
  return NULL;
}

static long countDescriptors(void) {
  DIR* folder = opendir("/proc/self/fd");
  long count = 0;
  if (folder == NULL) abort();
  while (readdir(folder) != NULL) ++count;
  closedir(folder);
  return count - 3; /* without the folder's own descriptor, "." and ".." */
}

/* The number of lines in the memory map that hold `text`. */
static long countMappings(const char* text) {
  char line[PATH_MAX + 128];
  long count = 0;
  FILE* map = fopen("/proc/self/maps", "r");
  if (map == NULL) return -1;
  while (fgets(line, sizeof line, map) != NULL) count += strstr(line, text) != NULL;
  fclose(map);
  return count;
}

static long residentBytes(void) {
  char line[256];
  long kilobytes = 0, field = 0;
  FILE* rollup = fopen("/proc/self/smaps_rollup", "r");
  if (rollup == NULL) abort();
  while (fgets(line, sizeof line, rollup) != NULL) {
    if (sscanf(line, "Private_Dirty: %ld kB", &field) == 1) kilobytes = field;
  }
  fclose(rollup);
  return 1024 * kilobytes;
}

ProcessUse takeUse(void) {
  ProcessUse use;
  const struct mallinfo2 heap = mallinfo2();
  use.heapBytes = (long)(heap.uordblks + heap.hblkhd);
  use.descriptors = countDescriptors();
  use.mappings = countMappings("");
  use.residentBytes = residentBytes();
  return use;
}

long mappingsOf(const char* path) {
  return countMappings(path);
}
