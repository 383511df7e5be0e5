/// Marks what a host can link against; everything else stays hidden inside the library.
#ifndef WENLOLIB_EXPORT_H
#define WENLOLIB_EXPORT_H

#define WENLOLIB_EXPORT __attribute__((visibility("default")))

/* The receiver's functions in C++ are visible in its shared library. A program that links the
 * archive does not export them. */
#ifdef WENLOLIB_RECEIVER_SHARED
#define WENLOLIB_RECEIVER_EXPORT WENLOLIB_EXPORT
#else
#define WENLOLIB_RECEIVER_EXPORT
#endif

#endif
