#include "xml/PlainXml.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace wenlolib::xml {
namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}
bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool isLetterOrDigit(char c) {
  return isLetter(c) || (c >= '0' && c <= '9');
}
/// What stands for itself in an attribute's value. A ">" would as well, but not after "]]" in
/// content; leaving it out saves telling the two cases apart.
bool isPlain(char c) {
  return c >= ' ' && c <= '~' && c != '<' && c != '>' && c != '&' && c != '"';
}
bool isContent(char c) {
  return isPlain(c) || isBlank(c) || c == '"';
}

class PlainXml {
 public:
  PlainXml(std::string_view text, Events& events) : rest_(text), events_(events) {}
  [[nodiscard]] bool read();

 private:
  [[nodiscard]] bool take(std::string_view text);
  template <class Test>
  [[nodiscard]] std::string_view takeWhile(Test test);
  [[nodiscard]] std::string_view takeName();
  [[nodiscard]] bool startTag();
  [[nodiscard]] bool endTag();
  [[nodiscard]] bool attribute();

  std::string_view rest_;
  Events& events_;
  std::vector<std::string_view> open_;
};

bool PlainXml::take(std::string_view text) {
  if (!rest_.starts_with(text)) return false;
  rest_.remove_prefix(text.size());
  return true;
}

template <class Test>
std::string_view PlainXml::takeWhile(Test test) {
  const auto end = std::find_if_not(rest_.begin(), rest_.end(), test);
  const std::string_view taken = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
  rest_.remove_prefix(taken.size());
  return taken;
}

/// Empty if no name begins here.
std::string_view PlainXml::takeName() {
  const bool begins = !rest_.empty() && isLetter(rest_.front());
  return begins ? takeWhile(isLetterOrDigit) : std::string_view();
}

bool PlainXml::attribute() {
  if (takeName().empty() || !take("=\"")) return false;
  static_cast<void>(takeWhile(isPlain));
  return take("\"");
}

bool PlainXml::startTag() {
  const std::string_view name = takeName();
  if (name.empty() || (take(" ") && !attribute())) return false;
  if (take("/>")) return events_.start(name) && events_.end(name);
  open_.push_back(name);
  return take(">") && events_.start(name);
}

bool PlainXml::endTag() {
  const std::string_view name = takeName();
  if (open_.empty() || name != open_.back() || !take(">")) return false;
  open_.pop_back();
  return events_.end(name);
}

bool PlainXml::read() {
  static_cast<void>(takeWhile(isBlank));
  if (!take("<") || !startTag()) return false;
  while (!open_.empty()) {
    const std::string_view text = takeWhile(isContent);
    if (!text.empty() && !events_.characters(text)) return false;
    if (take("</") ? !endTag() : !take("<") || !startTag()) return false;
  }
  static_cast<void>(takeWhile(isBlank));
  return rest_.empty();
}

}  // namespace

bool readPlain(std::string_view text, Events& events) {
  return text.size() <= plainBytes && PlainXml(text, events).read();
}

}  // namespace wenlolib::xml
