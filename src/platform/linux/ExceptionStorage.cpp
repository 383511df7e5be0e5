// Exceptions in hosts without C++.
//
// For each thread, the C++ library keeps a few bytes about the exceptions that are under way. If
// the C++ library enters a host only with the plug-in, the dynamic linker allocates these bytes at
// a thread's first exception. If there is no memory for them, it ends the process, just when the
// exception is about a lack of memory. A descriptor for any of these bytes, relocated when the
// plug-in is loaded, makes the linker try to put them into the memory that every thread has from
// its start. If there is no room left for that, loading goes on as usual.
#include <mutex>

namespace wenlolib::platform::gnulinux {

/// Nobody calls it; it is here for its relocation.
[[gnu::used]] void* exceptionStorageOfThisThread() {
  return std::__once_callable;
}

}  // namespace wenlolib::platform::gnulinux
