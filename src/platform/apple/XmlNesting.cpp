#include <optional>
#include <string>
#include <string_view>

#include "platform/apple/Nesting.h"
#include "platform/apple/XmlNarrowing.h"

namespace wenlolib::platform::apple {
namespace {

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// Counts the elements that are open inside each other, and stops wherever two readers might not
/// see the same markup: each step answers whether it could go on.
class Scanner {
 public:
  Scanner(std::string_view text, bool inWideUnits, std::size_t levels)
      : text_(text), inWideUnits_(inWideUnits), levels_(levels) {}

  bool scan();

 private:
  bool takeMarkup();
  bool takeInstruction();
  bool takeComment();
  bool takeDocumentType();
  bool takeTag();
  bool count(std::string_view tag);
  bool take(std::string_view start);
  std::optional<std::string_view> takeUntil(std::string_view end);
  std::optional<std::string_view> takeUntilBracket();

  std::string_view text_;  // what is left
  bool inWideUnits_;
  std::size_t levels_;
  std::size_t level_ = 0;
};

bool Scanner::scan() {
  const std::size_t first = text_.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos || text_[first] != '<') return false;
  while (takeUntil("<")) {
    if (!takeMarkup()) return false;
  }
  return true;
}

bool Scanner::takeMarkup() {
  if (take("?")) return takeInstruction();
  if (take("!--")) return takeComment();
  if (take("![CDATA[")) return takeUntil("]]>").has_value();
  if (take("!DOCTYPE")) return takeDocumentType();
  return takeTag();
}

bool Scanner::takeInstruction() {
  // What "<?>" is depends on whether one question mark may do for both ends.
  if (text_.starts_with('>')) return false;
  const auto instruction = takeUntil("?>");
  return instruction && namesKnownEncoding(*instruction, inWideUnits_);
}

bool Scanner::takeComment() {
  // To some readers these end a comment that has not begun, and a "--" does anywhere.
  if (text_.starts_with(">") || text_.starts_with("->")) return false;
  return takeUntil("--") && take(">");
}

bool Scanner::takeDocumentType() {
  const auto type = takeUntilBracket();
  return type && type->find('[') == std::string_view::npos;
}

bool Scanner::takeTag() {
  const auto tag = takeUntilBracket();
  return tag && count(*tag);
}

bool Scanner::count(std::string_view tag) {
  const bool isClosing = tag.starts_with('/');
  if (isClosing) tag.remove_prefix(1);
  if (tag.empty() || !isLetter(tag.front())) return false;
  if (!isClosing) return tag.back() == '/' || ++level_ <= levels_;
  if (level_ == 0) return false;
  --level_;
  return true;
}

bool Scanner::take(std::string_view start) {
  if (!text_.starts_with(start)) return false;
  text_.remove_prefix(start.size());
  return true;
}

/// Takes what stands before the next `end`, and that too. Nothing where there is none.
std::optional<std::string_view> Scanner::takeUntil(std::string_view end) {
  const std::size_t at = text_.find(end);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view taken = text_.substr(0, at);
  text_.remove_prefix(at + end.size());
  return taken;
}

/// The same for ">", with no bracket of either kind before it that could stand inside quotes.
std::optional<std::string_view> Scanner::takeUntilBracket() {
  const auto taken = takeUntil(">");
  if (!taken) return std::nullopt;
  char quote = '\0';
  for (const char character : *taken) {
    if (character == '<') return std::nullopt;
    if (character == quote) {
      quote = '\0';
    } else if (quote == '\0' && (character == '"' || character == '\'')) {
      quote = character;
    }
  }
  return quote == '\0' ? taken : std::nullopt;
}

}  // namespace

bool xmlNestsAtMost(std::size_t levels, std::string_view file) {
  const auto text = narrowed(file);
  return text && Scanner(*text, isInWideUnits(file), levels).scan();
}

}  // namespace wenlolib::platform::apple
