#include "Allocations.h"

#include <errno.h>
#include <pthread.h>
#include <stddef.h>

/* The C library's own functions. */
extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* memory, size_t size);

static volatile bool armed;
static pthread_t thread;
static long before, failing;
static bool failed;

void failAllocations(long number, long count) {
  thread = pthread_self();
  before = number - 1;
  failing = count;
  failed = false;
  armed = true;
}

bool endFailingAllocations(void) {
  armed = false;
  return failed;
}

static bool fails(void) {
  if (!armed || !pthread_equal(thread, pthread_self())) return false;
  if (before-- > 0 || failing-- <= 0) return false;
  failed = true;
  errno = ENOMEM;
  return true;
}

void* malloc(size_t size) {
  return fails() ? NULL : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return fails() ? NULL : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
  return fails() ? NULL : __libc_realloc(memory, size);
}
