#include "receiver/Contents.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "base/Utf8.h"
#include "platform/Platform.h"
#include "receiver/Digits.h"
#include "wenlolib/Receiver.h"
#include "wenlolib/codec.h"

namespace wenlolib::receiver {
namespace {

std::uint8_t* data(std::string& bytes) {
  return reinterpret_cast<std::uint8_t*>(bytes.data());
}

void exclusiveOr(const platform::Md5Digest& key, std::string& bytes) {
  // Lengths are 32 bits there; a multiple of the key's length keeps its cycle.
  constexpr std::size_t most = std::size_t{1} << 30;
  static_assert(most % std::tuple_size_v<platform::Md5Digest> == 0);
  for (std::size_t at = 0; at < bytes.size(); at += most) {
    const auto count = static_cast<std::int32_t>(std::min(most, bytes.size() - at));
    DoEncryptXOR(data(bytes) + at, nullptr, data(bytes) + at, count, key.data());
  }
}

}  // namespace

bool decipher(char marker, std::string_view date, std::string& bytes) {
  const platform::Platform& platform = platform::current();
  const platform::Md5Digest key =
      platform.digest->md5({reinterpret_cast<const std::uint8_t*>(date.data()), date.size()});
  if (marker == 'R') return platform.cipher->rc4(key, {data(bytes), bytes.size()}, data(bytes));
  if (marker != 'X') return false;
  exclusiveOr(key, bytes);
  return true;
}

std::size_t validUtf8(std::string_view text) {
  if (isUtf8(text)) return text.size();
  constexpr std::size_t longestCharacter = 4;
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t length = 1;
    while (length <= longestCharacter && !isUtf8(text.substr(at, length))) ++length;
    if (length > longestCharacter) break;
    at += length;
  }
  return at;
}

std::optional<std::string> contentsOf(const Document& document) {
  if (document.contents) return document.contents;
  const std::string_view date = document.value("Date");
  if (date.empty()) return std::nullopt;
  std::string bytes(document.digits.size() / 2, '\0');
  if (bytes.size() * 2 != document.digits.size() ||
      decodeDigits(document.digits, bytes.data()) != document.digits.size() ||
      !decipher(document.marker, date, bytes)) {
    return std::nullopt;
  }
  return bytes;
}

std::optional<std::string> contentsOf(Document&& document) {
  if (document.contents) return std::exchange(document.contents, std::nullopt);
  return contentsOf(std::as_const(document));
}

}  // namespace wenlolib::receiver
