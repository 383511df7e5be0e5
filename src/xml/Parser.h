/// One expat parser, owned, with its errors made safe for C++.
#ifndef WENLOLIB_XML_PARSER_H
#define WENLOLIB_XML_PARSER_H

#include <expat.h>

#include <cstddef>
#include <exception>
#include <string_view>
#include <utility>

namespace wenlolib::xml {

/// Expat takes its memory from `operator new`, so an allocation that fails there is reported here
/// too. Set the handlers through `handle()`; what they do belongs inside `run`.
class Parser {
 public:
  /// Input is passed to expat in pieces of at most this size, because lengths are plain `int`s
  /// there.
  static constexpr std::size_t pieceBytes = std::size_t{64} << 20;

  /// `encoding` overrides the one that the document names; null detects it. `piece` must not be 0.
  explicit Parser(const char* encoding, std::size_t piece = pieceBytes);
  ~Parser();
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  /// False if there was no memory for the parser; then nothing but the destructor may be used.
  [[nodiscard]] bool valid() const noexcept { return parser_ != nullptr; }
  [[nodiscard]] XML_Parser handle() const noexcept { return parser_; }

  /// Parses the next bytes; `final` says that none follow. False if they are malformed or a handler
  /// stopped the parser, and for every call after that. Throws what a handler threw, and
  /// `std::bad_alloc` if expat found no memory.
  [[nodiscard]] bool feed(std::string_view bytes, bool final);

  /// The body of a handler. `work` returns false to stop the parser. An exception must not unwind
  /// through expat's frames: it is kept until `feed` can throw it. Expat may still call a handler
  /// or two after it was stopped; their work is not run.
  template <class Work>
  void run(Work&& work) noexcept {
    if (stopped_) return;
    try {
      if (!std::forward<Work>(work)()) stop();
    } catch (...) {
      thrown_ = std::current_exception();
      stop();
    }
  }

 private:
  void stop() noexcept;
  [[nodiscard]] bool feedPiece(std::string_view piece, bool final);

  XML_Parser parser_;
  std::size_t piece_;
  bool stopped_ = false;
  std::exception_ptr thrown_;
};

}  // namespace wenlolib::xml

#endif
