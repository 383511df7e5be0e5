/// Work on a small stack.
#ifndef WENLOLIB_TESTS_SUPPORT_SMALLSTACK_H
#define WENLOLIB_TESTS_SUPPORT_SMALLSTACK_H

#include <pthread.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <stdexcept>

namespace wenlolib::tests {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define WENLOLIB_TESTS_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define WENLOLIB_TESTS_SANITIZED
#endif
#endif

/// The stack that a host's thread must have. Sanitizers need several times as much.
#ifdef WENLOLIB_TESTS_SANITIZED
inline constexpr std::size_t smallStack = std::size_t{512} << 10;
#else
inline constexpr std::size_t smallStack = std::size_t{32} << 10;
#endif

/// Painted memory for a thread's stack. A thread that goes beyond it runs into memory that may not
/// be touched, and crashes.
class PaintedStack {
 public:
  explicit PaintedStack(std::size_t bytes) : bytes_(bytes) {
    memory_ = ::mmap(nullptr, guardBytes + bytes, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory_ == MAP_FAILED) throw std::runtime_error("there is no memory for a stack");
    if (::mprotect(memory_, guardBytes, PROT_NONE) != 0) throw std::runtime_error("no guard");
    std::memset(lowest(), paint, bytes);
  }
  ~PaintedStack() { ::munmap(memory_, guardBytes + bytes_); }
  PaintedStack(const PaintedStack&) = delete;
  PaintedStack& operator=(const PaintedStack&) = delete;

  [[nodiscard]] unsigned char* lowest() const {
    return static_cast<unsigned char*>(memory_) + guardBytes;
  }
  [[nodiscard]] std::size_t bytes() const { return bytes_; }

  /// How much of the stack has been used.
  [[nodiscard]] std::size_t used() const {
    const auto* end = lowest() + bytes_;
    return static_cast<std::size_t>(
        end - std::find_if(lowest(), lowest() + bytes_, [](auto byte) { return byte != paint; }));
  }

 private:
  // Larger than any single frame.
  static constexpr std::size_t guardBytes = std::size_t{1} << 20;
  static constexpr unsigned char paint = 0xA5;

  void* memory_;
  std::size_t bytes_;
};

/// Runs `work`, which must not throw, on a thread with a stack of `bytes`. Answers how much of the
/// stack was used, including the C library's own data for the thread.
inline std::size_t onStack(std::size_t bytes, const std::function<void()>& work) {
  const PaintedStack stack(bytes);
  pthread_attr_t attributes;
  pthread_t thread;
  const auto run = [](void* called) -> void* {
    (*static_cast<const std::function<void()>*>(called))();
    return nullptr;
  };
  ::pthread_attr_init(&attributes);
  const bool started =
      ::pthread_attr_setstack(&attributes, stack.lowest(), bytes) == 0 &&
      ::pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)) == 0;
  ::pthread_attr_destroy(&attributes);
  if (!started) throw std::runtime_error("a thread on a small stack does not start");
  ::pthread_join(thread, nullptr);
  return stack.used();
}

}  // namespace wenlolib::tests

#endif
