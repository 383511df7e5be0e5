#include "receiver/Outline.h"

#include <algorithm>
#include <cstdint>
#include <new>

#include "xml/Parser.h"

namespace wenlolib::receiver {
namespace {

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// Follows the parser from mark to mark: a mark is anything but text.
class OutlineParse {
 public:
  explicit OutlineParse(std::string_view document) : document_(document) {}

  [[nodiscard]] Outline read();

 private:
  enum class Mark : std::uint8_t { start, end, other };

  static OutlineParse& from(void* self) { return *static_cast<OutlineParse*>(self); }
  void text();
  void mark(Mark mark, std::string_view name);
  void section(bool begins) noexcept;
  void handleEvents();
  [[nodiscard]] Gap gapBefore(std::string_view name) const;

  std::string_view document_;
  xml::Parser parser_{"UTF-8"};
  Outline outline_;
  Mark before_ = Mark::other;             // the last one
  std::optional<std::size_t> textBegin_;  // of the text since then
  std::size_t depth_ = 0;
  bool ended_ = false;      // the outermost element
  bool inSection_ = false;  // of CDATA, which never counts as white space
};

std::size_t at(const xml::Parser& parser) {
  return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser.handle()));
}

void OutlineParse::text() {
  if (!textBegin_ && !inSection_) textBegin_ = at(parser_);
}

Gap OutlineParse::gapBefore(std::string_view name) const {
  const bool outside = depth_ == 0;
  const Gap::Place place = !outside ? Gap::between : ended_ ? Gap::after : Gap::before;
  return {*textBegin_, std::string(name), place};
}

void OutlineParse::mark(Mark mark, std::string_view name) {
  const bool isValue = before_ == Mark::start && mark == Mark::end;
  if (textBegin_ && !isValue && !outline_.gap &&
      isBlank(document_.substr(*textBegin_, at(parser_) - *textBegin_))) {
    outline_.gap = gapBefore(name);
  }
  textBegin_.reset();
  before_ = mark;
  if (mark == Mark::start) ++depth_;
  if (mark == Mark::end) ended_ = --depth_ == 0;
}

void OutlineParse::section(bool begins) noexcept {
  parser_.run([&] {
    mark(Mark::other, "");
    inSection_ = begins;
    return true;
  });
}

void OutlineParse::handleEvents() {
  XML_ParserStruct* const parser = parser_.handle();
  XML_SetUserData(parser, this);
  XML_SetElementHandler(
      parser,
      [](void* self, const XML_Char* name, const XML_Char**) {
        from(self).parser_.run([&] {
          if (from(self).outline_.outermost.empty()) from(self).outline_.outermost = name;
          from(self).mark(Mark::start, name);
          return true;
        });
      },
      [](void* self, const XML_Char* name) {
        from(self).parser_.run([&] {
          from(self).mark(Mark::end, name);
          return true;
        });
      });
  XML_SetCharacterDataHandler(parser, [](void* self, const XML_Char*, int) { from(self).text(); });
  XML_SetCdataSectionHandler(
      parser, [](void* self) { from(self).section(true); },
      [](void* self) { from(self).section(false); });
  // Comments, instructions, and white space outside the outermost element.
  XML_SetDefaultHandler(parser, [](void* self, const XML_Char* text, int length) {
    from(self).parser_.run([&] {
      if (isBlank({text, static_cast<std::size_t>(length)})) {
        from(self).text();
      } else {
        from(self).mark(Mark::other, "");
      }
      return true;
    });
  });
}

Outline OutlineParse::read() {
  if (!parser_.valid()) throw std::bad_alloc();
  handleEvents();
  if (parser_.feed(document_, true)) {
    // Text at the end is outside the outermost element.
    if (textBegin_ && !outline_.gap) outline_.gap = gapBefore("");
  }
  return std::move(outline_);
}

}  // namespace

Outline outlineOf(std::string_view document) {
  return OutlineParse(document).read();
}

}  // namespace wenlolib::receiver
