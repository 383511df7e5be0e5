#include "Comparison.h"

#include <algorithm>

#include "Verdicts.h"

namespace wenlolib::tools {
namespace {

using receiver::Document;
using receiver::Field;

std::optional<std::string> valueOf(const Document& document, std::string_view name) {
  const auto found = std::ranges::find(document.fields, name, &Field::name);
  if (found == document.fields.end()) return std::nullopt;
  return found->value;
}

/// The names of the fields of either, in order.
std::vector<std::string> namesOf(const Document& a, const Document& b) {
  std::vector<std::string> names;
  for (const Document* document : {&a, &b}) {
    for (const Field& field : document->fields) {
      if (std::ranges::find(names, field.name) == names.end()) names.push_back(field.name);
    }
  }
  return names;
}

class Differences {
 public:
  void add(std::string name, std::optional<std::string> a, std::optional<std::string> b) {
    if (a != b) found_.push_back({std::move(name), std::move(a), std::move(b)});
  }

  std::vector<Difference> found() && { return std::move(found_); }

 private:
  std::vector<Difference> found_;
};

/// Contents that nobody can decrypt are the same where their payloads are.
bool contentsAreSame(const Side& a, const Side& b) {
  if (a.contents || b.contents) return a.contents == b.contents;
  return a.report.document->digits == b.report.document->digits;
}

}  // namespace

Comparison compare(const Side& a, const Side& b) {
  const Document& aDocument = *a.report.document;
  const Document& bDocument = *b.report.document;
  Differences differences;
  differences.add("Verdict", std::string(word(conditionOf(a.report.verdict))),
                  std::string(word(conditionOf(b.report.verdict))));
  differences.add("Layout", std::string(wrapperName(aDocument.layout)),
                  std::string(wrapperName(bDocument.layout)));
  for (const std::string& name : namesOf(aDocument, bDocument)) {
    differences.add(name, valueOf(aDocument, name), valueOf(bDocument, name));
  }
  differences.add("Cipher", std::string(cipherName(aDocument.marker)),
                  std::string(cipherName(bDocument.marker)));
  Comparison comparison;
  comparison.differences = std::move(differences).found();
  comparison.sameContents = contentsAreSame(a, b);
  if (comparison.sameContents || !a.contents || !b.contents) return comparison;
  comparison.aLines = linesOf(*a.contents);
  comparison.bLines = linesOf(*b.contents);
  comparison.changes = changesBetween(comparison.aLines, comparison.bLines);
  return comparison;
}

}  // namespace wenlolib::tools
