#include "XmlForm.h"

#include <expat.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/Integer.h"
#include "base/Utf8.h"
#include "plist/PropertyList.h"

namespace wenlolib::tests::lists::xml {
namespace {

using Tokens = std::vector<std::string>;

/// Stands for half of a surrogate pair, which no XML can hold.
constexpr std::string_view halfMark = "\xEF\xB7\x90";

// --- Taking apart ---

/// A document in UTF-16 in UTF-8; any other as it is.
std::string fromUtf16(const std::string& bytes) {
  if (bytes.size() < 2 || bytes.size() % 2 != 0) return bytes;
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  const bool isBig = (byte(0) == 0xFE && byte(1) == 0xFF) || (byte(0) == 0 && byte(1) == '<');
  const bool isLittle = (byte(0) == 0xFF && byte(1) == 0xFE) || (byte(0) == '<' && byte(1) == 0);
  if (!isBig && !isLittle) return bytes;
  std::vector<std::uint16_t> units;
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    units.push_back(
        static_cast<std::uint16_t>(byte(at + (isBig ? 0 : 1)) << 8U | byte(at + (isBig ? 1 : 0))));
  }
  std::string text;
  for (std::size_t at = units[0] == 0xFEFF ? 1 : 0; at < units.size(); ++at) {
    const std::size_t left = std::min<std::size_t>(2, units.size() - at);
    const bool isHalf = (units[at] & 0xF800U) == 0xD800;
    const Text pair = isHalf ? utf8From({&units[at], left}) : std::nullopt;
    if (!isHalf) appendUtf8(text, units[at]);
    if (isHalf) text += pair ? *pair : halfMark;
    if (pair) ++at;
  }
  return text;
}

struct Outcome {
  std::string fault;
  Tokens tokens;  // in UTF-8
};

Outcome parsed(const std::string& bytes) {
  const std::string text = fromUtf16(bytes);
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(text == bytes ? nullptr : "UTF-8"), XML_ParserFree);
  Outcome outcome;
  XML_SetUserData(parser.get(), &outcome);
  XML_SetDefaultHandler(parser.get(), [](void* self, const XML_Char* token, int length) {
    static_cast<Outcome*>(self)->tokens.emplace_back(token, static_cast<std::size_t>(length));
  });
  if (XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK) {
    outcome.fault = XML_ErrorString(XML_GetErrorCode(parser.get()));
  }
  return outcome;
}

bool isComment(const std::string& token) {
  return token.starts_with("<!--") || token.starts_with("<?");
}
bool isEnd(const std::string& token) {
  return token.starts_with("</");
}
bool isStart(const std::string& token) {
  return token.size() > 1 && token[0] == '<' && token[1] != '/' && token[1] != '!' &&
         token[1] != '?';
}
bool isEmptyTag(const std::string& token) {
  return isStart(token) && token.ends_with("/>");
}

std::string nameOf(const std::string& tag) {
  const std::size_t begin = isEnd(tag) ? 2 : 1;
  return tag.substr(begin, tag.find_first_of(" \t\r\n/>", begin) - begin);
}

/// An element that holds no others with all that is in it, or a single token.
struct Piece {
  std::string name;  // of an element that holds no others, else empty
  Tokens tokens;

  [[nodiscard]] bool isTag(const std::string& wanted) const {
    return name.empty() && (isStart(tokens[0]) || isEnd(tokens[0])) && nameOf(tokens[0]) == wanted;
  }
};
using Pieces = std::vector<Piece>;

bool holdsOthers(const std::string& name) {
  return name == "plist" || name == "dict" || name == "array";
}

Pieces piecesOf(const Tokens& tokens) {
  Pieces pieces;
  bool isOpen = false;
  for (const std::string& token : tokens) {
    if (isOpen) {
      pieces.back().tokens.push_back(token);
      isOpen = !isEnd(token);
      continue;
    }
    const bool isLeaf = isStart(token) && !holdsOthers(nameOf(token));
    pieces.push_back({isLeaf ? nameOf(token) : "", {token}});
    isOpen = isLeaf && !isEmptyTag(token);
  }
  return pieces;
}

