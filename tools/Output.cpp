#include "Output.h"

#include <cerrno>
#include <system_error>

#include "VisibleText.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t pieceBytes = std::size_t{64} << 10;

}  // namespace

Output::Output(std::string call, std::FILE* out, std::FILE* errors)
    : call_(std::move(call)),
      out_(out),
      errors_(errors),
      progress_(errors),
      paint_(hasColours(out)),
      columns_(isTerminal(out) ? columnsOf(out) : 0) {}

void Output::write(std::string_view text) {
  pending_ += text;
  // Whoever looks on sees each document at once.
  if (pending_.size() >= pieceBytes || columns_ > 0) flush();
}

void Output::complain(std::string_view path, std::string_view what) {
  flush();
  progress_.clear();
  const std::string line =
      "wenlolib " + call_ + ": " + visibleInLine(path) + ": " + visibleInLine(what) + "\n";
  std::fputs(line.c_str(), errors_);
}

void Output::finish() {
  progress_.clear();
  flush();
}

void Output::flush() {
  if (pending_.empty()) return;
  progress_.clear();
  const bool written = std::fwrite(pending_.data(), 1, pending_.size(), out_) == pending_.size() &&
                       std::fflush(out_) == 0;
  if (!written) throw std::system_error(errno, std::generic_category(), "standard output");
  pending_.clear();
  if (pending_.capacity() > 4 * pieceBytes) pending_.shrink_to_fit();
}

}  // namespace wenlolib::tools
