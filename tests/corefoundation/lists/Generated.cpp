#include "Generated.h"

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "base/Utf8.h"
#include "plist/Scalars.h"

namespace wenlolib::tests::lists {
namespace {

class Source {
 public:
  explicit Source(std::uint64_t seed) : random_(seed) {}

  std::uint64_t bits() { return random_(); }
  /// Below `end`, which must not be 0.
  std::size_t below(std::size_t end) { return random_() % end; }
  template <class Item>
  Item oneOf(std::initializer_list<Item> items) {
    return items.begin()[below(items.size())];
  }

 private:
  std::mt19937_64 random_;
};

// --- Values ---

char32_t randomCharacter(Source& source, bool mayBeControl) {
  const auto end = source.oneOf<std::size_t>({0x80, 0x80, 0x80, 0x800, 0x10000, 0x110000});
  const auto character = static_cast<char32_t>(source.below(end));
  const bool isHalf = character >= 0xD800 && character <= 0xDFFF;
  const bool isControl = character < 0x20 || character == 0xFFFE || character == 0xFFFF;
  return isHalf || (isControl && !mayBeControl) ? U'k' : character;
}

std::string randomText(Source& source) {
  std::string text;
  const auto length = source.oneOf<std::size_t>({0, 1, 3, 14, 15, 16, 100});
  const bool mayBeControl = source.below(50) == 0;
  for (std::size_t i = 0; i < length; ++i) appendUtf8(text, randomCharacter(source, mayBeControl));
  return text;
}

Value randomInteger(Source& source) {
  const std::uint64_t bits = source.bits() >> source.below(64);
  const std::uint64_t number =
      source.oneOf<std::uint64_t>({bits, std::uint64_t{1} << source.below(64), bits, ~0ULL}) -
      source.below(2);
  if (source.below(2) == 0) return plist::naturalValue(number);
  return static_cast<std::int64_t>(number);
}

double randomReal(Source& source) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const double number = std::bit_cast<double>(source.bits());
  return source.oneOf({number, number, number, 0.0, -0.0, 1.0, 0.1, infinity, -infinity,
                       std::nan(""), std::numeric_limits<double>::denorm_min(),
                       static_cast<double>(source.below(1000))});
}

Instant randomDate(Source& source) {
  const auto range = source.oneOf({3e9, 1e11, 2.5e11, 1e13});
  const double seconds = range * (static_cast<double>(source.bits() >> 11U) / 0x1p52 - 1);
  // A fraction that keeps all its bits when the count starts in 2001 instead of 1970.
  const double fraction = static_cast<double>(source.below(4) == 0 ? source.below(256) : 0) / 256;
  return Instant(Seconds(std::floor(seconds) + fraction));
}

Value randomScalar(Source& source) {
  switch (source.below(6)) {
    case 0:
      return source.below(2) == 0;
    case 1:
      return randomInteger(source);
    case 2:
      return randomReal(source);
    case 3:
      return randomDate(source);
    case 4: {
      Value::Data data(source.oneOf<std::size_t>({0, 1, 2, 3, 14, 15, 57, 200}));
      for (auto& byte : data) byte = static_cast<std::uint8_t>(source.bits());
      return data;
    }
    default:
      return randomText(source);
  }
}

Dictionary randomDictionary(Source& source, std::size_t depth);

Value randomValue(Source& source, std::size_t depth) {
  const std::size_t kind = depth == 0 ? 2 : source.below(6);
  if (kind == 0) return randomDictionary(source, depth - 1);
  if (kind != 1) return randomScalar(source);
  Value::Array items;
  const auto count = source.oneOf<std::size_t>({0, 1, 3, 10});
  while (items.size() < count) {
    const bool isSame = !items.empty() && source.below(4) == 0;
    items.push_back(isSame ? items.back() : randomValue(source, depth - 1));
  }
  return items;
}

Dictionary randomDictionary(Source& source, std::size_t depth) {
  Dictionary entries;
  for (auto left = source.oneOf<std::size_t>({0, 1, 3, 10}); left > 0; --left) {
    entries.insert_or_assign(randomText(source), randomValue(source, depth));
  }
  return entries;
}

// --- Damage ---

constexpr const char* tokens[] = {"<",
                                  ">",
                                  "/",
                                  "&",
                                  "]]>",
                                  "<!--",
                                  "-->",
                                  "<![CDATA[",
                                  "<?x?>",
                                  "&#10;",
                                  "&#x41;",
                                  "&amp;",
                                  "<dict>",
                                  "</dict>",
                                  "<dict/>",
                                  "<array>",
                                  "</array>",
                                  "<array/>",
                                  "<key>k</key>",
                                  "<key/>",
                                  "<string>",
                                  "</string>",
                                  "<string/>",
                                  "<integer>",
                                  "</integer>",
                                  "<integer>7</integer>",
                                  "<real>",
                                  "</real>",
                                  "<date>",
                                  "</date>",
                                  "<data>",
                                  "</data>",
                                  "<data/>",
                                  "<true/>",
                                  "<false/>",
                                  "</plist>",
                                  "<plist>",
                                  " ",
                                  "\n",
                                  "\r",
                                  "\t",
                                  "\f",
                                  "-",
                                  "+",
                                  "0",
                                  "9",
                                  "0x",
                                  "e",
                                  "=",
                                  "nan",
                                  "2024-02-30T00:00:00Z",
                                  "CF$UID",
                                  "\x08",
                                  "\x09",
                                  "\x10",
                                  "\x13",
                                  "\x14",
                                  "\x23",
                                  "\x33",
                                  "\x4F",
                                  "\x51k",
                                  "\x5F\x10",
                                  "\x6F",
                                  "\x80",
                                  "\x83",
                                  "\xA1",
                                  "\xC1",
                                  "\xD1",
                                  "\xDF",
                                  "\xEF",
                                  "\xED\xA0\x80",
                                  "\xEF\xBF\xBE",
                                  "\xFF\xFE",
                                  "{",
                                  "}",
                                  ";"};

void damageOnce(Source& source, std::string& bytes, const std::vector<std::string>& originals) {
  const std::size_t at = source.below(bytes.size() + 1);
  const std::size_t length = source.oneOf<std::size_t>({1, 1, 2, 8, 40});
  // Where a binary list keeps its widths, counts and offsets.
  const std::size_t nearEnd =
      bytes.size() - source.below(std::min<std::size_t>(60, bytes.size() + 1));
  const std::string& other = originals[source.below(originals.size())];
  switch (source.below(8)) {
    case 0:
      if (at < bytes.size()) bytes[at] = static_cast<char>(bytes[at] ^ (1 << source.below(8)));
      break;
    case 1:
      bytes.erase(at, length);
      break;
    case 2:
      bytes.insert(at, 1, static_cast<char>(source.bits()));
      break;
    case 3:
      if (nearEnd < bytes.size()) bytes[nearEnd] = static_cast<char>(source.below(12));
      break;
    case 4:
      if (at < bytes.size()) bytes[at] = static_cast<char>(source.bits());
      break;
    case 5:
      bytes.insert(at, bytes.substr(source.below(bytes.size() + 1), length));
      break;
    case 6:
      bytes = bytes.substr(0, at) + other.substr(source.below(other.size() + 1));
      break;
    default: {
      const std::string token = tokens[source.below(std::size(tokens))];
      bytes.replace(at, source.below(2) * token.size(), token);
    }
  }
}

}  // namespace

Dictionary randomList(std::uint64_t seed) {
  Source source(seed);
  return randomDictionary(source, 3);
}

std::string damaged(const std::vector<std::string>& originals, std::uint64_t seed) {
  Source source(seed);
  std::string bytes = originals[source.below(originals.size())];
  for (auto left = source.oneOf({1, 1, 1, 2, 4}); left > 0; --left) {
    damageOnce(source, bytes, originals);
  }
  return bytes;
}

}  // namespace wenlolib::tests::lists
