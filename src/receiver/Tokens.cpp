#include "receiver/Tokens.h"

#include <algorithm>
#include <array>

namespace wenlolib::receiver {
namespace {

constexpr std::string_view blanks = " \t\r\n";

/// What begins with "<" and is no tag, and what each ends in.
struct Bracket {
  std::string_view begin, end;
};
constexpr std::array<Bracket, 3> brackets = {{{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}};

std::size_t lengthThrough(std::string_view text, std::string_view end, std::size_t from) {
  const std::size_t at = text.find(end, from);
  return at == std::string_view::npos ? text.size() : at + end.size();
}

/// A ">" may stand in an attribute's value.
std::size_t tagLength(std::string_view text) {
  std::size_t at = text.find_first_of("\"'>");
  while (at != std::string_view::npos && text[at] != '>') {
    const std::size_t end = text.find(text[at], at + 1);
    at = end == std::string_view::npos ? end : text.find_first_of("\"'>", end + 1);
  }
  return at == std::string_view::npos ? text.size() : at + 1;
}

Token markupAt(std::string_view text) {
  for (const Bracket& bracket : brackets) {
    if (!text.starts_with(bracket.begin)) continue;
    return {Token::other, text.substr(0, lengthThrough(text, bracket.end, bracket.begin.size()))};
  }
  const std::string_view tag = text.substr(0, tagLength(text));
  if (tag.starts_with("</")) return {Token::endTag, tag};
  return {tag.ends_with("/>") ? Token::emptyElement : Token::startTag, tag};
}

bool isBlank(const Token& token) {
  return token.kind == Token::text &&
         token.bytes.find_first_not_of(blanks) == std::string_view::npos;
}

bool isTag(const std::optional<Token>& token) {
  return token && token->kind != Token::text && token->kind != Token::other;
}

}  // namespace

std::string_view Token::name() const {
  std::string_view tag = bytes.substr(bytes.starts_with("</") ? 2 : 1);
  return tag.substr(0, tag.find_first_of(" \t\r\n/>"));
}

std::optional<Token> Tokens::next() {
  if (rest_.empty()) return std::nullopt;
  const Token token =
      rest_.front() == '<' ? markupAt(rest_) : Token{Token::text, rest_.substr(0, rest_.find('<'))};
  rest_.remove_prefix(token.bytes.size());
  return token;
}

std::string_view outermostName(std::string_view document) {
  Tokens tokens(document);
  std::optional<Token> token = tokens.next();
  while (token && !isTag(token)) token = tokens.next();
  return token ? token->name() : std::string_view();
}

std::optional<Gap> firstGap(std::string_view document) {
  Tokens tokens(document);
  Token::Kind before = Token::other;
  std::optional<Token> token = tokens.next();
  while (token) {
    const std::optional<Token> after = tokens.next();
    const bool isValue =
        before == Token::startTag && after.has_value() && after->kind == Token::endTag;
    if (isBlank(*token) && !isValue) {
      const auto offset = static_cast<std::size_t>(token->bytes.data() - document.data());
      return Gap{offset, isTag(after) ? after->name() : std::string_view()};
    }
    before = token->kind;
    token = after;
  }
  return std::nullopt;
}

}  // namespace wenlolib::receiver
