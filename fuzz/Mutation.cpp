// Mutations that keep the checksum right: chance alone would never get past it.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "support/ReferenceCrypto.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t room);

namespace wenlolib::fuzz {
namespace {

constexpr std::size_t checksumLength = 32;

/// Writes the digest of the content into the document, if it has room for one.
void seal(std::uint8_t* data, std::size_t size) {
  const std::string_view document(reinterpret_cast<const char*>(data), size);
  constexpr std::string_view attribute = " SUM=\"";
  const std::size_t place = document.find(attribute);
  const std::size_t end = document.rfind("</");
  if (place == std::string_view::npos || end == std::string_view::npos) return;
  const std::size_t checksum = place + attribute.size();
  const std::size_t content = checksum + checksumLength + 2;
  if (content > end || document.substr(content - 2, 2) != "\">") return;
  const auto digest = tests::referenceMd5({data + content, end - content});
  std::ranges::copy(tests::upperHex(digest), data + checksum);
}

}  // namespace
}  // namespace wenlolib::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t room, unsigned seed) {
  const std::size_t mutated = LLVMFuzzerMutate(data, size, room);
  if (seed % 3 != 0) wenlolib::fuzz::seal(data, mutated);
  return mutated;
}
