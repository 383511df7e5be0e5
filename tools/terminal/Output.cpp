#include "terminal/Output.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "base/EnumTable.h"
#include "terminal/Format.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

constexpr EnumTable<Colour, std::string_view> sequences({
    {Colour::good, "\x1B[32m"},
    {Colour::doubtful, "\x1B[33m"},
    {Colour::bad, "\x1B[31m"},
    {Colour::heading, "\x1B[1m"},
    {Colour::faint, "\x1B[2m"},
});

ColourUse colourUse = ColourUse::automatic;

/// On a terminal that has them, unless NO_COLOR is set to anything but the empty text.
bool hasColours(std::FILE* stream) {
  if (colourUse != ColourUse::automatic) return colourUse == ColourUse::always;
  return isTerminal(stream) && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

/// On a terminal that can go back to the start of a line.
bool hasProgress(std::FILE* stream) {
  return isTerminal(stream) && environment("TERM") != "dumb";
}

/// The columns of a terminal; 80 if they are not known.
std::size_t columnsOf(std::FILE* stream) {
  winsize size{};
  const bool known = ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

}  // namespace

bool isTerminal(std::FILE* stream) {
  const int file = fileno(stream);
  return file >= 0 && isatty(file) == 1;
}

void useColours(ColourUse use) {
  colourUse = use;
}

std::string Paint::operator()(Colour colour, std::string_view text) const {
  if (!on_ || text.empty()) return std::string(text);
  return std::string(sequences[colour]) + std::string(text) + "\x1B[0m";
}

namespace {

std::string bar(std::uint64_t documents, std::uint64_t total) {
  constexpr std::uint64_t width = 16;
  const std::size_t filled = documents * width / total;
  return fmt::format("[{:<{}}] {:>3}%  ", std::string(filled, '#'), width, documents * 100 / total);
}

}  // namespace

std::string progressText(std::uint64_t documents, std::optional<std::uint64_t> total,
                         std::uint64_t rate, std::size_t columns) {
  std::string text;
  if (total && *total > 0) {
    const std::uint64_t done = std::min(documents, *total);
    text = fmt::format("{}{} of {}", bar(done, *total), groupDigits(done),
                       countText(*total, "document"));
  } else {
    text = countText(documents, "document");
  }
  text += ", " + groupDigits(rate) + " a second";
  return text.substr(0, columns);
}

std::size_t Style::textWidth() const {
  constexpr std::size_t widest = 80;
  constexpr std::size_t narrowest = 40;
  return columns == 0 ? widest : std::clamp(columns, narrowest, widest);
}

Progress::Progress(std::FILE* stream) : stream_(stream), on_(hasProgress(stream)) {}

void Progress::advance() {
  ++documents_;
  if (!on_) return;
  const Clock::time_point now = Clock::now();
  if (now >= next_) draw(now);
}

void Progress::draw(Clock::time_point now) {
  const std::chrono::duration<double> past = now - start_;
  const auto rate = static_cast<std::uint64_t>(static_cast<double>(documents_) / past.count());
  // A line that reaches the last column may be broken.
  line_ = progressText(documents_, total_(), rate, columnsOf(stream_) - 1);
  show();
  next_ = now + std::chrono::milliseconds(100);
}

void Progress::show() {
  std::fprintf(stream_, "\r\x1B[K%s", line_.c_str());
  std::fflush(stream_);
  drawn_ = true;
}

void Progress::clear() {
  if (!drawn_) return;
  std::fputs("\r\x1B[K", stream_);
  std::fflush(stream_);
  drawn_ = false;
}

void Progress::restore() {
  if (!drawn_ && !line_.empty()) show();
}

std::string Progress::reached() const {
  // Counting does not begin now that the run ends.
  const std::optional<std::uint64_t> total = line_.empty() ? std::nullopt : total_();
  if (!total || *total < documents_) return countText(documents_, "document");
  return groupDigits(documents_) + " of " + countText(*total, "document");
}

namespace {

constexpr std::size_t pieceBytes = std::size_t{64} << 10;

}  // namespace

Output::Output(std::string call, std::FILE* out, std::FILE* errors)
    : call_(std::move(call)),
      out_(out),
      errors_(errors),
      progress_(errors),
      paint_(hasColours(out)),
      columns_(isTerminal(out) ? columnsOf(out) : 0),
      sharesTerminal_(isTerminal(out) && isTerminal(errors)) {}

void Output::write(std::string_view text) {
  pending_ += text;
  // On a terminal each document is shown at once.
  if (pending_.size() >= pieceBytes || columns_ > 0) flush();
}

void Output::complain(std::string_view path, std::string_view what) {
  flush();
  progress_.clear();
  const std::string line = fmt::format("wenlolib {}: {}: {}\n", call_,
                                       path.empty() ? "''" : visibleLine(path), visibleLine(what));
  std::fputs(line.c_str(), errors_);
  progress_.restore();
}

void Output::endOnInterrupt() {
  interrupts_.emplace(call_, progress_.documents());
}

void Output::endIfInterrupted() {
  if (!interrupted()) return;
  finish();
  if (hasProgress(errors_)) std::fputs("\r\x1B[K", errors_);  // the terminal has shown "^C"
  fmt::print(errors_, "wenlolib {}: interrupted after {}\n", call_, progress_.reached());
  std::fflush(errors_);
  dieOfInterrupt();
}

void Output::finish() {
  flush();
  progress_.clear();
}

/// A write that an interrupt has ended is not tried again: nobody may be reading.
void Output::flush() {
  if (pending_.empty()) return;
  if (sharesTerminal_) progress_.clear();
  const bool written = std::fwrite(pending_.data(), 1, pending_.size(), out_) == pending_.size() &&
                       std::fflush(out_) == 0;
  const int error = errno;
  pending_.clear();
  if (!written) {
    endIfInterrupted();
    progress_.clear();
    throw std::system_error(error, std::generic_category(), "standard output");
  }
  if (pending_.capacity() > 4 * pieceBytes) pending_.shrink_to_fit();
  if (sharesTerminal_) progress_.restore();
}

}  // namespace wenlolib::tools
