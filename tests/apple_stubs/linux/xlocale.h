/* Conversions in a locale that the caller passes. Here it is always null, which means "C". */
#ifndef WENLOLIB_STUB_XLOCALE_H
#define WENLOLIB_STUB_XLOCALE_H

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

/* Assumed: Reals. */
static inline double stub_strtod_l(const char* text, char** stop, const void* locale) {
  if (locale != NULL) abort();
  return strtod(text, stop);
}

/* Assumed: Reals. */
static inline int stub_snprintf_l(char* text, size_t size, const void* locale, const char* format,
                                  ...) {
  if (locale != NULL) abort();
  va_list arguments;
  va_start(arguments, format);
  const int length = vsnprintf(text, size, format, arguments);
  va_end(arguments);
  return length;
}

#define strtod_l stub_strtod_l
#define snprintf_l stub_snprintf_l

#endif
