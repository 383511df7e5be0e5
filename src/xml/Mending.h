/// Mending markup that a value has brought into a document.
#ifndef WENLOLIB_XML_MENDING_H
#define WENLOLIB_XML_MENDING_H

#include <cstddef>
#include <string>
#include <string_view>

namespace wenlolib::xml {

/// A text that comes in pieces, with every "&" that begins no reference, every "<" that begins no
/// tag and the ">" of every "]]>" that ends no section escaped. Everything else stays as it is, and
/// may still be malformed; so does what stands in a CDATA section, a comment or an instruction. A
/// reference is one of the five that XML defines by name, or a numeric one.
class Mending {
 public:
  /// No markup may lie across the border of two pieces.
  void add(std::string_view piece);

  std::string text;

 private:
  std::size_t addContent(std::string_view piece);
  std::size_t addEnclosed(std::string_view piece);

  std::string_view _end;  // of the section, comment or instruction that is open; "" in content
};

/// The same for a text in one piece.
[[nodiscard]] std::string mend(std::string_view text);

}  // namespace wenlolib::xml

#endif
