/// How far a long run has come, for whoever waits for it.
#ifndef WENLOLIB_TOOLS_PROGRESS_H
#define WENLOLIB_TOOLS_PROGRESS_H

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "DocumentCount.h"

namespace wenlolib::tools {

/// A line on a terminal with the number of documents and how many a second, and as soon as it is
/// known how many there will be, a bar. It is drawn anew a few times a second. A run that is over
/// at once shows nothing; what is no terminal sees nothing at all.
class Progress {
 public:
  explicit Progress(std::FILE* stream);

  /// Where the documents will come from.
  void expect(const std::vector<std::string>& paths);

  /// One more document.
  void advance();

  /// Takes the line away, so that something else can be written.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  void draw(Clock::time_point now);
  [[nodiscard]] std::optional<std::uint64_t> total();

  std::FILE* stream_;
  bool on_;
  bool drawn_ = false;
  std::uint64_t documents_ = 0;
  std::vector<std::string> paths_;
  std::unique_ptr<DocumentCount> count_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_ = start_ + std::chrono::milliseconds(200);
};

/// The line: "[####      ]  40 %  400 of 1,000 documents, 90 a second", without the bar where the
/// total is not known, and never wider than `columns`.
[[nodiscard]] std::string progressText(std::uint64_t documents, std::optional<std::uint64_t> total,
                                       std::uint64_t rate, std::size_t columns);

}  // namespace wenlolib::tools

#endif
