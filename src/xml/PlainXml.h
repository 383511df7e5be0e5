/// XML in the plain form in which programs write it, read without setting up a parser.
#ifndef WENLOLIB_XML_PLAINXML_H
#define WENLOLIB_XML_PLAINXML_H

#include <cstddef>
#include <string_view>

namespace wenlolib::xml {

/// Follows a document from tag to tag. Each step returns false to end the reading.
class Events {
 public:
  virtual ~Events() = default;
  [[nodiscard]] virtual bool start(std::string_view name) = 0;
  [[nodiscard]] virtual bool end(std::string_view name) = 0;
  [[nodiscard]] virtual bool characters(std::string_view text) = 0;
};

/// Longer texts are not looked at: they are rare, and the time to set up expat is nothing compared
/// with reading them.
inline constexpr std::size_t plainBytes = std::size_t{64} << 10;

/// Reads one element and what it holds, if that is plain: printable ASCII, tabs and line feeds;
/// names of letters and digits; at most one attribute per tag; no reference, comment, declaration
/// or section. True says that `text` is well-formed and that every event was taken. False says
/// nothing about `text`: ask expat.
[[nodiscard]] bool readPlain(std::string_view text, Events& events);

}  // namespace wenlolib::xml

#endif
