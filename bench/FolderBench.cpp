// Verifying a folder of many documents, compared with a bare pass over the same files.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "BareWork.h"
#include "Pairs.h"
#include "RecordedDocument.h"
#include "TemporaryInstallation.h"
#include "calls/Verify.h"

namespace wenlolib::bench {
namespace {

constexpr int documents = 100'000;
constexpr std::size_t contentsSize = 2048;

/// A folder of identical documents, each in a file of its own.
class DocumentFolder {
 public:
  explicit DocumentFolder(const std::string& parent) : path_(parent + "/wenlolib-folder-XXXXXX") {
    const std::string bytes = recordedDocument(contentsSize);
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no folder in " + parent);
    for (int i = 0; i < documents; ++i) std::ofstream(fileName(i), std::ios::binary) << bytes;
  }
  ~DocumentFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  DocumentFolder(const DocumentFolder&) = delete;
  DocumentFolder& operator=(const DocumentFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string fileName(int i) const {
    return path_ + "/" + std::to_string(i) + ".ALM";
  }

 private:
  std::string path_;
};

/// Opens a file, reads and digests all of it, and deciphers as many bytes as there are contents.
bool barePass(const std::string& path, std::vector<std::uint8_t>& buffer) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const ssize_t count = file < 0 ? -1 : read(file, buffer.data(), buffer.size());
  if (file >= 0) close(file);
  if (count < static_cast<ssize_t>(2 * contentsSize)) return false;
  bareMd5(buffer.data(), static_cast<std::size_t>(count));
  bareRc4(buffer.data(), buffer.data(), contentsSize);
  return true;
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

void verifyOf100000Documents(benchmark::State& state) {
  const TemporaryInstallation installation(WENLOLIB_BENCH_DISK);
  const DocumentFolder folder(WENLOLIB_BENCH_DISK);
  const std::unique_ptr<std::FILE, CloseFile> nowhere(std::fopen("/dev/null", "w"));
  std::vector<std::uint8_t> buffer(1 << 16);
  const auto verifyAll = [&] {
    tools::VerifyOptions options;
    options.paths = {folder.path()};
    tools::Output output("verify", nowhere.get(), nowhere.get());
    if (tools::verify(options, output) != 0) state.SkipWithError("a document is not sound");
  };
  const auto bareAll = [&] {
    for (int i = 0; i < documents; ++i) {
      if (!barePass(folder.fileName(i), buffer)) return state.SkipWithError("file not read");
    }
  };
  bareAll();  // so that the files are in memory
  const Pairs pairs(state, verifyAll, bareAll);
  state.counters["times_bare"] = pairs.timesBare();
  state.counters["at_most"] = 1.5;
  state.counters["files_per_second"] = documents / median(pairs.work);
  state.counters["bare_files_per_second"] = documents / median(pairs.bare);
}
BENCHMARK(verifyOf100000Documents)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wenlolib::bench
