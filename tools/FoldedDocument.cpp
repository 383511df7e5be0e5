#include "FoldedDocument.h"

#include <algorithm>

#include "Format.h"
#include "VisibleText.h"

namespace wenlolib::tools {
namespace {

constexpr std::string_view indent = "  ";
constexpr std::size_t mostShown = 2048;
constexpr std::size_t shownOfLong = 512;

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// At most `length` bytes of `text` that do not end within a character.
std::string_view headOf(std::string_view text, std::size_t length) {
  if (text.size() <= length) return text;
  std::size_t end = length;
  while (end > 1 && isContinuation(text[end])) --end;
  return text.substr(0, end);
}

/// What is put on a line is longer than what stands in the document where it has been spelled out,
/// so that fits which is short enough afterwards.
std::string_view fittingHead(std::string_view text, std::size_t width) {
  std::string_view head = headOf(text, width);
  while (head.size() > 1 && displayWidth(visibleInLine(head)) > width) {
    head = headOf(text, head.size() - 1);
  }
  return head;
}

void appendFolded(std::string& out, std::string_view element, std::size_t width) {
  const bool tooLong = element.size() > mostShown;
  std::string_view rest = tooLong ? headOf(element, shownOfLong) : element;
  const std::size_t leftOut = element.size() - rest.size();
  while (!rest.empty()) {
    const std::string_view head = fittingHead(rest, width - indent.size());
    out.append(indent).append(visibleInLine(head)).append("\n");
    rest.remove_prefix(head.size());
  }
  if (tooLong) out.append(indent).append("(" + counted(leftOut, "byte") + " more)\n");
}

/// Where the element, or the tag of one with others inside, ends that `document` begins with.
std::size_t lengthOfFirst(std::string_view document) {
  std::size_t boundary = document.find("><");
  // An empty element stays on its line.
  const bool emptyElement =
      document.substr(std::min(boundary, document.size())).starts_with("></") &&
      document.substr(0, boundary).find("</") == std::string_view::npos;
  if (emptyElement) boundary = document.find("><", boundary + 1);
  return boundary == std::string_view::npos ? document.size() : boundary + 1;
}

}  // namespace

std::string foldedDocument(std::string_view document, std::size_t width) {
  std::string out;
  while (!document.empty()) {
    const std::size_t length = lengthOfFirst(document);
    appendFolded(out, document.substr(0, length), width);
    document.remove_prefix(length);
  }
  return out;
}

}  // namespace wenlolib::tools
