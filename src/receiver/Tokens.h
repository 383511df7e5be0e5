/// A well-formed document, taken apart into tags and what stands between them.
#ifndef WENLOLIB_RECEIVER_TOKENS_H
#define WENLOLIB_RECEIVER_TOKENS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace wenlolib::receiver {

struct Token {
  enum Kind : std::uint8_t { text, startTag, endTag, emptyElement, other };
  Kind kind = other;
  std::string_view bytes;

  /// Of a tag.
  [[nodiscard]] std::string_view name() const;
};

/// Walks through the tokens. The document is well formed and declares no type; any other bytes are
/// walked through all the same, to no purpose.
class Tokens {
 public:
  explicit Tokens(std::string_view document) : rest_(document) {}

  [[nodiscard]] std::optional<Token> next();

 private:
  std::string_view rest_;
};

/// The name of the outermost element.
[[nodiscard]] std::string_view outermostName(std::string_view document);

/// White space that is no value: it stands outside the outermost element, or between two tags that
/// are not an element's start and end.
struct Gap {
  std::size_t offset = 0;
  std::string_view before;  // the name of the tag that follows, or ""
};

[[nodiscard]] std::optional<Gap> firstGap(std::string_view document);

}  // namespace wenlolib::receiver

#endif
