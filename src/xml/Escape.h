/// Character data of XML documents.
#ifndef WENLOLIB_XML_ESCAPE_H
#define WENLOLIB_XML_ESCAPE_H

#include <string_view>

namespace wenlolib::xml {

/// True if `text` is UTF-8 and XML 1.0 allows every character in it. XML does not allow control
/// characters other than tab, line feed and carriage return, nor U+FFFE and U+FFFF.
[[nodiscard]] bool isXmlText(std::string_view text);

/// The escape for a character that markup or the parser's rule for line ends would swallow; else
/// empty.
[[nodiscard]] std::string_view escapeFor(char character);

/// Passes `text` to `put` in parts, escaped, until `put` returns false; true if it never does.
template <class Put>
[[nodiscard]] bool eachEscapedPart(std::string_view text, const Put& put) {
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view escape = escapeFor(text[i]);
    if (escape.empty()) continue;
    if (!put(text.substr(start, i - start)) || !put(escape)) return false;
    start = i + 1;
  }
  return put(text.substr(start));
}

}  // namespace wenlolib::xml

#endif
