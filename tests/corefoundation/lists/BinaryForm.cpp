#include "BinaryForm.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <stdexcept>
#include <vector>

#include "plist/BinaryFile.h"
#include "plist/Bounds.h"

namespace wenlolib::tests::lists::binary {
namespace {

constexpr unsigned integerType = 0x1, textType = 0x5, uidType = 0x8, arrayType = 0xA;
constexpr unsigned setType = 0xC, dictionaryType = 0xD;

/// The list cannot be walked from its root to its ends.
struct Broken : std::runtime_error {
  Broken() : std::runtime_error("broken") {}
};

struct BeyondBounds : Broken {};

std::uint64_t number(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes) value = value << 8U | static_cast<unsigned char>(byte);
  return value;
}

/// An object with all that is in it; a dictionary's keys stand before its values.
struct Node {
  unsigned type = 0, detail = 0;
  std::string content;
  std::vector<Node> inside;

  [[nodiscard]] bool holdsOthers() const {
    return type == arrayType || type == setType || type == dictionaryType;
  }
  [[nodiscard]] bool isText() const { return type == textType || type == textType + 1; }
};

// --- Taking apart ---

class Walk {
 public:
  explicit Walk(std::string_view bytes) : bytes_(bytes), left_(bytes.size()) {
    constexpr std::size_t trailerSize = 32;
    if (!bytes.starts_with("bplist0") || bytes.size() < 8 + trailerSize) throw Broken();
    const std::string_view trailer = bytes.substr(bytes.size() - trailerSize);
    offsetWidth_ = number(trailer.substr(6, 1));
    referenceWidth_ = number(trailer.substr(7, 1));
    count_ = number(trailer.substr(8, 8));
    root_ = number(trailer.substr(16, 8));
    table_ = number(trailer.substr(24, 8));
    if (table_ > bytes.size()) throw Broken();
  }

  [[nodiscard]] Node root() { return node(root_, 0); }
  [[nodiscard]] bool hasWideNumbers() const { return std::max(offsetWidth_, referenceWidth_) > 8; }

 private:
  std::string_view part(std::uint64_t at, std::uint64_t size) {
    if (at > bytes_.size() || size > bytes_.size() - at) throw Broken();
    return bytes_.substr(at, size);
  }
  std::string_view take(std::uint64_t size) {
    const std::string_view taken = part(at_, size);
    at_ += size;
    if (at_ > table_) throw Broken();
    return taken;
  }
  /// Of an array or a dictionary that is a key, nothing is looked at but its kind.
  Node node(std::uint64_t reference, std::size_t level, bool isKey = false);
  std::uint64_t units(unsigned type, unsigned detail);
  std::uint64_t sizeOf(unsigned type, unsigned detail);

  std::string_view bytes_;
  std::size_t left_, contentLeft_ = plist::bounds.contentBytes + 1;
  std::uint64_t offsetWidth_ = 0, referenceWidth_ = 0, count_ = 0, root_ = 0, table_ = 0, at_ = 0;
};

std::uint64_t Walk::units(unsigned type, unsigned detail) {
  if (type < 0x4 || type == uidType || detail != 0xF) return detail;
  const unsigned marker = static_cast<unsigned char>(take(1)[0]);
  if (marker >> 4U != integerType) throw Broken();
  const std::uint64_t count = number(take(std::uint64_t{1} << (marker & 0xFU)));
  if (count > bytes_.size()) throw Broken();
  return count;
}

std::uint64_t Walk::sizeOf(unsigned type, unsigned detail) {
  const std::uint64_t count = units(type, detail);
  if (type == 0) return 0;
  if (type < 0x4) return std::uint64_t{1} << count;
  if (type == 0x4 || type == textType) return count;
  if (type == textType + 1) return 2 * count;
  if (type == uidType) return count + 1;
  if (type == dictionaryType) return 2 * count * referenceWidth_;
  if (type == arrayType || type == setType) return count * referenceWidth_;
  throw Broken();
}

Node Walk::node(std::uint64_t reference, std::size_t level, bool isKey) {
  if (left_-- == 0 || level > plist::bounds.levels) throw BeyondBounds();
  if (reference >= count_) throw Broken();
  const std::uint64_t offset = number(part(table_ + reference * offsetWidth_, offsetWidth_));
  if (offset < 8 || offset >= table_) throw Broken();
  at_ = offset;
  const unsigned marker = static_cast<unsigned char>(take(1)[0]);
  Node node{marker >> 4U, marker & 0xFU, {}, {}};
  node.content = std::string(take(sizeOf(node.type, node.detail)));
  if (!node.holdsOthers()) contentLeft_ -= std::min(contentLeft_, node.content.size());
  if (contentLeft_ == 0) throw BeyondBounds();
  if (!node.holdsOthers() || isKey) return node;
  const std::size_t count = node.content.size() / std::max<std::uint64_t>(referenceWidth_, 1);
  const std::size_t keys = node.type == dictionaryType ? count / 2 : 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto part = std::string_view(node.content).substr(i * referenceWidth_, referenceWidth_);
    node.inside.push_back(this->node(number(part), level + 1, i < keys));
  }
  return node;
}

