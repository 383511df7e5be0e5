/// Ownership of Core Foundation objects.
#ifndef WENLOLIB_PLATFORM_APPLE_OWNED_H
#define WENLOLIB_PLATFORM_APPLE_OWNED_H

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace wenlolib::platform::apple {

/// One reference to an object that a call with "Create" or "Copy" in its name has handed out, given
/// back at the end of the scope. May be null.
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

  /// For a call that hands out an object through a pointer. Nothing may be owned yet.
  [[nodiscard]] Reference* slot() noexcept { return &reference_; }

 private:
  Reference reference_ = nullptr;
};

/// The object itself where it is of the type with this identifier, else null.
template <class Reference>
[[nodiscard]] Reference as(CFTypeID type, CFTypeRef object) noexcept {
  const bool matches = object != nullptr && CFGetTypeID(object) == type;
  return matches ? static_cast<Reference>(object) : nullptr;
}

}  // namespace wenlolib::platform::apple

#endif
