#include "reading/Redaction.h"

#include <algorithm>
#include <cstring>

#include "reading/Readable.h"

namespace wenlolib {
namespace {

constexpr std::string_view hiddenFields[] = {"ID", "SN"};
constexpr std::string_view replacement = "[redacted]";
constexpr std::size_t shortestSecret = 4;

/// ASCII letters in lower case.
std::string lowered(std::string_view text) {
  std::string small(text);
  for (char& c : small) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return small;
}

std::string_view withoutBlanks(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view withoutBraces(std::string_view text) {
  const bool braces = text.size() > 2 && text.front() == '{' && text.back() == '}';
  return braces ? text.substr(1, text.size() - 2) : text;
}

/// Takes time proportional to the text's length, whatever the two texts are: `memmem` promises
/// that.
void replaceAll(std::string& text, std::string_view secret) {
  const std::string haystack = lowered(text);
  const std::string needle = lowered(secret);
  std::string out;
  std::size_t from = 0;
  while (const void* const place =
             memmem(haystack.data() + from, haystack.size() - from, needle.data(), needle.size())) {
    const auto at = static_cast<std::size_t>(static_cast<const char*>(place) - haystack.data());
    out.append(text, from, at - from);
    out += replacement;
    from = at + needle.size();
  }
  if (from == 0) return;
  out.append(text, from, std::string::npos);
  text = std::move(out);
}

bool hasField(const receiver::Document& document, std::string_view name) {
  return std::ranges::find(document.fields, name, &receiver::Field::name) != document.fields.end();
}

/// Whether each value to be hidden was found. An empty one in a document whose form is broken may
/// not be the only one.
bool isKnown(const receiver::Document& document, bool isWhole) {
  const bool older = document.layout == receiver::Layout::printerOlderTag;
  return std::ranges::all_of(hiddenFields, [&](std::string_view name) {
    if (name == "SN" && !older) return true;
    return isWhole ? hasField(document, name) : !document.value(name).empty();
  });
}

}  // namespace

Redaction::Redaction(const receiver::Report& report) : on_(true) {
  const receiver::Document* const document = readable(report);
  if (document == nullptr) return;
  known_ = isKnown(*document, report.document.has_value());
  for (const std::string_view name : hiddenFields) {
    const std::string_view value = document->value(name);
    for (const std::string_view secret :
         {withoutBraces(value), withoutBraces(withoutBlanks(value))}) {
      if (secret.size() >= shortestSecret) secrets_.emplace_back(secret);
    }
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
