// The six codec functions compared with plain ones: any bytes, lengths and positions.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Input.h"
#include "Require.h"
#include "support/ReferenceCrypto.h"
#include "wenlolib/codec.h"

namespace {

using wenlolib::fuzz::Input;
using wenlolib::fuzz::require;
using wenlolib::tests::bytesOf;
using wenlolib::tests::referenceMd5;
using wenlolib::tests::referenceRc4;
using wenlolib::tests::upperHex;

/// A buffer of exactly these bytes, so that a sanitizer sees every access beyond them.
struct Buffer {
  explicit Buffer(const std::string& bytes)
      : size(bytes.size()), bytes(new std::uint8_t[bytes.size()]) {
    std::copy(bytes.begin(), bytes.end(), this->bytes.get());
  }
  [[nodiscard]] std::uint8_t* data() const { return bytes.get(); }
  [[nodiscard]] char* text() const { return reinterpret_cast<char*>(bytes.get()); }
  [[nodiscard]] std::string now() const { return {text(), size}; }

  std::size_t size;
  std::unique_ptr<std::uint8_t[]> bytes;
};

/// The true length, or a negative one.
std::int32_t lengthFrom(Input& input, std::size_t size) {
  const std::uint8_t choice = input.byte();
  if (choice == 1) return -1;
  if (choice == 2) return INT32_MIN;
  return static_cast<std::int32_t>(size);
}

void checkToText(Input& input) {
  const std::string bytes = input.text();
  const Buffer source(bytes);
  const Buffer text(std::string(2 * bytes.size(), '#'));
  const std::int32_t count = lengthFrom(input, bytes.size());
  const std::uint8_t choice = input.byte();
  const bool done = choice != 1 && choice != 2 && count > 0;
  require(ConvertHexToCharData(choice == 1 ? nullptr : source.data(),
                               choice == 2 ? nullptr : text.text(), count, choice) == 0,
          "conversion to text answers 0");
  require(text.now() == (done ? upperHex(bytesOf(bytes)) : std::string(2 * bytes.size(), '#')),
          "bytes as text");
}

int digit(char character, int radix) {
  const std::size_t found = std::string("0123456789ABCDEFabcdef").find(character);
  if (character == '\0' || found == std::string::npos) return -1;
  const int value = static_cast<int>(found < 16 ? found : found - 6);
  return value < radix ? value : -1;
}

/// The bytes that a text spells, up to the first invalid pair.
std::string spelled(const std::string& text, int radix) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
    const int high = digit(text[i], radix);
    const int low = digit(text[i + 1], radix);
    if (high < 0 || low < 0) break;
    bytes += static_cast<char>(high * radix + low);
  }
  return bytes;
}

void checkToBytes(Input& input) {
  const std::uint8_t flag = input.byte();
  const std::string text = input.plain();
  const std::size_t room = (text.size() + 1) / 2;
  const Buffer source(text + '\0');
  const Buffer bytes(std::string(room, '#'));
  const std::string expected = spelled(text, flag != 0 ? 16 : 10);
  const bool whole = 2 * expected.size() == text.size();
  require(ConvertCharDataToHex(source.text(), bytes.data(), flag) == (whole ? 0 : 1),
          "conversion to bytes answers whether all was spelled");
  require(bytes.now() == expected + std::string(room - expected.size(), '#'), "text as bytes");
  require(ConvertCharDataToHex(nullptr, bytes.data(), flag) == 1, "a null text is a failure");
  require(ConvertCharDataToHex(source.text(), nullptr, flag) == (text.empty() ? 0 : 1),
          "a null buffer is a failure unless the text is empty");
}

