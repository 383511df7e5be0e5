/// The dates of documents, as moments.
#ifndef WENLOLIB_READING_DATETEXT_H
#define WENLOLIB_READING_DATETEXT_H

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace wenlolib {

/// The moment that a document's date text names, such as 2024-03-15T09:05:07+09:00; the offset may
/// lack its colon. Nothing for another text.
[[nodiscard]] std::optional<std::time_t> momentOf(std::string_view dateText);

/// The same, with the text's offset from GMT in seconds.
struct Moment {
  std::time_t time = 0;
  std::int32_t offset = 0;
};
[[nodiscard]] std::optional<Moment> zonedMomentOf(std::string_view dateText);

/// "2024-03-15T00:05:07Z"; nothing before the year 1 or after 9999, which take other forms.
[[nodiscard]] std::optional<std::string> utcText(std::time_t time);

/// Reads a text from its front. Once something is not as expected, it has failed for good.
class Scanner {
 public:
  explicit Scanner(std::string_view rest) : rest_(rest) {}

  /// Whether all was as expected, and nothing is left.
  [[nodiscard]] bool done() const { return sound_ && rest_.empty(); }
  [[nodiscard]] char next() const { return rest_.empty() ? '\0' : rest_.front(); }

  Scanner& expect(char character);

  /// A number from `least` to `most`; of exactly `digits` digits if that is not 0.
  std::int32_t number(std::int32_t least, std::int32_t most, std::size_t digits = 0);

  /// Seconds from GMT, as "+09:00" or "-0330".
  std::int32_t offset();

 private:
  std::string_view rest_;
  bool sound_ = true;
};

}  // namespace wenlolib

#endif
