/* How a library reads the environment on macOS. */
#ifndef WENLOLIB_STUB_CRT_EXTERNS_H
#define WENLOLIB_STUB_CRT_EXTERNS_H

#include <unistd.h>

/* Assumed: The environment. */
static inline char*** _NSGetEnviron(void) {
  return &environ;
}

#endif
