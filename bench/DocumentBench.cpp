// Making the document of a large record, compared with the unavoidable work.
#include <string>
#include <vector>

#include "BareWork.h"
#include "Pairs.h"
#include "TemporaryInstallation.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::bench {
namespace {

constexpr std::size_t contentsSize = std::size_t{16} << 20;

/// RC4 over n bytes and MD5 over 2n.
void bareWork(const std::string& contents, std::vector<std::uint8_t>& buffer) {
  bareRc4(contents.data(), buffer.data(), contents.size());
  bareMd5(buffer.data(), buffer.size());
}

void documentOf16MiB(benchmark::State& state) {
  const TemporaryInstallation installation(WENLOLIB_BENCH_DISK);
  const std::string contents(contentsSize, 'x');
  std::vector<std::uint8_t> buffer(2 * contentsSize);
  const auto record = WENLOLIB::initWithContents(contents, "App", 1);
  record->setFileType(2);
  const Pairs pairs(
      state,
      [&] {
        if (!record->WENLOLIBCreateXMLDocument()) state.SkipWithError("no document");
      },
      [&] { bareWork(contents, buffer); });
  state.counters["speed_of_bare"] = 1 / pairs.timesBare();
  state.counters["at_least"] = 0.5;
}
BENCHMARK(documentOf16MiB)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wenlolib::bench
