/// What the command writes and answers: colours, the line of progress, output, the exit status.
#ifndef WENLOLIB_TOOLS_TERMINAL_OUTPUT_H
#define WENLOLIB_TOOLS_TERMINAL_OUTPUT_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace wenlolib::tools {

/// Exit statuses, the same for every call.
enum Exit : int {
  allGood = 0,
  notGood = 1,     // a document is not sound, a record was refused, an installation has faults
  wrongUsage = 2,  // what was typed makes no sense
  unreadable = 2,  // a document or something else could not be read, or output not be written
};

[[nodiscard]] bool isTerminal(std::FILE* stream);

enum class Colour { good, doubtful, bad, heading, faint };

/// Puts colours around texts, or leaves them as they are.
class Paint {
 public:
  explicit Paint(bool on) : on_(on) {}

  [[nodiscard]] std::string operator()(Colour colour, std::string_view text) const;

 private:
  bool on_;
};

/// A line on a terminal with the number of documents and how many a second, and as soon as it is
/// known how many there will be, a bar. It is drawn anew a few times a second. A run that is over
/// at once shows nothing; what is no terminal sees nothing at all.
class Progress {
 public:
  explicit Progress(std::FILE* stream);

  /// How many documents there will be, as far as that is known. Asked for the first time when there
  /// is something to draw.
  using Total = std::function<std::optional<std::uint64_t>()>;
  void expect(Total total) { total_ = std::move(total); }

  /// One more document.
  void advance();

  /// Takes the line away, so that something else can be written.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  void draw(Clock::time_point now);

  std::FILE* stream_;
  bool on_;
  bool drawn_ = false;
  std::uint64_t documents_ = 0;
  Total total_ = [] { return std::nullopt; };
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_ = start_ + std::chrono::milliseconds(200);
};

/// The line: "[####      ]  40 %  400 of 1,000 documents, 90 a second", without the bar where the
/// total is not known, and never wider than `columns`.
[[nodiscard]] std::string progressText(std::uint64_t documents, std::optional<std::uint64_t> total,
                                       std::uint64_t rate, std::size_t columns);

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

  /// How many documents there will be.
  void expect(Progress::Total total) { progress_.expect(std::move(total)); }

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
