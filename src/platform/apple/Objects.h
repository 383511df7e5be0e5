/// Core Foundation's objects: ownership, strings and bytes, and calls that not every system has.
#ifndef WENLOLIB_PLATFORM_APPLE_OBJECTS_H
#define WENLOLIB_PLATFORM_APPLE_OBJECTS_H

#include <CoreFoundation/CoreFoundation.h>
#include <dlfcn.h>

#include <utility>

#include "platform/Crypto.h"
#include "wenlolib/Text.h"

namespace wenlolib::platform::apple {

// --- Ownership ---

/// One reference to an object that a call with "Create" or "Copy" in its name returned. It is
/// released at the end of the scope. May be null.
template <class Reference>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Reference reference) noexcept : reference_(reference) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(reference_, other.reference_);
    return *this;
  }
  ~Owned() {
    if (reference_ != nullptr) CFRelease(reference_);
  }

  explicit operator bool() const noexcept { return reference_ != nullptr; }
  [[nodiscard]] Reference get() const noexcept { return reference_; }

  /// For a call that returns an object through a pointer. Nothing may be owned yet.
  [[nodiscard]] Reference* slot() noexcept { return &reference_; }

 private:
  Reference reference_ = nullptr;
};

/// The object itself if it is of the type with this identifier, else null.
template <class Reference>
[[nodiscard]] Reference as(CFTypeID type, CFTypeRef object) noexcept {
  const bool matches = object != nullptr && CFGetTypeID(object) == type;
  return matches ? static_cast<Reference>(object) : nullptr;
}

// --- Strings and bytes ---

/// Null for the null string, and for one that UTF-8 cannot represent (half of a surrogate pair).
[[nodiscard]] Text textOf(CFStringRef string);

/// A copy of the bytes as a data object; null if memory runs out.
[[nodiscard]] Owned<CFDataRef> dataFrom(Bytes bytes) noexcept;

/// The bytes of a data object, valid as long as the object.
[[nodiscard]] Bytes bytesOf(CFDataRef data) noexcept;

// --- Calls that not every system has ---

/// Whether the running system has the function `name`. The frameworks with deprecated calls are
/// linked weakly: the library loads without them, but a call that is gone must not be made. The
/// name is looked up because a compiler may assume that the address of a function is never null.
[[nodiscard]] inline bool isOffered(const char* name) noexcept {
  return ::dlsym(RTLD_DEFAULT, name) != nullptr;
}

}  // namespace wenlolib::platform::apple

#endif