void checkDigest(Input& input) {
  const std::string text = input.plain();
  const Buffer source(text + '\0');
  const Buffer digest(std::string(16, '#'));
  require(CreateDigestMD5_CC(nullptr, digest.data()) == 0, "a null text is not a failure");
  require(CreateDigestMD5_CC(source.text(), nullptr) == 0, "a null digest is not a failure");
  require(digest.now() == std::string(16, '#'), "nothing is written for a null text");
  require(CreateDigestMD5_CC(source.text(), digest.data()) == 0, "a digest answers 0");
  require(upperHex({digest.data(), 16}) == upperHex(referenceMd5(bytesOf(text))), "the digest");
}

void checkXor(Input& input) {
  std::string bytes = input.text();
  std::string key = input.text();
  key.resize(16);
  const Buffer source(bytes);
  const Buffer keyBytes(key);
  const Buffer other(std::string(bytes.size(), '#'));
  const std::int32_t count = lengthFrom(input, bytes.size());
  const std::uint8_t choice = input.byte();
  const Buffer& destination = choice % 2 == 0 ? source : other;
  const std::string before = destination.now();
  const bool done = choice < 100 && count > 0;
  require(DoEncryptXOR(choice == 100 || choice == 101 ? nullptr : destination.data(), nullptr,
                       choice == 102 || choice == 103 ? nullptr : source.data(), count,
                       choice > 103 ? nullptr : keyBytes.data()) == 0,
          "the exclusive or answers 0");
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(bytes[i] ^ key[i % 16]);
  }
  require(destination.now() == (done ? bytes : before), "the exclusive or");
}

/// Key, source and destination anywhere in one stretch of memory.
void checkRc4(Input& input) {
  std::string bytes = input.text() + input.text();
  bytes.resize(512);
  const std::size_t keyAt = input.byte();
  const std::size_t sourceAt = input.byte();
  const std::size_t destinationAt = input.byte();
  const std::size_t keySize = input.byte() + input.below(3);
  const std::size_t size = input.byte();
  const Buffer memory(bytes);
  const bool fits = keySize > 0 && keySize <= 256;
  std::string expected = bytes;
  if (fits) {
    expected.replace(
        destinationAt, size,
        referenceRc4(bytesOf(bytes.substr(keyAt, keySize)), bytes.substr(sourceAt, size)));
  }
  std::int32_t length = -77;
  require(DoRC4Encrypt(memory.data() + keyAt, static_cast<std::int32_t>(keySize),
                       memory.data() + sourceAt, static_cast<std::int32_t>(size),
                       memory.data() + destinationAt, &length) == (fits ? 0 : -1),
          "the cipher answers whether it takes the key");
  require(length == (fits ? static_cast<std::int32_t>(size) : -77), "the cipher's length");
  require(memory.now() == expected, "the cipher");
}

void checkRc4Refusals(Input& input) {
  const std::string bytes = input.text() + "some more";
  const Buffer memory(bytes);
  std::uint8_t* data = memory.data();
  const auto size = static_cast<std::int32_t>(bytes.size());
  std::int32_t length = -77;
  const bool refused = DoRC4Encrypt(nullptr, 5, data, size, data, &length) == -1 &&
                       DoRC4Encrypt(data, -1, data, size, data, &length) == -1 &&
                       DoRC4Encrypt(data, 5, nullptr, size, data, &length) == -1 &&
                       DoRC4Encrypt(data, 5, data, -size, data, &length) == -1 &&
                       DoRC4Encrypt(data, 5, data, size, nullptr, &length) == -1 &&
                       DoRC4Encrypt(data, 5, data, size, data, nullptr) == -1;
  require(refused && length == -77 && memory.now() == bytes, "the cipher's refusals");
  require(DoRC4Encrypt(data, 5, nullptr, 0, nullptr, &length) == 0 && length == 0,
          "encrypting nothing needs no buffer");
  require(hexPrint(memory.text(), data, size) == 0, "the debug hook answers 0");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr void (*checks[])(Input&) = {checkToText, checkToBytes, checkDigest,
                                        checkXor,    checkRc4,     checkRc4Refusals};
  Input input(data, size);
  checks[input.below(std::size(checks))](input);
  return 0;
}
