/// The option word that a host passes with a record.
#ifndef WENLOLIB_TOOLKIT_OPTIONMODE_H
#define WENLOLIB_TOOLKIT_OPTIONMODE_H

#include <cstdint>

namespace wenlolib {

/// The mode: the low four bits, the only part of the word that is interpreted.
[[nodiscard]] constexpr std::uint32_t optionMode(std::uint32_t option) noexcept {
  return option & 15U;
}

}  // namespace wenlolib

#endif
