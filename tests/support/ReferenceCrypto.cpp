#include "support/ReferenceCrypto.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <numeric>
#include <utility>

namespace wenlolib::tests {
namespace {

constexpr std::size_t blockSize = 64;
using State = std::array<std::uint32_t, 4>;

/// Step i adds the integer part of 2^32 times |sin(i + 1)|.
const std::array<std::uint32_t, 64> sines = [] {
  std::array<std::uint32_t, 64> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double sine = std::fabs(std::sin(static_cast<double>(i + 1)));
    table[i] = static_cast<std::uint32_t>(std::floor(sine * 4294967296.0));
  }
  return table;
}();

constexpr int rotations[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

/// The function of one of the four rounds, and the word of the block that a step uses.
std::pair<std::uint32_t, std::size_t> mixed(std::size_t step, const State& s) {
  const std::uint32_t b = s[1];
  const std::uint32_t c = s[2];
  const std::uint32_t d = s[3];
  switch (step / 16) {
    case 0:
      return {(b & c) | (~b & d), step};
    case 1:
      return {(b & d) | (c & ~d), (5 * step + 1) % 16};
    case 2:
      return {b ^ c ^ d, (3 * step + 5) % 16};
    default:
      return {c ^ (b | ~d), (7 * step) % 16};
  }
}

std::uint32_t wordAt(const std::uint8_t* block, std::size_t index) {
  std::uint32_t word = 0;
  for (std::size_t i = 4; i > 0; --i) word = (word << 8) | block[4 * index + i - 1];
  return word;
}

void digestBlock(const std::uint8_t* block, State& state) {
  State s = state;
  for (std::size_t step = 0; step < 64; ++step) {
    const auto [mix, word] = mixed(step, s);
    const std::uint32_t sum = s[0] + mix + sines[step] + wordAt(block, word);
    s = {s[3], s[1] + std::rotl(sum, rotations[step / 16][step % 4]), s[1], s[2]};
  }
  for (std::size_t i = 0; i < state.size(); ++i) state[i] += s[i];
}

void storeLittleEndian(std::uint64_t value, std::size_t size, std::uint8_t* bytes) {
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

int hexValue(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  return 10 + ((character | 0x20) - 'a');
}

}  // namespace

ByteView bytesOf(std::string_view text) noexcept {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::array<std::uint8_t, 16> referenceMd5(ByteView message) noexcept {
  State state{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
  const std::uint64_t bits = std::uint64_t{message.size()} * 8;
  while (message.size() >= blockSize) {
    digestBlock(message.data(), state);
    message = message.subspan(blockSize);
  }
  // The last one or two blocks: the rest, a one bit, zeros, and the message's length in bits.
  std::array<std::uint8_t, 2 * blockSize> last{};
  if (!message.empty()) std::memcpy(last.data(), message.data(), message.size());
  last[message.size()] = 0x80;
  const std::size_t padded = message.size() + 9 <= blockSize ? blockSize : 2 * blockSize;
  storeLittleEndian(bits, 8, last.data() + padded - 8);
  for (std::size_t at = 0; at < padded; at += blockSize) digestBlock(last.data() + at, state);

  std::array<std::uint8_t, 16> digest{};
  for (std::size_t i = 0; i < state.size(); ++i) storeLittleEndian(state[i], 4, &digest[4 * i]);
  return digest;
}

void referenceRc4(ByteView key, ByteView source, std::uint8_t* destination) noexcept {
  std::array<std::uint8_t, 256> box{};
  std::iota(box.begin(), box.end(), std::uint8_t{0});
  for (std::size_t i = 0, j = 0; i < box.size(); ++i) {
    j = (j + box[i] + key[i % key.size()]) % 256;
    std::swap(box[i], box[j]);
  }
  if (!source.empty()) std::memmove(destination, source.data(), source.size());
  for (std::size_t n = 0, i = 0, j = 0; n < source.size(); ++n) {
    i = (i + 1) % 256;
    j = (j + box[i]) % 256;
    std::swap(box[i], box[j]);
    destination[n] ^= box[(std::size_t{box[i]} + box[j]) % 256];
  }
}

std::string referenceRc4(ByteView key, std::string_view source) {
  std::string result(source);
  referenceRc4(key, bytesOf(source), reinterpret_cast<std::uint8_t*>(result.data()));
  return result;
}

std::string upperHex(ByteView bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += "0123456789ABCDEF"[byte >> 4];
    text += "0123456789ABCDEF"[byte & 15];
  }
  return text;
}

std::string fromHex(std::string_view hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(hexValue(hex[i]) * 16 + hexValue(hex[i + 1]));
  }
  return bytes;
}

}  // namespace wenlolib::tests