// --- Putting together ---

std::string joined(const Tokens& tokens) {
  std::string text;
  for (const std::string& token : tokens) text += token;
  return text;
}

std::string joined(const Pieces& pieces) {
  std::string text;
  for (const Piece& piece : pieces) text += joined(piece.tokens);
  return text;
}

/// The document after `change` to its pieces from the root on.
std::string changed(const std::string& bytes, const std::function<void(Pieces&)>& change) {
  Outcome outcome = parsed(bytes);
  if (!outcome.fault.empty()) return bytes;
  const auto root = std::find_if(outcome.tokens.begin(), outcome.tokens.end(), isStart);
  const std::string prolog = joined(Tokens(outcome.tokens.begin(), root));
  outcome.tokens.erase(outcome.tokens.begin(), root);
  Pieces pieces = piecesOf(outcome.tokens);
  const std::string before = joined(pieces);
  change(pieces);
  const std::string after = joined(pieces);
  return before == after ? bytes : prolog + after;
}

std::string eachLeaf(const std::string& bytes, const std::function<void(Piece&)>& change) {
  return changed(bytes, [&](Pieces& pieces) {
    for (Piece& piece : pieces) {
      if (!piece.name.empty()) change(piece);
    }
  });
}

bool isNumber(const Piece& piece) {
  return piece.name == "integer" || piece.name == "real" || piece.name == "date";
}

/// The character of a reference such as "&#x41;"; nothing for one by name.
std::optional<std::uint64_t> characterOf(std::string_view reference) {
  if (!reference.starts_with("&#")) return std::nullopt;
  const bool isHexadecimal = reference.starts_with("&#x");
  reference.remove_prefix(isHexadecimal ? 3 : 2);
  const auto number = takeNumber(reference, isHexadecimal ? 16 : 10);
  return reference.starts_with(';') ? number : std::nullopt;
}

/// Replaces the content of a leaf by one text.
void fill(Piece& piece, const std::string& text) {
  piece.tokens = {"<" + piece.name + ">", text, "</" + piece.name + ">"};
}

std::string contentOf(const Piece& piece) {
  if (piece.tokens.size() < 3) return "";
  return joined(Tokens(piece.tokens.begin() + 1, piece.tokens.end() - 1));
}

std::string trimmed(std::string text) {
  while (!text.empty() && isBlank(text.back())) text.pop_back();
  text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isBlank));
  return text;
}

/// Takes out leaves, each with the key before it; a key with the value that follows.
void takeOut(Pieces& pieces, const std::function<bool(const Piece&)>& isUnwanted) {
  Pieces kept;
  int levelsOut = 0;
  bool isKeyOut = false;
  for (Piece& piece : pieces) {
    const bool opens =
        piece.name.empty() && isStart(piece.tokens[0]) && !isEmptyTag(piece.tokens[0]);
    const bool isElement = !piece.name.empty() || isStart(piece.tokens[0]);
    if (levelsOut > 0) {
      levelsOut += opens ? 1 : isEnd(piece.tokens[0]) ? -1 : 0;
    } else if (isKeyOut && isElement) {
      isKeyOut = false;
      levelsOut = opens ? 1 : 0;
    } else if (!piece.name.empty() && isUnwanted(piece)) {
      isKeyOut = piece.name == "key";
      const auto before = std::find_if(kept.rbegin(), kept.rend(), [](const Piece& other) {
        return !other.name.empty() || isStart(other.tokens[0]) || isEnd(other.tokens[0]);
      });
      const bool hasKey = !isKeyOut && before != kept.rend() && before->name == "key";
      if (hasKey) kept.erase(std::next(before).base());
    } else {
      kept.push_back(std::move(piece));
    }
  }
  pieces = std::move(kept);
}

