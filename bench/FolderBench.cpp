// Verifying a folder of many documents, compared with a bare pass over the same files; and the
// memory that it takes.
#include <fcntl.h>
#include <malloc.h>
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
#include "ChildFigure.h"
#include "Pairs.h"
#include "RecordedDocument.h"
#include "TemporaryInstallation.h"
#include "calls/Decode.h"
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
    return path_ + "/Quillmere_Log_Album" + std::to_string(i) + "_2611.ALM";
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

using Stream = std::unique_ptr<std::FILE, CloseFile>;

bool verifyAll(const DocumentFolder& folder, std::FILE* nowhere) {
  tools::VerifyOptions options;
  options.documents.paths = {folder.path()};
  tools::Output output("verify", nowhere, nowhere);
  return tools::verify(options, output) == 0;
}

bool decodeAll(const DocumentFolder& folder, std::FILE* nowhere) {
  tools::DecodeOptions options;
  options.documents.paths = {folder.path()};
  options.json = true;
  tools::Output output("decode", nowhere, nowhere);
  return tools::decode(options, output) == 0;
}

void verifyOf100000Documents(benchmark::State& state) {
  const TemporaryInstallation installation(WENLOLIB_BENCH_DISK);
  const DocumentFolder folder(WENLOLIB_BENCH_DISK);
  const Stream nowhere(std::fopen("/dev/null", "w"));
  std::vector<std::uint8_t> buffer(1 << 16);
  const auto work = [&] {
    if (!verifyAll(folder, nowhere.get())) state.SkipWithError("a document is not sound");
  };
  const auto bareAll = [&] {
    for (int i = 0; i < documents; ++i) {
      if (!barePass(folder.fileName(i), buffer)) return state.SkipWithError("file not read");
    }
  };
  bareAll();  // so that the files are in memory
  const Pairs pairs(state, work, bareAll);
  state.counters["times_bare"] = pairs.timesBare();
  state.counters["at_most"] = 1.5;
  state.counters["files_per_second"] = documents / median(pairs.work);
  state.counters["bare_files_per_second"] = documents / median(pairs.bare);
}
BENCHMARK(verifyOf100000Documents)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

/// The memory for each document at the peak of a run over all of them; 0 if it failed.
double bytesPerDocument(bool (*run)(const DocumentFolder&, std::FILE*),
                        const DocumentFolder& folder) {
  const Stream nowhere(std::fopen("/dev/null", "w"));
  malloc_trim(0);  // what was freed before must not hide what is taken now
  const double before = statusKiB("VmRSS:");
  if (!run(folder, nowhere.get())) return 0;
  return (statusKiB("VmHWM:") - before) * 1024 / documents;
}

void memoryOf100000Documents(benchmark::State& state) {
  const TemporaryInstallation installation(WENLOLIB_BENCH_DISK);
  const DocumentFolder folder(WENLOLIB_BENCH_DISK);
  std::optional<double> verified;
  std::optional<double> decoded;
  for (auto _ : state) {
    verified = inChild([&] { return bytesPerDocument(verifyAll, folder); });
    decoded = inChild([&] { return bytesPerDocument(decodeAll, folder); });
  }
  if (!verified || !decoded) return state.SkipWithError("no figure");
  state.counters["verify_bytes_a_document"] = *verified;
  state.counters["decode_bytes_a_document"] = *decoded;
  state.counters["at_most"] = 400;
}
BENCHMARK(memoryOf100000Documents)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wenlolib::bench
