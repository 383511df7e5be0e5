#include "platform/apple/PropertyListFile.h"

#include "platform/apple/Nesting.h"
#include "platform/posix/BoundedRead.h"

namespace wenlolib::platform::apple {
namespace {

// The files lie where other programs write: whatever stands in them has to be answered in bounded
// time and memory. Core Foundation's reader goes down by recursion and knows no bound.
constexpr std::size_t longestFile = std::size_t{16} << 20;
constexpr std::size_t deepestLevel = 512;

}  // namespace

std::optional<std::string> readPropertyListFile(const std::string& path) {
  auto bytes = posix::readWhole(path, longestFile);
  if (bytes && !nestsAtMost(deepestLevel, *bytes)) bytes.reset();
  return bytes;
}

}  // namespace wenlolib::platform::apple
