#include "platform/apple/LoadedFrom.h"

#include <dlfcn.h>

namespace wenlolib::platform::apple {
namespace {

const char anchor = 0;  // an address in this very image

}  // namespace

Text loadedFrom() {
  Dl_info information{};
  const bool found = dladdr(&anchor, &information) != 0 && information.dli_fname != nullptr;
  return found ? Text(information.dli_fname) : std::nullopt;
}

}  // namespace wenlolib::platform::apple
