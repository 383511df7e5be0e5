/// Compares this project's property lists with Core Foundation's.
///
///   compare_lists written           what one writes, the other reads: random lists
///   compare_lists files    <FILES   reads files as they are
///   compare_lists damaged  <FILES   reads files that are damaged at random
///
/// Standard input holds the files one after the other: a line with the name, one with the size, the
/// bytes. WENLOLIB_LISTS and WENLOLIB_DAMAGED say how many lists and damaged files to compare.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <string>

#include "Children.h"
#include "Explanation.h"
#include "Generated.h"
#include "Reading.h"
#include "Written.h"

namespace wenlolib::tests::lists {
namespace {

constexpr std::uint64_t seed = 20240229;
constexpr const char* unexplained = "?";
/// The comparison itself ended: it cannot be repeated in order to show it.
constexpr const char* ended = "!";
constexpr std::size_t mostShown = 10;

std::size_t setting(const char* name, std::size_t usual) {
  const char* text = std::getenv(name);
  return text == nullptr ? usual : std::strtoull(text, nullptr, 10);
}

std::string cut(const std::string& text, std::size_t most) {
  return text.size() <= most ? text : text.substr(0, most) + "...";
}

/// Counts what came of the files, and shows those that nothing explains.
class Tally {
 public:
  using Shown = std::function<std::string(std::size_t)>;

  explicit Tally(Shown bytes, Shown meant = nullptr)
      : bytes_(std::move(bytes)), meant_(std::move(meant)) {}

  /// Names with "|" between them; "" if both agree.
  void add(std::size_t number, const std::string& names) {
    ++files_;
    if (names.empty()) ++same_;
    const bool isExplained = names != unexplained && names != ended;
    if (!isExplained) ++unexplained_;
    if (names == unexplained) show(number);
    for (std::size_t at = 0; at < names.size() && isExplained;) {
      const std::size_t end = std::min(names.find('|', at), names.size());
      ++counts_[names.substr(at, end - at)];
      at = end + 1;
    }
  }

  [[nodiscard]] int summary(const char* what) const {
    std::printf("%s: %zu; read alike: %zu; unexplained: %zu\n", what, files_, same_, unexplained_);
    for (const auto& [name, count] : counts_) std::printf("  %8zu  %s\n", count, name.c_str());
    return unexplained_ == 0 && files_ > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  }

 private:
  void show(std::size_t number) const {
    if (unexplained_ > mostShown) return;
    const std::string bytes = bytes_(number);
    const std::string mine = ours(bytes).shown(), other = theirs(bytes).shown();
    const std::string& meant = meant_ ? meant_(number) : other;
    const auto apart = std::mismatch(mine.begin(), mine.end(), meant.begin(), meant.end());
    const auto same = static_cast<std::size_t>(apart.first - mine.begin());
    const auto part = [&](const std::string& text) {
      return cut(text.substr(std::min(text.size(), same - std::min<std::size_t>(same, 20))), 300);
    };
    std::printf("Nothing explains file %zu of %zu bytes:\n  %s\n  ours:   %s\n  theirs: %s\n",
                number, bytes.size(), cut(shown(bytes), 2000).c_str(), part(mine).c_str(),
                part(other).c_str());
    if (meant_) std::printf("  meant:  %s\n", part(meant).c_str());
  }

  Shown bytes_, meant_;
  std::size_t files_ = 0, same_ = 0, unexplained_ = 0;
  std::map<std::string, std::size_t> counts_;
};

std::string joined(const std::optional<Names>& names) {
  if (!names) return unexplained;
  std::string text;
  for (const std::string& name : *names) text += (text.empty() ? "" : "|") + name;
  return text;
}

/// In `batch` files to a child.
int compareFiles(const char* what, std::size_t count, std::size_t batch,
                 const std::function<std::string(std::size_t)>& bytes,
                 const std::function<std::string(std::size_t)>& name) {
  Tally tally(bytes);
  const auto survives = [&](Reading (*read)(const std::string&), std::size_t number) {
    bool lives = true;
    inChildren(
        1, 1, [&](std::size_t) { return cut(read(bytes(number)).shown(), 1); }, [](auto, auto) {},
        [&](auto, auto) { lives = false; });
    return lives;
  };
  inChildren(
      count, batch, [&](std::size_t number) { return joined(explanation(bytes(number))); },
      [&](std::size_t number, const std::string& line) { tally.add(number, line); },
      [&](std::size_t number, const std::string& end) {
        std::printf("%s: %s\n", end.c_str(), cut(name(number), 2000).c_str());
        if (!survives(ours, number)) std::printf("  This project does not survive it.\n");
        if (!survives(theirs, number)) std::printf("  Core Foundation does not survive it.\n");
        tally.add(number, ended);
      });
  return tally.summary(what);
}

// --- Files ---

struct File {
  std::string name, bytes;
};

std::vector<File> filesFromInput() {
  std::vector<File> files;
  std::string size;
  for (File file; std::getline(std::cin, file.name) && std::getline(std::cin, size);) {
    file.bytes.resize(std::strtoull(size.c_str(), nullptr, 10));
    if (!std::cin.read(file.bytes.data(), static_cast<std::streamsize>(file.bytes.size()))) break;
    files.push_back(file);
  }
  return files;
}

int compareInput() {
  const std::vector<File> files = filesFromInput();
  return compareFiles(
      "files", files.size(), 1, [&](std::size_t number) { return files[number].bytes; },
      [&](std::size_t number) { return files[number].name; });
}

int compareDamaged() {
  std::vector<std::string> originals;
  for (const File& file : filesFromInput()) originals.push_back(file.bytes);
  for (std::uint64_t number = 0; number < 100; ++number) {
    const Dictionary list = randomList(seed + number);
    for (const auto writer : {Writer::ours, Writer::theirsInXml, Writer::theirsInBinary}) {
      originals.push_back(written(list, writer));
    }
  }
  const auto bytes = [&](std::size_t number) { return damaged(originals, seed + number); };
  return compareFiles("damaged files", setting("WENLOLIB_DAMAGED", 20000), 5000, bytes,
                      [&](std::size_t number) { return shown(bytes(number)); });
}

// --- Written lists ---

int compareWritten() {
  const auto list = [](std::size_t number) { return randomList(seed + number / 3); };
  const auto writer = [](std::size_t number) { return static_cast<Writer>(number % 3); };
  Tally tally([&](std::size_t number) { return written(list(number), writer(number)); },
              [&](std::size_t number) { return shown(list(number)); });
  inChildren(
      3 * setting("WENLOLIB_LISTS", 2000), 5000,
      [&](std::size_t number) { return joined(writtenExplanation(list(number), writer(number))); },
      [&](std::size_t number, const std::string& line) { tally.add(number, line); },
      [&](std::size_t number, const std::string& end) {
        std::printf("%s: list %zu\n", end.c_str(), number);
        tally.add(number, ended);
      });
  return tally.summary("written lists");
}

int run(const std::string& what) {
  if (what == "written") return compareWritten();
  if (what == "files") return compareInput();
  if (what == "damaged") return compareDamaged();
  std::fprintf(stderr, "usage: compare_lists written|files|damaged\n");
  return EXIT_FAILURE;
}

}  // namespace
}  // namespace wenlolib::tests::lists

int main(int argc, char** argv) {
  return wenlolib::tests::lists::run(argc == 2 ? argv[1] : "");
}
