// Exceptions in hosts that know nothing of C++.
//
// The C++ library keeps, for each thread, a few bytes about the exceptions that are under way. In a
// host that brings this library along with the plug-in, the dynamic linker asks for their memory at
// a thread's first exception, and ends the process where there is none: just when the exception is
// about a lack of memory. A descriptor for any of these bytes, relocated when the plug-in is
// loaded, makes the linker try to lay them into the memory that every thread has from its start;
// where it has no room left for that, loading goes on as ever.
#include <mutex>

namespace wenlolib::platform::gnulinux {

/// Used by nobody; it is here for its relocation.
[[gnu::used]] void* exceptionStorageOfThisThread() {
  return std::__once_callable;
}

}  // namespace wenlolib::platform::gnulinux
