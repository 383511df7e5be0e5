/* The version of these headers, for C and C++. WENLOLIB_version, in plugin.h, returns the version
 * of the loaded library. */
#ifndef WENLOLIB_VERSION_H
#define WENLOLIB_VERSION_H

#define WENLOLIB_VERSION "1.0.1"

/* The same as major * 10000 + minor * 100 + patch. */
#define WENLOLIB_VERSION_NUMBER 10001

#endif
