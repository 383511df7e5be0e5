/* A host in C that has never shown a local time, and that has no C++ library until it loads the
 * plug-in. It records while something is short, then again when there is enough:
 *
 *   shortage_host SHARED_OBJECT descriptors|memory
 *
 * It prints both answers, and then the host's own offset from GMT in seconds. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/resource.h>
#include <time.h>

extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* block, size_t size);

static int memoryIsShort;

/* Replaces the C library's, for the plug-in and the C++ library too. */
void* malloc(size_t size) {
  return memoryIsShort ? NULL : __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
  return memoryIsShort ? NULL : __libc_calloc(count, size);
}
void* realloc(void* block, size_t size) {
  return memoryIsShort ? NULL : __libc_realloc(block, size);
}

static int limitDescriptors(rlim_t count) {
  struct rlimit limit;
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return -1;
  limit.rlim_cur = count < limit.rlim_max ? count : limit.rlim_max;
  return setrlimit(RLIMIT_NOFILE, &limit);
}

int main(int count, char** arguments) {
  int (*record)(const char* contents, const char* name, uint32_t option) = NULL;
  int during, after;
  time_t now;
  void* library = count == 3 ? dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL) : NULL;
  if (library == NULL) {
    fprintf(stderr, "usage: shortage_host SHARED_OBJECT descriptors|memory\n");
    return 2;
  }
  *(void**)&record = dlsym(library, "WENLOLIB_writeAppInfoWithContents");
  if (record == NULL) return 2;
  if (strcmp(arguments[2], "memory") == 0) {
    memoryIsShort = 1;
  } else if (limitDescriptors(0) != 0) {
    return 2;
  }
  during = record("contents", "App", 2);
  memoryIsShort = 0;
  if (limitDescriptors(RLIM_INFINITY) != 0) return 2;
  after = record("contents", "App", 2);
  now = time(NULL);
  printf("%d %d %ld\n", during, after, localtime(&now)->tm_gmtoff);
  return 0;
}
