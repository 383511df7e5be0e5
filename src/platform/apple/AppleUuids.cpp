#include "platform/apple/AppleUuids.h"

#include "platform/apple/Strings.h"

namespace wenlolib::platform::apple {

Text AppleUuids::create() {
  const Owned<CFUUIDRef> uuid(CFUUIDCreate(nullptr));
  if (!uuid) return std::nullopt;
  const Owned<CFStringRef> text(CFUUIDCreateString(nullptr, uuid.get()));
  return textOf(text.get());
}

}  // namespace wenlolib::platform::apple
