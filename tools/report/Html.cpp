#include "report/Html.h"

#include "terminal/VisibleText.h"

namespace wenlolib::tools {

std::string html(std::string_view text) {
  const std::string shown = visibleText(text);
  std::string out;
  out.reserve(shown.size() + shown.size() / 8);
  for (const char c : shown) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&#39;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string isolated(std::string_view text) {
  return "<bdi>" + html(text) + "</bdi>";
}

}  // namespace wenlolib::tools
