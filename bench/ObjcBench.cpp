// A record through the Objective-C classes, compared with the C function of the same bundle.
#include <dlfcn.h>

#include <string>

#include "Pairs.h"
#include "TemporaryInstallation.h"

namespace wenlolib::bench {
namespace {

constexpr std::uint32_t agreedOption = 1;

template <class Function>
Function* symbolIn(const char* path, const char* name) {
  void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  return library == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(library, name));
}

void objcFaceOf2KiB(benchmark::State& state) {
  const TemporaryInstallation installation("/dev/shm");
  const std::string contents(2048, 'x');
  auto* const open = symbolIn<int(const char*, const char*)>(WENLOLIB_OBJC_HOST, "objcHostOpen");
  auto* const record = symbolIn<int(unsigned int)>(WENLOLIB_OBJC_HOST, "objcHostRecord");
  auto* const plain = symbolIn<int(const char*, const char*, std::uint32_t)>(
      WENLOLIB_OBJC_BUNDLE "/WENLOLIB", "WENLOLIB_writeAppInfoWithContents");
  if (open == nullptr || record == nullptr || plain == nullptr ||
      open(WENLOLIB_OBJC_BUNDLE, contents.c_str()) != 1) {
    return state.SkipWithError("not loaded");
  }
  const auto check = [&](int recorded) {
    if (recorded != 1) state.SkipWithError("not recorded");
  };
  const Pairs pairs(
      state, [&] { check(record(agreedOption)); },
      [&] { check(plain(contents.c_str(), "App", agreedOption)); });
  state.counters["more_microseconds"] = (median(pairs.work) - median(pairs.bare)) * 1e6;
  state.counters["at_most"] = 10;
}
BENCHMARK(objcFaceOf2KiB)->UseManualTime()->Iterations(4000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace wenlolib::bench
