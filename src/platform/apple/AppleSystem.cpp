#include "platform/apple/AppleSystem.h"

#include <CoreServices/CoreServices.h>

#include "platform/apple/Offered.h"

namespace wenlolib::platform::apple {

std::optional<std::int32_t> AppleSystem::gestalt(Selector selector) {
  if (!isOffered("Gestalt")) return std::nullopt;
  SInt32 answer = 0;
  if (Gestalt(static_cast<OSType>(selector), &answer) != noErr) return std::nullopt;
  return answer;
}

}  // namespace wenlolib::platform::apple
