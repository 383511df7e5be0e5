/// The bytes of a run, taken apart.
#ifndef WENLOLIB_FUZZ_INPUT_H
#define WENLOLIB_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace wenlolib::fuzz {

/// Gives out what a run's bytes stand for; zeros and empty texts once they are used up.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  std::uint8_t byte() {
    const std::string_view taken = bytes(1);
    return taken.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(taken.front());
  }

  /// A number below `end`, at most 256.
  std::size_t below(std::size_t end) { return byte() % end; }

  /// Any bytes, up to 255 of them.
  std::string text() { return std::string(bytes(byte())); }

  /// Any bytes without a NUL: those up to the first one.
  std::string plain() {
    std::string found = text();
    return found.substr(0, found.find('\0'));
  }

 private:
  std::string_view bytes(std::size_t count) {
    const std::string_view taken = rest_.substr(0, std::min(count, rest_.size()));
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view rest_;
};

}  // namespace wenlolib::fuzz

#endif
