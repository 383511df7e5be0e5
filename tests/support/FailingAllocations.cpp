#include "support/FailingAllocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

/// Counts one allocation. True if it must fail.
bool strikes(std::size_t size) noexcept {
  auto& state = wenlolib::tests::allocationState;
  if (!state.counting || state.spared > 0) return false;
  state.largest = std::max(state.largest, size);
  state.bytes += size;
  ++state.seen;
  if (state.failing == 0) return false;
  return state.onwards ? state.seen >= state.failing : state.seen == state.failing;
}

// Uses malloc and free, so that the sanitizers still see every allocation.
void* allocated(std::size_t size) noexcept {
  return strikes(size) ? nullptr : std::malloc(std::max<std::size_t>(size, 1));
}

void* allocatedOrThrown(std::size_t size) {
  if (void* memory = allocated(size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
  return allocatedOrThrown(size);
}
void* operator new[](std::size_t size) {
  return allocatedOrThrown(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocated(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocated(size);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
