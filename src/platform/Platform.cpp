#include "platform/Platform.h"

#include <atomic>

namespace wenlolib::platform {
namespace {

std::atomic<const Platform*> substitute{nullptr};

}  // namespace

const Platform& current() noexcept {
  const Platform* inPlace = substitute.load(std::memory_order_acquire);
  return inPlace != nullptr ? *inPlace : native();
}

Substitute::Substitute(const Platform& platform) noexcept
    : previous_(substitute.exchange(&platform, std::memory_order_acq_rel)) {}

Substitute::~Substitute() {
  substitute.store(previous_, std::memory_order_release);
}

}  // namespace wenlolib::platform
