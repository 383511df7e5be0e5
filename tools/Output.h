/// What a call that goes through documents writes.
#ifndef WENLOLIB_TOOLS_OUTPUT_H
#define WENLOLIB_TOOLS_OUTPUT_H

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "Progress.h"
#include "Terminal.h"

namespace wenlolib::tools {

/// Standard output, gathered into large pieces, and beside it complaints and progress on standard
/// error. What comes first is seen first, also where both lead to the same terminal.
class Output {
 public:
  /// `call` is the name of the subcommand.
  explicit Output(std::string call, std::FILE* out = stdout, std::FILE* errors = stderr);

  /// Throws std::system_error when the stream does not take it; so do the others.
  void write(std::string_view text);

  /// "wenlolib CALL: PATH: WHAT".
  void complain(std::string_view path, std::string_view what);

  /// Where the documents will come from.
  void expect(const std::vector<std::string>& paths) { progress_.expect(paths); }

  /// One more document is done.
  void advance() { progress_.advance(); }

  /// Everything is written; the progress is gone.
  void finish();

  /// Colours for what is written to standard output.
  [[nodiscard]] const Paint& paint() const { return paint_; }

  /// Its columns where it is a terminal, else 0: lines are not broken for a program.
  [[nodiscard]] std::size_t columns() const { return columns_; }

 private:
  void flush();

  std::string call_;
  std::FILE* out_;
  std::FILE* errors_;
  std::string pending_;
  Progress progress_;
  Paint paint_;
  std::size_t columns_;
};

}  // namespace wenlolib::tools

#endif
