#include "Progress.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "Format.h"
#include "Terminal.h"
#include "base/Integer.h"

namespace wenlolib::tools {
namespace {

std::string bar(std::uint64_t documents, std::uint64_t total) {
  constexpr std::uint64_t width = 16;
  const std::size_t filled = documents * width / total;
  const std::string percent = decimal(static_cast<std::int64_t>(documents * 100 / total));
  return "[" + std::string(filled, '#') + std::string(width - filled, ' ') + "] " +
         std::string(3 - percent.size(), ' ') + percent + " %  ";
}

}  // namespace

std::string progressText(std::uint64_t documents, std::optional<std::uint64_t> total,
                         std::uint64_t rate, std::size_t columns) {
  std::string text;
  if (total && *total > 0) {
    const std::uint64_t done = std::min(documents, *total);
    text = bar(done, *total) + grouped(done) + " of " + counted(*total, "document");
  } else {
    text = counted(documents, "document");
  }
  text += ", " + grouped(rate) + " a second";
  return text.substr(0, columns);
}

Progress::Progress(std::FILE* stream) : stream_(stream), on_(hasProgress(stream)) {}

void Progress::expect(const std::vector<std::string>& paths) {
  if (on_) paths_ = paths;
}

void Progress::advance() {
  ++documents_;
  if (!on_) return;
  const Clock::time_point now = Clock::now();
  if (now >= next_) draw(now);
}

/// Counting begins with the first line that is drawn: most runs are over before.
std::optional<std::uint64_t> Progress::total() {
  try {
    if (!count_) count_ = std::make_unique<DocumentCount>(std::exchange(paths_, {}));
    return count_->total();
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

void Progress::draw(Clock::time_point now) {
  const std::chrono::duration<double> past = now - start_;
  const auto rate = static_cast<std::uint64_t>(static_cast<double>(documents_) / past.count());
  // A line that reaches the last column may break.
  const std::string line = progressText(documents_, total(), rate, columnsOf(stream_) - 1);
  std::fprintf(stream_, "\r\x1B[K%s", line.c_str());
  std::fflush(stream_);
  drawn_ = true;
  next_ = now + std::chrono::milliseconds(100);
}

void Progress::clear() {
  if (!drawn_) return;
  std::fputs("\r\x1B[K", stream_);
  std::fflush(stream_);
  drawn_ = false;
}

}  // namespace wenlolib::tools
