#include <cstdint>
#include <optional>
#include <vector>

#include "platform/apple/Nesting.h"

// The file ends in a trailer that tells where a table of offsets lies; every object refers to
// others by their number in that table. Nothing in a hostile file need be true: objects may
// overlap, so that few bytes hold more references than any file of their length should, and they
// may hold themselves.

namespace wenlolib::platform::apple {
namespace {

using Number = std::optional<std::uint64_t>;

class BinaryForm {
 public:
  explicit BinaryForm(std::string_view file) : file_(file) {}

  [[nodiscard]] bool readTrailer();
  [[nodiscard]] std::uint64_t objects() const { return objects_; }
  [[nodiscard]] std::uint64_t top() const { return top_; }

  /// How many objects the object with this number refers to.
  [[nodiscard]] Number references(std::uint64_t object) const;
  [[nodiscard]] Number reference(std::uint64_t object, std::uint64_t index) const;

 private:
  struct Head {
    std::uint64_t count = 0;
    std::uint64_t references = 0;  // where they begin
  };
  [[nodiscard]] Number number(std::uint64_t at, std::uint64_t size) const;
  [[nodiscard]] std::optional<Head> head(std::uint64_t object) const;

  std::string_view file_;
  std::uint64_t offsetSize_ = 0, referenceSize_ = 0, objects_ = 0, top_ = 0, table_ = 0;
};

Number BinaryForm::number(std::uint64_t at, std::uint64_t size) const {
  if (size == 0 || size > 8 || at > file_.size() || file_.size() - at < size) return std::nullopt;
  std::uint64_t value = 0;
  // Within the file, and so within what a size holds.
  for (const char byte :
       file_.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(size))) {
    value = value << 8 | static_cast<unsigned char>(byte);
  }
  return value;
}

bool BinaryForm::readTrailer() {
  constexpr std::size_t length = 32;
  if (file_.size() < length) return false;
  const std::size_t trailer = file_.size() - length;
  offsetSize_ = number(trailer + 6, 1).value_or(0);
  referenceSize_ = number(trailer + 7, 1).value_or(0);
  objects_ = number(trailer + 8, 8).value_or(0);
  top_ = number(trailer + 16, 8).value_or(0);
  table_ = number(trailer + 24, 8).value_or(0);
  return objects_ <= file_.size() && top_ < objects_ && table_ < file_.size();
}

std::optional<BinaryForm::Head> BinaryForm::head(std::uint64_t object) const {
  if (object >= objects_) return std::nullopt;
  const Number at = number(table_ + object * offsetSize_, offsetSize_);
  const Number marker = at ? number(*at, 1) : std::nullopt;
  if (!marker) return std::nullopt;
  const std::uint64_t kind = *marker >> 4;  // arrays, two kinds of sets, dictionaries
  if (kind < 0xA || kind > 0xD) return Head{};
  Head head{*marker & 0xF, *at + 1};
  if (head.count == 0xF) {  // the count stands in an integer of its own
    const std::uint64_t size = std::uint64_t{1} << (number(*at + 1, 1).value_or(0) & 0xF);
    const Number count = number(*at + 2, size);
    if (!count) return std::nullopt;
    head = {*count, *at + 2 + size};
  }
  if (head.count > file_.size()) return std::nullopt;
  if (kind == 0xD) head.count *= 2;
  return head;
}

Number BinaryForm::references(std::uint64_t object) const {
  const auto found = head(object);
  return found ? Number(found->count) : std::nullopt;
}

Number BinaryForm::reference(std::uint64_t object, std::uint64_t index) const {
  const auto found = head(object);
  return found ? number(found->references + index * referenceSize_, referenceSize_) : std::nullopt;
}

/// A walk over what the top object refers to, each object looked into once.
class Walk {
 public:
  Walk(const BinaryForm& form, std::size_t levels, std::size_t mostReferences)
      : form_(form),
        levels_(levels),
        left_(mostReferences),
        heights_(static_cast<std::size_t>(form.objects())) {}

  [[nodiscard]] bool staysWithinBounds() {
    if (!enter(form_.top())) return false;
    while (!path_.empty()) {
      if (!step()) return false;
    }
    return true;
  }

 private:
  struct Visit {
    std::uint64_t object, next, count;
    std::size_t height;
  };
  static constexpr std::uint16_t underWay = 0xFFFF;  // an object in itself has no bottom

  bool enter(std::uint64_t object);
  bool step();

  const BinaryForm& form_;
  std::size_t levels_, left_;
  std::vector<std::uint16_t> heights_;  // 0: not looked into yet
  std::vector<Visit> path_;
};

bool Walk::enter(std::uint64_t object) {
  const Number count = form_.references(object);
  if (!count || *count > left_ || path_.size() > levels_) return false;
  left_ -= static_cast<std::size_t>(*count);
  heights_[static_cast<std::size_t>(object)] = underWay;
  path_.push_back({object, 0, *count, 0});
  return true;
}

bool Walk::step() {
  Visit& visit = path_.back();
  if (visit.next == visit.count) {
    const std::size_t height = visit.height + 1;
    heights_[static_cast<std::size_t>(visit.object)] = static_cast<std::uint16_t>(height);
    path_.pop_back();
    if (!path_.empty() && path_.back().height < height) path_.back().height = height;
    return true;
  }
  const Number child = form_.reference(visit.object, visit.next++);
  if (!child || *child >= form_.objects()) return false;
  const std::size_t known = heights_[static_cast<std::size_t>(*child)];
  if (known == 0) return enter(*child);
  if (visit.height < known) visit.height = known;
  return path_.size() + known <= levels_ + 1;
}

}  // namespace

bool binaryNestsAtMost(std::size_t levels, std::string_view file) {
  BinaryForm form(file);
  return form.readTrailer() && Walk(form, levels, file.size()).staysWithinBounds();
}

}  // namespace wenlolib::platform::apple
