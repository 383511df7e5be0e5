#include "xml/Escape.h"

#include <algorithm>

#include "base/Utf8.h"

namespace wenlolib::xml {
namespace {

bool isForbiddenControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 && character != '\t' && character != '\n' && character != '\r';
}

}  // namespace

bool isXmlText(std::string_view text) {
  return isUtf8(text) && std::none_of(text.begin(), text.end(), isForbiddenControl) &&
         text.find("\xEF\xBF\xBE") == text.npos && text.find("\xEF\xBF\xBF") == text.npos;
}

std::string_view escapeFor(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

}  // namespace wenlolib::xml