// --- Putting together ---

std::uint64_t added(plist::BinaryFile& file, const Node& node) {
  const std::uint64_t own = file.objects.size();
  file.objects.emplace_back();
  if (!node.holdsOthers()) {
    const bool isCounted = node.isText() || node.type == 0x4;
    const std::size_t unit = node.type == textType + 1 ? 2 : 1;
    file.objects[own] = (isCounted ? plist::counted(node.type, node.content.size() / unit)
                                   : plist::marker(node.type, node.detail)) +
                        node.content;
    return own;
  }
  std::vector<std::uint64_t> references;
  for (const Node& inner : node.inside) references.push_back(added(file, inner));
  const std::size_t count = references.size() / (node.type == dictionaryType ? 2 : 1);
  file.objects[own] = file.container(node.type, count, references);
  return own;
}

std::string fileOf(const Node& root) {
  plist::BinaryFile file;
  file.referenceWidth = 4;
  added(file, root);
  return file.bytes();
}

/// The list after `change` to each object, from the innermost to the root. Only then is it put
/// together anew: whatever else is in the file stays.
std::string changed(const std::string& bytes, const std::function<void(Node&)>& change) {
  try {
    Node root = Walk(bytes).root();
    const std::string before = fileOf(root);
    const std::function<void(Node&)> each = [&](Node& node) {
      for (Node& inner : node.inside) each(inner);
      change(node);
    };
    each(root);
    const std::string after = fileOf(root);
    return before == after ? bytes : after;
  } catch (const Broken&) {
    return bytes;
  }
}

void keepEntries(Node& dictionary, const std::function<bool(const Node&, const Node&)>& isKept) {
  std::vector<Node> keys, values;
  const std::size_t count = dictionary.inside.size() / 2;
  for (std::size_t i = 0; i < count; ++i) {
    if (!isKept(dictionary.inside[i], dictionary.inside[count + i])) continue;
    keys.push_back(dictionary.inside[i]);
    values.push_back(dictionary.inside[count + i]);
  }
  keys.insert(keys.end(), values.begin(), values.end());
  dictionary.inside = std::move(keys);
}

/// Takes out what is unwanted: from an array, or from a dictionary with its other half.
std::string without(const std::string& bytes, const std::function<bool(const Node&)>& isUnwanted) {
  return changed(bytes, [&](Node& node) {
    if (node.type == arrayType) std::erase_if(node.inside, isUnwanted);
    if (node.type != dictionaryType) return;
    keepEntries(node, [&](const Node& key, const Node& value) {
      return !isUnwanted(key) && !isUnwanted(value);
    });
  });
}

/// A text's units in UTF-16, whichever way it is stored.
std::string unitsOf(const Node& text) {
  if (text.type != textType) return text.content;
  std::string units;
  for (const char c : text.content) units += {'\0', c};
  return units;
}

}  // namespace

