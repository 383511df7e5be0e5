// Rows from an archive of small documents, compared with the bare digests and deciphering of the
// same documents; and what a second job brings.
#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "BareWork.h"
#include "Pairs.h"
#include "RecordedDocument.h"
#include "TemporaryInstallation.h"
#include "calls/Rows.h"

namespace wenlolib::bench {
namespace {

constexpr int documents = 20'000;
constexpr std::size_t documentSize = 2048;
constexpr std::size_t contentsSize = 880;  // as many as make a document of that size

/// A tar archive of identical documents, removed at the end.
class DocumentArchive {
 public:
  explicit DocumentArchive(const std::string& folder) : path_(folder + "/documents.tar") {
    archive* const tar = archive_write_new();
    archive_write_set_format_ustar(tar);
    archive_write_open_filename(tar, path_.c_str());
    for (int i = 0; i < documents; ++i) add(tar, i);
    if (archive_write_free(tar) != ARCHIVE_OK) throw std::runtime_error("no archive");
  }
  ~DocumentArchive() { std::remove(path_.c_str()); }
  DocumentArchive(const DocumentArchive&) = delete;
  DocumentArchive& operator=(const DocumentArchive&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const std::string& document() const { return document_; }

 private:
  void add(archive* tar, int number) const {
    archive_entry* const entry = archive_entry_new();
    const std::string name = "incoming/Quillmere_Log_Album" + std::to_string(number) + "_2611.ALM";
    archive_entry_set_pathname(entry, name.c_str());
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_size(entry, static_cast<la_int64_t>(document_.size()));
    archive_write_header(tar, entry);
    archive_write_data(tar, document_.data(), document_.size());
    archive_entry_free(entry);
  }

  std::string path_;
  std::string document_ = recordedDocument(contentsSize);
};

bool writeRows(const DocumentArchive& archive, int jobs, std::FILE* nowhere) {
  tools::RowsOptions options;
  options.documents.paths = {archive.path()};
  options.documents.archives = true;
  options.documents.jobs = jobs;
  tools::Output output("rows", nowhere, nowhere);
  return tools::rows(options, output) == 0;
}

void bareAll(const std::string& document, std::vector<std::uint8_t>& buffer) {
  for (int i = 0; i < documents; ++i) {
    bareMd5(document.data(), document.size());
    bareSha256(document.data(), document.size());
    bareRc4(document.data(), buffer.data(), contentsSize);
  }
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// `yardstick` is what the rows of one job or two are compared with.
template <class Yardstick>
Pairs measured(benchmark::State& state, const DocumentArchive& archive, int jobs,
               Yardstick yardstick) {
  const std::unique_ptr<std::FILE, CloseFile> nowhere(std::fopen("/dev/null", "w"));
  return Pairs(
      state,
      [&] {
        if (!writeRows(archive, jobs, nowhere.get())) state.SkipWithError("not all are sound");
      },
      [&] { yardstick(nowhere.get()); });
}

void rowsOf20000Documents(benchmark::State& state) {
  const TemporaryInstallation installation(WENLOLIB_BENCH_DISK);
  const DocumentArchive archive(WENLOLIB_BENCH_DISK);
  std::vector<std::uint8_t> buffer(documentSize);
  const Pairs pairs =
      measured(state, archive, 1, [&](std::FILE*) { bareAll(archive.document(), buffer); });
  state.counters["document_bytes"] = static_cast<double>(archive.document().size());
  state.counters["speed_of_bare"] = 1 / pairs.timesBare();
  state.counters["at_least"] = 0.4;
  state.counters["documents_per_second"] = documents / median(pairs.work);
}
BENCHMARK(rowsOf20000Documents)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);

void rowsByTwoJobs(benchmark::State& state) {
  const TemporaryInstallation installation(WENLOLIB_BENCH_DISK);
  const DocumentArchive archive(WENLOLIB_BENCH_DISK);
  const Pairs pairs = measured(state, archive, 2, [&](std::FILE* nowhere) {
    if (!writeRows(archive, 1, nowhere)) state.SkipWithError("not all are sound");
  });
  state.counters["times_one_job"] = 1 / pairs.timesBare();
  state.counters["at_least"] = 1.7;
}
BENCHMARK(rowsByTwoJobs)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wenlolib::bench
