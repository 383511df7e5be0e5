/// Values that a document's fields should never hold.
#ifndef WENLOLIB_TESTS_PLATFORM_LINUX_HOSTILEVALUES_H
#define WENLOLIB_TESTS_PLATFORM_LINUX_HOSTILEVALUES_H

#include <string>
#include <vector>

namespace wenlolib::tests {

/// Values that put a parser into each state that it can be in, or take it out of one.
inline const std::vector<std::string>& hostileValues() {
  using namespace std::string_literals;
  static const std::vector<std::string> values = {"",
                                                  "plain",
                                                  "A&B",
                                                  "A&amp;B",
                                                  "&",
                                                  "&#65;",
                                                  "&#x41;",
                                                  "&#0;",
                                                  "&#xD800;",
                                                  "&#x110000;",
                                                  "&lt;",
                                                  "&nbsp;",
                                                  "&unfinished",
                                                  "&#",
                                                  "<",
                                                  "< ",
                                                  "<b",
                                                  "<b>",
                                                  "<b/>",
                                                  "<b></b>",
                                                  "</b>",
                                                  "<b><c>",
                                                  "</Printer>",
                                                  "</SN>",
                                                  "</SN><SN>",
                                                  "</PLI>",
                                                  "<PLI C=\"R\">",
                                                  "<b c=\"",
                                                  "<b c='",
                                                  "<b c=\"x\"",
                                                  "<b c=x>",
                                                  "<b c=\"1\" c=\"2\"/>",
                                                  "\"",
                                                  "'",
                                                  ">",
                                                  "]]>",
                                                  "]]",
                                                  "]",
                                                  "<!--",
                                                  "-->",
                                                  "<!-- -->",
                                                  "<!-- -- -->",
                                                  "<!---->",
                                                  "<!-->",
                                                  "<!-",
                                                  "--",
                                                  "<![CDATA[",
                                                  "]]>",
                                                  "<![CDATA[x]]>",
                                                  "<![CDATA[ ]]",
                                                  "<![CDATA",
                                                  "<?",
                                                  "<?pi",
                                                  "<?pi ",
                                                  "<?pi ?>",
                                                  "?>",
                                                  "<?pi?",
                                                  "<?xml version=\"1.0\"?>",
                                                  "<?xml",
                                                  "<!DOCTYPE a>",
                                                  "<!DOCTYPE a [",
                                                  "<!ENTITY e \"x\">",
                                                  "%e;",
                                                  "<a:b/>",
                                                  "<:b/>",
                                                  "<a:b>",
                                                  "<1/>",
                                                  "<-/>",
                                                  "\x01",
                                                  "\x7F",
                                                  "\t\n\r",
                                                  "\0"s,
                                                  "\xFF",
                                                  "\xC3",
                                                  "\xEF\xBF\xBE",
                                                  "\xEF\xBB\xBF",
                                                  "\xED\xA0\x80",
                                                  "\xC3\xBC",
                                                  "\xF0\x9D\x84\x9E",
                                                  "<\xC3\xBC/>"};
  return values;
}

}  // namespace wenlolib::tests

#endif
