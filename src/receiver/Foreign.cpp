#include "receiver/Foreign.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/EnumTable.h"
#include "base/Utf8.h"
#include "codec/Layouts.h"
#include "receiver/Contents.h"
#include "receiver/Preface.h"
#include "xml/WellFormed.h"

namespace wenlolib::receiver {
namespace {

using namespace std::string_view_literals;

// --- Signs of a survey document ---

/// What no other file is likely to hold: the wrappers' names in tags, and a few other tags.
constexpr std::array signs = {"<OrvanQX"sv, "</OrvanQX"sv, "<OSVersion>"sv, "<Encrypted C=\""sv,
                              "<PLI C=\""sv};

/// Whether the bytes could be the beginning of a document whose rest is missing.
bool isBeginning(std::string_view bytes) {
  constexpr std::string_view declaration = "<?xml";
  const std::string_view rest = afterPreface(bytes);
  if (rest.empty()) return bytes.find('<') != std::string_view::npos;  // a declaration alone
  const bool endsInDeclaration =
      declaration.starts_with(rest) ||
      (rest.starts_with(declaration) && rest.find("?>") == std::string_view::npos);
  return endsInDeclaration || std::ranges::any_of(enumerators<Layout>, [&](Layout layout) {
           return slotsOf(layout).front().opening.starts_with(rest);
         });
}

bool hasSign(std::string_view bytes) {
  return std::ranges::any_of(
      signs, [&](std::string_view sign) { return bytes.find(sign) != std::string_view::npos; });
}

// --- What other files look like ---

struct Kind {
  std::string_view start;
  std::string_view name;
};
constexpr std::array kinds = {
    Kind{"\x1F\x8B", "a gzip archive"},
    Kind{"BZh", "a bzip2 archive"},
    Kind{"\xFD"
         "7zXZ",
         "an xz archive"},
    Kind{"\x28\xB5\x2F\xFD", "a Zstandard archive"},
    Kind{"PK\x03\x04", "a ZIP archive"},
    Kind{"%PDF-", "a PDF document"},
    Kind{"%!PS", "a PostScript document"},
    Kind{"\x89PNG", "a PNG image"},
    Kind{"\xFF\xD8\xFF", "a JPEG image"},
    Kind{"GIF8", "a GIF image"},
    Kind{"II*\0"sv, "a TIFF image"},
    Kind{"MM\0*"sv, "a TIFF image"},
    Kind{"bplist0", "a binary property list"},
    Kind{"\x7F"
         "ELF",
         "a program"},
    Kind{"\xFE\xFF", "text in UTF-16"},
    Kind{"\xFF\xFE", "text in UTF-16"},
    Kind{"<\0"sv, "text in UTF-16"},
    Kind{"\0<"sv, "text in UTF-16"},
};

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool beginsLike(std::string_view bytes, std::string_view start) {
  return std::ranges::equal(bytes.substr(0, start.size()), start, {}, lower);
}

bool isWebPage(std::string_view bytes) {
  const std::string_view rest = afterPreface(bytes);
  return beginsLike(rest, "<!doctype html") || beginsLike(rest, "<html");
}

/// The name of the tag that the bytes begin with, if it consists of ordinary characters.
std::string_view tagName(std::string_view bytes) {
  constexpr std::string_view ordinary =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.:";
  constexpr std::size_t longest = 40;
  if (!bytes.starts_with('<')) return {};
  bytes.remove_prefix(1);
  const std::size_t length = std::min(bytes.find_first_not_of(ordinary), bytes.size());
  return length <= longest ? bytes.substr(0, length) : std::string_view();
}

/// XML begins with a tag, a comment, a declaration or an instruction.
bool beginsLikeXml(std::string_view bytes) {
  const std::string_view rest = afterPreface(bytes);
  return bytes.starts_with("<?xml") || !tagName(rest).empty() || rest.starts_with("<!") ||
         rest.starts_with("<?");
}

std::string xmlKind(std::string_view bytes) {
  const std::string name(tagName(afterPreface(bytes)));
  return name.empty() ? "XML of another kind" : "XML of another kind, with the element " + name;
}

bool isText(std::string_view bytes) {
  return isUtf8(bytes) && std::ranges::all_of(bytes, [](char c) {
           return static_cast<unsigned char>(c) >= ' ' || whiteSpace.find(c) != whiteSpace.npos ||
                  c == '\f';
         });
}

std::string kindOf(std::string_view bytes) {
  const auto* const known =
      std::ranges::find_if(kinds, [&](const Kind& kind) { return bytes.starts_with(kind.start); });
  if (known != kinds.end()) return std::string(known->name);
  if (isWebPage(bytes)) return "a web page (HTML)";
  if (bytes.find_first_not_of('\0') == std::string_view::npos) return "NUL bytes only";
  if (afterPreface(bytes).empty()) return "white space and nothing else";
  if (beginsLikeXml(bytes)) return xmlKind(bytes);
  return isText(bytes) ? "text" : "binary data";
}

Layer layerOf(std::string_view bytes) {
  const xml::Finding finding = xml::parse(bytes, longestRunAfterTag(bytes));
  const bool isXml =
      finding.kind == xml::Finding::wellFormed || finding.kind == xml::Finding::typeDeclared;
  return isXml ? Layer::layout : Layer::xml;
}

}  // namespace

std::optional<Verdict> foreignVerdict(std::string_view bytes) {
  if (bytes.empty()) return std::nullopt;
  if (!isWebPage(bytes) && (isBeginning(bytes) || hasSign(bytes))) return std::nullopt;
  return Verdict{layerOf(bytes), Fault::foreign, 0, "",
                 "The file is not a survey document: it looks like " + kindOf(bytes) + "."};
}

}  // namespace wenlolib::receiver
