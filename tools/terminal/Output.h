/// What the command writes: colours, the progress line, output.
#ifndef WENLOLIB_TOOLS_TERMINAL_OUTPUT_H
#define WENLOLIB_TOOLS_TERMINAL_OUTPUT_H

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "terminal/ExitStatus.h"
#include "terminal/Interrupt.h"

namespace wenlolib::tools {

[[nodiscard]] bool isTerminal(std::FILE* stream);

/// When there are colours (--color). By default on a terminal that has them, unless NO_COLOR is
/// set.
enum class ColourUse { automatic, always, never };

/// For every `Output` that is made after this.
void useColours(ColourUse use);

enum class Colour { good, doubtful, bad, heading, faint };

/// Puts colours around texts, or leaves them as they are.
class Paint {
 public:
  explicit Paint(bool on) : on_(on) {}

  [[nodiscard]] std::string operator()(Colour colour, std::string_view text) const;

 private:
  bool on_;
};

/// How things are shown. `columns` is 0 if lines are not to be broken.
struct Style {
  Paint paint;
  std::size_t columns = 0;

  /// The width of running text, which is easiest to read in lines of up to 80 columns.
  [[nodiscard]] std::size_t textWidth() const;
};

/// A line on a terminal: the number of documents, how many a second, and a bar once the total is
/// known. It is redrawn a few times a second. A very short run shows nothing, and nothing is
/// written to a stream that is not a terminal.
class Progress {
 public:
  explicit Progress(std::FILE* stream);

  /// How many documents there will be; nothing while that is not known. First asked when there is
  /// something to draw.
  using Total = std::function<std::optional<std::uint64_t>()>;
  void expect(Total total) { total_ = std::move(total); }

  /// Counts one more document.
  void advance();

  /// Removes the line, so that something else can be written.
  void clear();

  /// Shows a line again that was removed.
  void restore();

  [[nodiscard]] const std::atomic<std::uint64_t>& documents() const { return documents_; }

  /// "5 documents", "5 of 2,000 documents".
  [[nodiscard]] std::string reached() const;

 private:
  using Clock = std::chrono::steady_clock;

  void draw(Clock::time_point now);
  void show();

  std::FILE* stream_;
  bool on_;
  bool drawn_ = false;
  std::string line_;                          // the last one drawn
  std::atomic<std::uint64_t> documents_ = 0;  // also read by a signal handler
  Total total_ = [] { return std::nullopt; };
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_ = start_ + std::chrono::milliseconds(200);
};

/// The line: "[####      ]  40%  400 of 1,000 documents, 90 a second", without the bar if the
/// total is not known, and never wider than `columns`.
[[nodiscard]] std::string progressText(std::uint64_t documents, std::optional<std::uint64_t> total,
                                       std::uint64_t rate, std::size_t columns);

/// Standard output, gathered into large pieces, and complaints and progress on standard error. They
/// keep their order even on the same terminal.
class Output {
 public:
  /// `call` is the name of the subcommand.
  explicit Output(std::string call, std::FILE* out = stdout, std::FILE* errors = stderr);

  /// Throws std::system_error if the stream does not take it; so do the other functions.
  void write(std::string_view text);

  /// "wenlolib SUBCOMMAND: PATH: WHAT".
  void complain(std::string_view path, std::string_view what);

  /// How many documents there will be.
  void expect(Progress::Total total) { progress_.expect(std::move(total)); }

  /// Counts one more document.
  void advance() { progress_.advance(); }

  /// From now on an interrupt ends the run as `endIfInterrupted` says, or a second later anyway.
  void endOnInterrupt();

  /// After an interrupt: writes what is left, removes the progress line, says how far the run came
  /// and ends the process.
  void endIfInterrupted();

  /// Writes what is left and removes the progress line.
  void finish();

  /// Colours for what is written to standard output.
  [[nodiscard]] const Paint& paint() const { return paint_; }

  /// Both of what follows.
  [[nodiscard]] Style style() const { return {paint_, columns_}; }

  /// The columns of a terminal; 0 for anything else, since a program wants whole lines.
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
  bool sharesTerminal_;  // the progress line and the output are on the same terminal
  std::optional<InterruptHandling> interrupts_;  // uses the others
};

}  // namespace wenlolib::tools

#endif
