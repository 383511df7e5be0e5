#define _GNU_SOURCE
#include "torture_world.h"

#include <dlfcn.h>
#include <errno.h>
#include <execinfo.h>
#include <poll.h>
#include <pwd.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

/* --- Time: 15 March 2026, 10:05:07 GMT. It stands still, and every sleep is short. --- */

static const time_t now = 1773569107;
static int64_t slept = 0; /* the nanoseconds of all sleeps so far */

/* The C library's functions that functions of this file replace. */
static int (*steadyTime)(clockid_t, struct timespec*); /* needs no system call */
static struct tm* (*realLocalTime)(const time_t*, struct tm*);
static int (*realPasswords)(uid_t, struct passwd*, char*, size_t, struct passwd**);

static void find(void* function, const char* name) {
  void* const found = dlsym(RTLD_NEXT, name);
  memcpy(function, &found, sizeof found);
}

__attribute__((constructor)) static void findAll(void) {
  find(&steadyTime, "clock_gettime");
  find(&realLocalTime, "localtime_r");
  find(&realPasswords, "getpwuid_r");
}

int clock_gettime(clockid_t clock, struct timespec* time) {
  int64_t whole;
  if (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE) {
    *time = (struct timespec){now, 0};
    return 0;
  }
  if (steadyTime(clock, time) != 0) return -1;
  whole = (int64_t)time->tv_sec * 1000000000 + time->tv_nsec + slept;
  *time = (struct timespec){whole / 1000000000, whole % 1000000000};
  return 0;
}

time_t time(time_t* result) {
  if (result != NULL) *result = now;
  return now;
}

int gettimeofday(struct timeval* restrict time, void* restrict zone) {
  (void)zone;
  *time = (struct timeval){now, 0};
  return 0;
}

/* A sleep moves the steady clock on, but takes only a thousandth of the time. */
int clock_nanosleep(clockid_t clock, int flags, const struct timespec* wanted,
                    struct timespec* left) {
  const int64_t whole = (int64_t)wanted->tv_sec * 1000000000 + wanted->tv_nsec;
  struct timespec brief = {0, whole / 1000 % 1000000000};
  if (flags != 0) return (int)syscall(SYS_clock_nanosleep, clock, flags, wanted, left);
  slept += whole;
  return syscall(SYS_nanosleep, &brief, left) == 0 ? 0 : errno;
}

int nanosleep(const struct timespec* wanted, struct timespec* left) {
  const int problem = clock_nanosleep(CLOCK_REALTIME, 0, wanted, left);
  if (problem == 0) return 0;
  errno = problem;
  return -1;
}

int usleep(useconds_t microseconds) {
  const struct timespec wanted = {microseconds / 1000000, microseconds % 1000000 * 1000};
  return nanosleep(&wanted, NULL);
}

int poll(struct pollfd* files, nfds_t count, int milliseconds) {
  const struct timespec wanted = {milliseconds / 1000, milliseconds % 1000 * 1000000L};
  if (count == 0 && milliseconds > 0) return nanosleep(&wanted, NULL);
  return (int)syscall(SYS_poll, files, count, milliseconds);
}

/* --- What the C library reads only once --- */

static volatile int* inside = NULL;

void torture_watch(volatile int* place) {
  inside = place;
}

static void setInside(int what) {
  if (inside != NULL) *inside = what;
}

struct tm* localtime_r(const time_t* restrict moment, struct tm* restrict fields) {
  struct tm* result;
  setInside(atLocalTime);
  result = realLocalTime(moment, fields);
  setInside(0);
  return result;
}

int getpwuid_r(uid_t user, struct passwd* entry, char* buffer, size_t length,
               struct passwd** found) {
  int result;
  setInside(atPasswords);
  result = realPasswords(user, entry, buffer, length, found);
  setInside(0);
  return result;
}

/* --- Random bytes: the system is asked, and may fail. The bytes are the same in every run, even
 * after a call that has failed. --- */

static uint8_t nextByte = 0;

ssize_t getrandom(void* bytes, size_t length, unsigned flags) {
  const ssize_t count = syscall(SYS_getrandom, bytes, length, flags);
  size_t i;
  if (count < 0 && errno == EINTR) return count; /* the caller asks again */
  for (i = 0; i < length; ++i) {
    nextByte += 37;
    if ((ssize_t)i < count) ((uint8_t*)bytes)[i] = nextByte;
  }
  return count;
}

int getentropy(void* bytes, size_t length) {
  ssize_t count = getrandom(bytes, length, 0);
  while (count < 0 && errno == EINTR) count = getrandom(bytes, length, 0);
  return count == (ssize_t)length ? 0 : -1;
}

void torture_other_bytes(void) {
  nextByte = 128;
}

/* --- Memory --- */

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

static AllocationFaults* armed = NULL;

void torture_arm(AllocationFaults* faults) {
  void* place;
  backtrace(&place, 1); /* its first call loads a library, so that comes first */
  armed = faults;
}

void torture_disarm(void) {
  armed = NULL;
}

/* Counts one allocation. 1 if it must fail. */
static int strikes(void) {
  AllocationFaults* const faults = armed;
  if (faults == NULL) return 0;
  ++faults->seen;
  if (faults->failing == 0 || faults->seen < faults->failing) return 0;
  if (faults->seen > faults->failing) return faults->onwards;
  armed = NULL;
  faults->inside = inside == NULL ? 0 : *inside;
  faults->depth = backtrace(faults->places, tortureDepth);
  armed = faults;
  return 1;
}

static int refused(void) {
  if (!strikes()) return 0;
  errno = ENOMEM;
  return 1;
}

void* malloc(size_t size) {
  return refused() ? NULL : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return refused() ? NULL : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
  return refused() ? NULL : __libc_realloc(memory, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  return refused() ? NULL : __libc_memalign(alignment, size);
}

void* memalign(size_t alignment, size_t size) {
  return aligned_alloc(alignment, size);
}

int posix_memalign(void** result, size_t alignment, size_t size) {
  void* const memory = strikes() ? NULL : __libc_memalign(alignment, size);
  if (memory == NULL) return ENOMEM;
  *result = memory;
  return 0;
}
