#include "platform/linux/LoadedFrom.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/Integer.h"
#include "platform/posix/Errors.h"
#include "platform/posix/WholeFile.h"

namespace wenlolib::platform::gnulinux {
namespace {

const char anchor = 0;  // an address in this very object

/// The file named in one line of the process's memory map, if the line covers `address`.
Text fileAt(std::string_view line, std::uintptr_t address) {
  std::string_view rest = line;
  const auto first = takeNumber(rest, 16);
  if (!first || !rest.starts_with('-')) return std::nullopt;
  rest.remove_prefix(1);
  const auto last = takeNumber(rest, 16);
  if (!last || address < *first || address >= *last) return std::nullopt;
  const std::size_t path = line.find('/');
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
