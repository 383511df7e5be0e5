#include "reading/Redaction.h"

#include <algorithm>
#include <functional>

#include "reading/Readable.h"

namespace wenlolib {
namespace {

constexpr std::string_view hiddenFields[] = {"ID", "SN"};
constexpr std::string_view replacement = "[redacted]";
constexpr std::size_t shortestSecret = 4;

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string_view withoutBraces(std::string_view text) {
  const bool braces = text.size() > 2 && text.front() == '{' && text.back() == '}';
  return braces ? text.substr(1, text.size() - 2) : text;
}

void replaceAll(std::string& text, std::string_view secret) {
  const std::boyer_moore_horspool_searcher searcher(
      secret.begin(), secret.end(), [](char c) { return lower(c); },
      [](char a, char b) { return lower(a) == lower(b); });
  std::string out;
  auto from = text.cbegin();
  for (;;) {
    const auto [first, last] = searcher(from, text.cend());
    if (first == text.cend()) break;
    out.append(from, first);
    out += replacement;
    from = last;
  }
  if (from == text.cbegin()) return;
  out.append(from, text.cend());
  text = std::move(out);
}

}  // namespace

namespace {

bool hasField(const receiver::Document& document, std::string_view name) {
  return std::ranges::find(document.fields, name, &receiver::Field::name) != document.fields.end();
}

/// Whether each value to be hidden was found.
bool isKnown(const receiver::Document& document) {
  const bool older = document.layout == receiver::Layout::printerOlderTag;
  return hasField(document, "ID") && (!older || hasField(document, "SN"));
}

}  // namespace

Redaction::Redaction(const receiver::Report& report) : on_(true) {
  const receiver::Document* const document = readable(report);
  if (document == nullptr) return;
  known_ = isKnown(*document);
  for (const std::string_view name : hiddenFields) {
    const std::string_view secret = withoutBraces(document->value(name));
    if (secret.size() >= shortestSecret) secrets_.emplace_back(secret);
  }
  sortSecrets();
}

void Redaction::add(const Redaction& other) {
  secrets_.insert(secrets_.end(), other.secrets_.begin(), other.secrets_.end());
  sortSecrets();
}

/// The longer ones first, each once.
void Redaction::sortSecrets() {
  std::ranges::sort(secrets_, [](const auto& a, const auto& b) {
    return a.size() != b.size() ? a.size() > b.size() : a < b;
  });
  secrets_.erase(std::unique(secrets_.begin(), secrets_.end()), secrets_.end());
}

const receiver::Document* Redaction::shown(const receiver::Report& report) const {
  return on_ && !known_ ? nullptr : readable(report);
}

bool Redaction::hides(std::string_view field) const {
  return on_ && std::ranges::find(hiddenFields, field) != std::ranges::end(hiddenFields);
}

std::string Redaction::operator()(std::string_view text) const {
  std::string redacted(text);
  for (const std::string& secret : secrets_) replaceAll(redacted, secret);
  return redacted;
}

receiver::Verdict Redaction::operator()(receiver::Verdict verdict) const {
  if (on_ && !known_) {
    verdict.explanation.clear();
    verdict.field.clear();
  }
  verdict.explanation = (*this)(verdict.explanation);
  verdict.field = (*this)(verdict.field);
  return verdict;
}

}  // namespace wenlolib