/// The length of the half of a surrogate pair that `text` begins with, or 0.
std::size_t halfLength(std::string_view text) {
  if (text.size() >= 3 && text[0] == '\xED' && (text[1] & 0xE0) == 0xA0) return 3;
  if (!text.starts_with("&#")) return 0;
  const auto character = characterOf(text.substr(0, text.find(';') + 1));
  return character && *character >> 11U == 0xD800U >> 11U ? text.find(';') + 1 : 0;
}

std::string withHalvesMarked(const std::string& bytes) {
  std::string text = fromUtf16(bytes), marked;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = halfLength(std::string_view(text).substr(at));
    marked += length == 0 ? std::string_view(text).substr(at, 1) : halfMark;
    at += std::max<std::size_t>(length, 1);
  }
  return marked;
}

}  // namespace

std::string fault(const std::string& bytes) {
  return parsed(bytes).fault;
}

std::string withoutOtherEncoding(const std::string& bytes) {
  Outcome outcome = parsed(bytes);
  const bool isNamed = !outcome.tokens.empty() && outcome.tokens[0].starts_with("<?xml");
  if (!outcome.fault.empty() || (!isNamed && joined(outcome.tokens) == bytes)) return bytes;
  if (isNamed) outcome.tokens.erase(outcome.tokens.begin());
  return trimmed(joined(outcome.tokens));
}

std::string withoutProlog(const std::string& bytes) {
  Outcome outcome = parsed(bytes);
  if (!outcome.fault.empty()) return bytes;
  const auto root = std::find_if(outcome.tokens.begin(), outcome.tokens.end(), isStart);
  return joined(Tokens(root, outcome.tokens.end()));
}

std::string withoutHalves(const std::string& bytes) {
  const std::string marked = withHalvesMarked(bytes);
  if (marked == bytes) return bytes;
  return changed(marked, [](Pieces& pieces) {
    takeOut(pieces, [](const Piece& piece) {
      return contentOf(piece).find(halfMark) != std::string::npos;
    });
  });
}

std::string withoutInnerLists(const std::string& bytes) {
  return changed(bytes, [](Pieces& pieces) {
    std::erase_if(pieces, [](const Piece& piece) { return piece.isTag("plist"); });
  });
}

std::string withoutKeysAsValues(const std::string& bytes) {
  return changed(bytes, [](Pieces& pieces) {
    std::vector<bool> inDictionary = {false};
    bool isKeyNext = true;
    for (Piece& piece : pieces) {
      const bool isValue = !piece.name.empty() && !(inDictionary.back() && isKeyNext);
      if (piece.name == "key" && isValue) {
        const std::string content = contentOf(piece);
        piece.name = "string";
        fill(piece, content);
      }
      const bool isTag = piece.isTag("dict") || piece.isTag("array");
      if (isTag && isEnd(piece.tokens[0])) inDictionary.pop_back();
      if (isTag && !isEnd(piece.tokens[0]) && !isEmptyTag(piece.tokens[0])) {
        inDictionary.push_back(piece.isTag("dict"));
      }
      const bool isDone = !piece.name.empty() || isTag;
      const bool isKey = piece.name == "key";
      if (isDone) isKeyNext = !isKey;
    }
  });
}

std::string withoutAttributes(const std::string& bytes) {
  return changed(bytes, [](Pieces& pieces) {
    for (Piece& piece : pieces) {
      std::string& tag = piece.tokens[0];
      if (isStart(tag)) tag = "<" + nameOf(tag) + (isEmptyTag(tag) ? "/>" : ">");
    }
  });
}

std::string withoutTextBetween(const std::string& bytes) {
  return changed(bytes, [](Pieces& pieces) {
    std::erase_if(pieces, [](const Piece& piece) {
      const std::string& token = piece.tokens[0];
      return piece.name.empty() && !isStart(token) && !isEnd(token);
    });
  });
}

std::string withoutComments(const std::string& bytes) {
  return eachLeaf(bytes, [](Piece& piece) { std::erase_if(piece.tokens, isComment); });
}

