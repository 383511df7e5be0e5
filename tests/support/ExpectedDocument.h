/// Survey documents as a receiver sees them: how one must look, and what can be read from it. Built
/// on the reference MD5 and RC4, without any code of the library.
#ifndef WENLOLIB_TESTS_SUPPORT_EXPECTEDDOCUMENT_H
#define WENLOLIB_TESTS_SUPPORT_EXPECTEDDOCUMENT_H

#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::tests {

struct ExpectedPrinter {
  std::string deviceId, serialNumber, romVersion;
};

/// The values of a document. The defaults are those of a platform set up by `install`.
struct ExpectedDocument {
  std::string wrapper = "OrvanQXApplication";
  std::string version = "3.1";
  std::string osVersion = "M.10.15.7";
  std::string date = "2024-03-15T09:05:07+09:00";
  std::string locale = "en_US";
  std::string identifier = "{ID}";
  std::optional<ExpectedPrinter> printer;  // the older printer layout
  char marker = 'R';
  std::string contents;

  [[nodiscard]] std::string payload() const;  // as hexadecimal text; all zeros without a date
  [[nodiscard]] std::string text() const;
};

/// The MD5 digest of a text, 32 upper-case digits.
[[nodiscard]] std::string checksumOf(std::string_view text);

/// The exclusive or of `source` and the 16 bytes of `key`, repeated.
[[nodiscard]] std::string cycledXor(std::string_view key, std::string source);

/// The text between the first <name ...> of a document and its end tag.
[[nodiscard]] std::string elementIn(const std::string& document, const std::string& name);

/// The value of the first attribute of that name.
[[nodiscard]] std::string attributeIn(const std::string& document, const std::string& name);

/// The record's contents, decrypted with nothing but the document itself.
[[nodiscard]] std::string contentsOf(const std::string& document);

/// Whether the checksum is that of the text between the wrapper's tags.
[[nodiscard]] bool verifies(const std::string& document);

}  // namespace wenlolib::tests

#endif
