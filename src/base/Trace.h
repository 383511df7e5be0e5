/// Debug trace points. In a build with WENLOLIB_TRACE_POINTS, which is for the library's own
/// developers, they print to standard error. In the product they compile to nothing, arguments
/// included.
#ifndef WENLOLIB_BASE_TRACE_H
#define WENLOLIB_BASE_TRACE_H

#ifdef WENLOLIB_TRACE_POINTS
#include <cstdio>
#define WENLOLIB_TRACE(...) static_cast<void>(std::fprintf(stderr, __VA_ARGS__))
#else
#define WENLOLIB_TRACE(...) static_cast<void>(0)
#endif

#endif
