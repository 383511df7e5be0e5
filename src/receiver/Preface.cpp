#include "receiver/Preface.h"

#include <algorithm>
#include <new>

#include "xml/Parser.h"

namespace wenlolib::receiver {
namespace {

constexpr std::string_view declarationStart = "<?xml";
constexpr std::string_view declarationEnd = "?>";

/// Nobody writes a longer one; what follows "<?xml" in another file may have no end at all.
constexpr std::size_t longestDeclaration = 256;

/// The declaration that `bytes` begins with, whatever is in it; empty if there is none.
std::string_view declarationIn(std::string_view bytes) {
  if (!bytes.starts_with(declarationStart)) return {};
  const std::size_t end = bytes.substr(0, longestDeclaration).find(declarationEnd);
  return end == std::string_view::npos ? std::string_view()
                                       : bytes.substr(0, end + declarationEnd.size());
}

bool isUtf8Name(std::string_view encoding) {
  return std::ranges::equal(encoding, std::string_view("utf-8"), {}, [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
}

void noteDeclaration(void* fits, const XML_Char*, const XML_Char* encoding, int) {
  *static_cast<bool*>(fits) = encoding == nullptr || isUtf8Name(encoding);
}

std::string_view withoutWhiteSpace(std::string_view bytes) {
  return bytes.substr(std::min(bytes.find_first_not_of(whiteSpace), bytes.size()));
}

}  // namespace

std::size_t declarationLength(std::string_view bytes) {
  const std::string_view declaration = declarationIn(bytes);
  if (declaration.empty()) return 0;
  xml::Parser parser("UTF-8");
  if (!parser.valid()) throw std::bad_alloc();
  bool fits = false;
  XML_SetUserData(parser.handle(), &fits);
  XML_SetXmlDeclHandler(parser.handle(), noteDeclaration);
  const bool wellFormed = parser.feed(declaration, false) && parser.feed("<a/>", true);
  return wellFormed && fits ? declaration.size() : 0;
}

std::string_view afterPreface(std::string_view bytes) {
  if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
  bytes = withoutWhiteSpace(bytes);
  bytes.remove_prefix(declarationIn(bytes).size());
  return withoutWhiteSpace(bytes);
}

}  // namespace wenlolib::receiver