bool isWhole(const std::string& bytes) {
  try {
    static_cast<void>(Walk(bytes).root());
    return true;
  } catch (const Broken&) {
    return false;
  }
}

bool isBeyondBounds(const std::string& bytes) {
  try {
    static_cast<void>(Walk(bytes).root());
    return false;
  } catch (const BeyondBounds&) {
    return true;
  } catch (const Broken&) {
    return false;
  }
}

std::string withoutOtherVersion(const std::string& bytes) {
  if (!bytes.starts_with("bplist0")) return bytes;
  return "bplist00" + bytes.substr(std::min<std::size_t>(8, bytes.size()));
}

std::string withoutLooseFrame(const std::string& bytes) {
  try {
    return fileOf(Walk(bytes).root());
  } catch (const Broken&) {
    return bytes;
  }
}

std::string withoutWideFrame(const std::string& bytes) {
  try {
    return Walk(bytes).hasWideNumbers() ? withoutLooseFrame(bytes) : bytes;
  } catch (const Broken&) {
    return bytes;
  }
}

std::string withoutSets(const std::string& bytes) {
  return without(bytes, [](const Node& node) { return node.type == setType; });
}

std::string withoutDuplicateKeys(const std::string& bytes) {
  return changed(bytes, [](Node& node) {
    if (node.type != dictionaryType) return;
    std::set<std::string> seen;
    keepEntries(node, [&](const Node& key, const Node&) {
      return !key.isText() || seen.insert(unitsOf(key)).second;
    });
  });
}

std::string withoutContainersAsKeys(const std::string& bytes) {
  return changed(bytes, [](Node& node) {
    if (node.type != dictionaryType) return;
    for (std::size_t i = 0; i < node.inside.size() / 2; ++i) {
      // Any object that is not a text: this project leaves it out as well.
      if (node.inside[i].holdsOthers()) node.inside[i] = Node{0x4, 0, "", {}};
    }
  });
}

std::string withoutWideIntegers(const std::string& bytes) {
  return changed(bytes, [](Node& node) {
    if (node.type == integerType && node.detail == 4) node.content.replace(0, 8, 8, '\0');
  });
}

std::string withoutLargeUids(const std::string& bytes) {
  return changed(bytes, [](Node& node) {
    const std::size_t size = node.content.size();
    if (node.type != uidType || size <= 4) return;
    node.detail = 3;
    node.content = node.content.substr(size - 4);
  });
}

std::string withoutOddSimples(const std::string& bytes) {
  return without(bytes, [](const Node& node) {
    return node.type == 0 && node.detail != 0 && node.detail != 8 && node.detail != 9;
  });
}

std::string withoutOddIntegers(const std::string& bytes) {
  return without(bytes,
                 [](const Node& node) { return node.type == integerType && node.detail > 4; });
}

std::string withoutOddReals(const std::string& bytes) {
  return without(bytes, [](const Node& node) {
    return node.type == 0x2 && node.detail != 2 && node.detail != 3;
  });
}

std::string withoutOddDates(const std::string& bytes) {
  return without(bytes, [](const Node& node) { return node.type == 0x3 && node.detail != 3; });
}

std::string withoutOddTexts(const std::string& bytes) {
  return without(bytes, [](const Node& node) {
    const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    return node.type == textType && !std::all_of(node.content.begin(), node.content.end(), isAscii);
  });
}

std::string withoutEmptyUtf16(const std::string& bytes) {
  return changed(bytes, [](Node& node) {
    if (node.type == textType + 1 && node.content.empty()) node.type = textType;
  });
}

std::string withoutOtherRoot(const std::string& bytes) {
  try {
    const Node root = Walk(bytes).root();
    if (root.type == dictionaryType) return bytes;
    return fileOf({dictionaryType, 1, "", {Node{textType, 1, "k", {}}, root}});
  } catch (const Broken&) {
    return bytes;
  }
}

}  // namespace wenlolib::tests::lists::binary
