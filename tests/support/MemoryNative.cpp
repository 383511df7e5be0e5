// The native platform of a build without a port.
#include "platform/Platform.h"
#include "support/FailingAllocations.h"
#include "support/MemoryPlatform.h"

namespace wenlolib::platform {

const Platform& native() noexcept {
  const tests::AllocationsSpared spared;
  static tests::MemoryPlatform inMemory;
  return inMemory.services;
}

}  // namespace wenlolib::platform
