// Reading a large document, compared with the unavoidable work.
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "BareWork.h"
#include "Pairs.h"
#include "RecordedDocument.h"
#include "TemporaryInstallation.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::bench {
namespace {

constexpr std::size_t contentsSize = std::size_t{16} << 20;

/// MD5 over the whole document and RC4 over as many bytes as there are contents.
void bareWork(const std::string& document, std::vector<std::uint8_t>& buffer) {
  bareMd5(document.data(), document.size());
  bareRc4(document.data(), buffer.data(), buffer.size());
}

bool verify(const std::string& document) {
  return receiver::examine(document).verdict.sound();
}

bool decode(const std::string& document) {
  receiver::Report report = receiver::examine(document);
  if (!report.document) return false;
  const auto contents = receiver::contentsOf(std::move(*report.document));
  return contents && contents->size() == contentsSize;
}

void readingOf16MiB(benchmark::State& state, bool (*read)(const std::string&)) {
  const TemporaryInstallation installation(WENLOLIB_BENCH_DISK);
  const std::string document = recordedDocument(contentsSize);
  std::vector<std::uint8_t> buffer(contentsSize);
  const Pairs pairs(
      state,
      [&] {
        if (!read(document)) state.SkipWithError("not read");
      },
      [&] { bareWork(document, buffer); });
  state.counters["speed_of_bare"] = 1 / pairs.timesBare();
  state.counters["at_least"] = 0.5;
}

void verifyOf16MiB(benchmark::State& state) {
  readingOf16MiB(state, verify);
}
BENCHMARK(verifyOf16MiB)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

void decodeOf16MiB(benchmark::State& state) {
  readingOf16MiB(state, decode);
}
BENCHMARK(decodeOf16MiB)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wenlolib::bench
