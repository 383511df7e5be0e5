// A whole record of application usage, compared with the bare atomic write of the same bytes.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Pairs.h"
#include "SystemCallCount.h"
#include "TemporaryInstallation.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::bench {
namespace {

constexpr std::uint32_t agreedOption = 1;
using WriteApplication = int (*)(const char*, const char*, std::uint32_t);

/// The plug-in's own function: what a host calls.
WriteApplication pluginFunction() {
  void* library = dlopen(WENLOLIB_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<WriteApplication>(dlsym(library, "WENLOLIB_writeAppInfoWithContents"));
}

/// The bytes of the one document in `folder`.
std::string documentIn(const std::string& folder) {
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  return {};
}

/// Write, set permissions, flush, rename: what writing a file atomically takes.
bool bareWrite(const std::string& folder, const std::string& bytes) {
  const std::string unfinished = folder + "/.bare.tmp";
  const int file = open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  const bool written =
      file >= 0 && write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
      fchmod(file, 0666) == 0 && fsync(file) == 0;
  return close(file) == 0 && written &&
         std::rename(unfinished.c_str(), (folder + "/bare.ALM").c_str()) == 0;
}

void recordOf2KiB(benchmark::State& state, const std::string& place, double limit) {
  const TemporaryInstallation installation(place);
  const std::string folder = *CommonTooWenlolib::almDirPath();
  const std::string contents(2048, 'x');
  const WriteApplication write = pluginFunction();
  const auto record = [&] {
    return write != nullptr && write(contents.c_str(), "App", agreedOption) == 1;
  };
  if (!record()) return state.SkipWithError("not recorded");
  const std::string document = documentIn(folder);
  const auto check = [&](bool done) {
    if (!done) state.SkipWithError("not written");
  };
  const Pairs pairs(
      state, [&] { check(record()); }, [&] { check(bareWrite(folder, document)); });
  state.counters["times_bare"] = pairs.timesBare();
  if (limit > 0) state.counters["at_most"] = limit;
  if (const auto calls = systemCallsOf([&] { record(); })) state.counters["system_calls"] = *calls;
}

void recordOnDisk(benchmark::State& state) {
  recordOf2KiB(state, WENLOLIB_BENCH_DISK, 1.25);
}
BENCHMARK(recordOnDisk)->UseManualTime()->Iterations(400)->Unit(benchmark::kMicrosecond);

void recordOnTmpfs(benchmark::State& state) {
  recordOf2KiB(state, "/dev/shm", 0);
}
BENCHMARK(recordOnTmpfs)->UseManualTime()->Iterations(2000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace wenlolib::bench
