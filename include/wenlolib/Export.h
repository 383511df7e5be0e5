/// Marks what a host can link against; everything else stays hidden inside the library.
#ifndef WENLOLIB_EXPORT_H
#define WENLOLIB_EXPORT_H

#define WENLOLIB_EXPORT __attribute__((visibility("default")))

#endif
