#include "document/Payload.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <utility>

#include "base/Answered.h"
#include "base/Trace.h"
#include "wenlolib/codec.h"

namespace wenlolib {
namespace {

constexpr char encryptedLabel[] = "EncryptedData \n= ";

/// Fills the cipher buffer with the encrypted input and answers the cipher's marker.
char encrypt(const WorkingBuffers& buffers, const std::string& date, std::int32_t length) {
  std::array<std::uint8_t, 16> key{};
  std::int32_t outputLength = 0;
  CreateDigestMD5_CC(date.c_str(), key.data());
  const std::int32_t status =
      DoRC4Encrypt(key.data(), std::int32_t{key.size()}, buffers.input.get(), length,
                   buffers.cipher.get(), &outputLength);
  WENLOLIB_TRACE("outBuffLen  = %d", outputLength);
  if (status == 0) return 'R';
  DoEncryptXOR(buffers.cipher.get(), &outputLength, buffers.input.get(), length, key.data());
  return 'X';
}

}  // namespace

std::optional<WorkingBuffers> WorkingBuffers::allocate(std::size_t n) noexcept {
  if (n > std::size_t{std::numeric_limits<std::int32_t>::max()}) return std::nullopt;
  WorkingBuffers buffers;
  buffers.input.reset(new (std::nothrow) std::uint8_t[n]);
  if (!buffers.input) {
    WENLOLIB_TRACE(" inBuff memory error \n");
    return std::nullopt;
  }
  buffers.cipher.reset(new (std::nothrow) std::uint8_t[2 * n]);
  const bool complete = buffers.cipher && answered(false, [&] {
                          buffers.digits.resize(2 * n);
                          return true;
                        });
  if (!complete) {
    WENLOLIB_TRACE(" outBuff memory error \n");
    return std::nullopt;
  }
  return buffers;
}

Payload protect(WorkingBuffers buffers, const Text& date, std::string_view contents) {
  const auto length = static_cast<std::int32_t>(contents.size());
  Payload payload;
  if (date) {
    std::ranges::copy(contents, buffers.input.get());
    payload.marker = encrypt(buffers, *date, length);
  } else {
    // Whatever the host's memory held before must not leave in a file.
    std::fill_n(buffers.cipher.get(), contents.size(), std::uint8_t{0});
  }
  buffers.input.reset();
  if (payload.marker == 'R') hexPrint(encryptedLabel, buffers.cipher.get(), length);
  ConvertHexToCharData(buffers.cipher.get(), buffers.digits.data(), length, 1);
  if (payload.marker == 'X') hexPrint(encryptedLabel, buffers.cipher.get(), length / 2);
  payload.digits = std::move(buffers.digits);
  return payload;
}

}  // namespace wenlolib
