#include "receiver/Contents.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/Integer.h"
#include "platform/Platform.h"
#include "wenlolib/Receiver.h"
#include "wenlolib/codec.h"

namespace wenlolib::receiver {

using platform::DigitRun;

// --- Digits ---

namespace {

constexpr std::uint8_t noDigit = 0x80;

/// The value of every character: one look-up each, since large payloads pass through here.
constexpr auto digitValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(noDigit);
  for (std::size_t i = 0; i < hexadecimalDigits.size(); ++i) {
    values[static_cast<unsigned char>(hexadecimalDigits[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}();

std::uint8_t valueOf(char character) {
  return digitValues[static_cast<unsigned char>(character)];
}

}  // namespace

std::size_t leadingDigits(std::string_view text) {
  const auto end =
      std::ranges::find_if(text, [](char character) { return valueOf(character) == noDigit; });
  return static_cast<std::size_t>(end - text.begin());
}

std::size_t decodeDigits(std::string_view text, char* bytes) {
  const std::size_t pairs = text.size() / 2;
  const char* digits = text.data();
  // Whether all were digits is checked once, after the loop: they nearly always were.
  unsigned all = 0;
  for (std::size_t i = 0; i < pairs; ++i) {
    const unsigned high = valueOf(digits[2 * i]);
    const unsigned low = valueOf(digits[2 * i + 1]);
    all |= high | low;
    bytes[i] = static_cast<char>((high << 4) | low);
  }
  if (text.size() % 2 != 0) all |= valueOf(text.back());
  return all < noDigit ? text.size() : leadingDigits(text);
}

DigitRun longestRunAfterTag(std::string_view bytes) {
  DigitRun longest{bytes.size(), 0};
  std::size_t at = bytes.find('>');
  while (at != std::string_view::npos) {
    const DigitRun run{at + 1, leadingDigits(bytes.substr(at + 1))};
    if (run.length > longest.length) longest = run;
    at = bytes.find('>', run.offset + run.length);
  }
  return longest;
}

// --- The cipher ---

namespace {

std::uint8_t* data(std::string& bytes) {
  return reinterpret_cast<std::uint8_t*>(bytes.data());
}

void exclusiveOr(const platform::Md5Digest& key, std::string& bytes) {
  // The call takes 32-bit lengths; a piece that is a multiple of the key's length keeps its cycle.
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
