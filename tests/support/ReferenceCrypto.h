/// MD5 and RC4, written from their published descriptions, to check those of the platform in use.
/// Neither allocates memory.
#ifndef WENLOLIB_TESTS_SUPPORT_REFERENCECRYPTO_H
#define WENLOLIB_TESTS_SUPPORT_REFERENCECRYPTO_H

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace wenlolib::tests {

using ByteView = std::span<const std::uint8_t>;

/// The bytes of a text.
[[nodiscard]] ByteView bytesOf(std::string_view text) noexcept;

/// RFC 1321.
[[nodiscard]] std::array<std::uint8_t, 16> referenceMd5(ByteView message) noexcept;

/// Writes source.size() bytes to `destination`, which may overlap the source. `key` has 1 to 256
/// bytes.
void referenceRc4(ByteView key, ByteView source, std::uint8_t* destination) noexcept;

[[nodiscard]] std::string referenceRc4(ByteView key, std::string_view source);

/// Two upper-case digits for each byte.
[[nodiscard]] std::string upperHex(ByteView bytes);

/// The bytes that `hex` (digits in either case, an even number of them) stands for.
[[nodiscard]] std::string fromHex(std::string_view hex);

}  // namespace wenlolib::tests

#endif
