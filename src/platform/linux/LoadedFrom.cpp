#include "platform/linux/LoadedFrom.h"

#include <dlfcn.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/posix/BoundedRead.h"
#include "platform/posix/CancellationHold.h"

namespace wenlolib::platform::gnulinux {
namespace {

const char anchor = 0;  // an address in this very object

/// The file of one line of the process's memory map, where the line covers `address`.
Text fileAt(std::string_view line, std::uintptr_t address) {
  std::uintptr_t first = 0;
  std::uintptr_t last = 0;
  const char* end = line.data() + line.size();
  const auto low = std::from_chars(line.data(), end, first, 16);
  if (low.ec != std::errc() || low.ptr == end) return std::nullopt;
  const auto high = std::from_chars(low.ptr + 1, end, last, 16);
  const std::size_t path = line.find('/');
  if (high.ec != std::errc() || address < first || address >= last) return std::nullopt;
  return path == std::string_view::npos ? Text() : Text(line.substr(path));
}

/// For a library that was loaded by a relative path: the host may have changed its working folder
/// since, but the kernel knows the file.
Text mappedFrom() {
  constexpr std::size_t longestMap = std::size_t{64} << 20;
  const auto map = posix::readWhole("/proc/self/maps", longestMap).bytes;
  for (std::string_view rest = map ? std::string_view(*map) : ""; !rest.empty();) {
    const std::size_t end = std::min(rest.find('\n'), rest.size() - 1);
    const auto address = reinterpret_cast<std::uintptr_t>(&anchor);
    if (Text file = fileAt(rest.substr(0, end), address)) return file;
    rest.remove_prefix(end + 1);
  }
  return std::nullopt;
}

}  // namespace

Text loadedFrom() {
  const posix::CancellationHold hold;
  Dl_info information{};
  if (dladdr(&anchor, &information) != 0 && information.dli_fname != nullptr &&
      information.dli_fname[0] == '/') {
    return information.dli_fname;
  }
  return mappedFrom();
}

}  // namespace wenlolib::platform::gnulinux