std::string withoutCarriageReturns(const std::string& bytes) {
  return changed(bytes, [](Pieces& pieces) {
    for (Piece& piece : pieces) {
      for (std::string& token : piece.tokens) {
        if (token == "\r" || token == "\r\n") token = "\n";
      }
    }
  });
}

std::string withoutLongReferences(const std::string& bytes) {
  return eachLeaf(bytes, [](Piece& piece) {
    if (piece.name != "string" && piece.name != "key") return;
    for (std::string& token : piece.tokens) {
      const auto character = characterOf(token);
      char text[24];
      if (!character) continue;
      std::snprintf(text, sizeof text, "&#x%llX;", static_cast<unsigned long long>(*character));
      token = text;
    }
  });
}

std::string withoutEscapesInNumbers(const std::string& bytes) {
  return eachLeaf(bytes, [](Piece& piece) {
    if (piece.name == "string" || piece.name == "key") return;
    for (std::string& token : piece.tokens) {
      if (const auto character = characterOf(token)) {
        token.clear();
        appendUtf8(token, static_cast<char32_t>(*character));
      }
      if (token == "<![CDATA[" || token == "]]>") token.clear();
    }
  });
}

std::string withoutBlanksInNumbers(const std::string& bytes) {
  return eachLeaf(bytes, [](Piece& piece) {
    const std::string content = contentOf(piece);
    if (isNumber(piece) && trimmed(content) != content) fill(piece, trimmed(content));
  });
}

std::string withoutBlanksInBooleans(const std::string& bytes) {
  return eachLeaf(bytes, [](Piece& piece) {
    const bool isBoolean = piece.name == "true" || piece.name == "false";
    if (isBoolean && trimmed(contentOf(piece)).empty()) piece.tokens = {"<" + piece.name + "/>"};
  });
}

std::string withoutEmptyDataTags(const std::string& bytes) {
  return eachLeaf(bytes, [](Piece& piece) {
    if (piece.name == "data" && piece.tokens.size() == 1) fill(piece, "");
  });
}

std::string withoutSignsOfNan(const std::string& bytes) {
  return eachLeaf(bytes, [](Piece& piece) {
    const std::string text = contentOf(piece);
    const bool isSigned = text.size() == 4 && (text[0] == '-' || text[0] == '+');
    if (piece.name == "real" && isSigned && (text[1] | 0x20) == 'n') fill(piece, text.substr(1));
  });
}

std::string withoutFarYears(const std::string& bytes) {
  return eachLeaf(bytes, [](Piece& piece) {
    constexpr std::size_t digits = 9;
    const std::string text = trimmed(contentOf(piece));
    const bool isFar = text.find('-', 1) != std::string::npos && text.find('-', 1) > digits;
    if (piece.name == "date" && isFar) fill(piece, "2001-01-01T00:00:00Z");
  });
}

std::string withoutLost(const std::string& bytes, const std::string& name) {
  return changed(bytes, [&](Pieces& pieces) {
    takeOut(pieces, [&](const Piece& piece) {
      return piece.name == name &&
             plist::readXml("<dict><key>k</key>" + joined(piece.tokens) + "</dict>").state ==
                 platform::ListState::partial;
    });
  });
}

std::string withoutOtherRoot(const std::string& bytes) {
  return changed(bytes, [](Pieces& pieces) {
    const auto root = std::find_if(pieces.begin(), pieces.end(), [](const Piece& piece) {
      return !piece.name.empty() || (isStart(piece.tokens[0]) && !piece.isTag("plist"));
    });
    if (root == pieces.end() || root->isTag("dict")) return;
    std::erase_if(pieces, [](const Piece& piece) { return piece.isTag("plist"); });
    pieces.insert(pieces.begin(), {"", {"<dict><key>k</key>"}});
    pieces.push_back({"", {"</dict>"}});
  });
}

}  // namespace wenlolib::tests::lists::xml
