#include "doctor/PluginProbe.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gnu/lib-names.h>
#include <link.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string_view>
#include <system_error>

namespace wenlolib::tools {
namespace {

constexpr unsigned mostSeconds = 10;

/// What a process of its own has written, and how it ended.
struct ChildReport {
  std::string text;
  int status = -1;  // as from waitpid; -1 if no process could be started
};

/// Says nothing on the command's own streams, and ends in time.
[[noreturn]] void runAsChild(const std::function<void(int)>& work, int result) {
  const int silence = ::open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    static_cast<void>(::dup2(silence, stream));
  }
  ::alarm(mostSeconds);
  work(result);
  ::_exit(0);
}

std::string readAll(int file) {
  std::string text;
  char piece[4096];
  for (;;) {
    const ssize_t count = ::read(file, piece, sizeof piece);
    if (count > 0) text.append(piece, static_cast<std::size_t>(count));
    if (count == 0 || (count < 0 && errno != EINTR)) return text;
  }
}

/// Runs `work` in a process of its own; it writes its result to the descriptor that it is given.
ChildReport inChild(const std::function<void(int)>& work) {
  ChildReport report;
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return report;
  const pid_t child = ::fork();
  if (child == 0) runAsChild(work, ends[1]);
  ::close(ends[1]);
  if (child > 0) {
    report.text = readAll(ends[0]);
    while (::waitpid(child, &report.status, 0) < 0 && errno == EINTR) {
    }
  }
  ::close(ends[0]);
  return report;
}

/// The first character of what the child writes.
constexpr char good = '+', bad = '-';

void tell(int result, char kind, const char* text) {
  std::string line(1, kind);
  line += text == nullptr ? "" : text;
  std::string_view rest = line;
  while (!rest.empty()) {
    const ssize_t count = ::write(result, rest.data(), rest.size());
    if (count < 0 && errno != EINTR) return;
    rest.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
  }
}

/// As a host does it. The plug-in's code may run from here on.
void loadAndAsk(const std::string& path, int result) {
  void* plugin = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (plugin == nullptr) return tell(result, bad, ::dlerror());
  const char* (*version)() = nullptr;
  void* symbol = ::dlsym(plugin, "WENLOLIB_version");
  if (symbol == nullptr) return tell(result, bad, "it has no function WENLOLIB_version");
  std::memcpy(&version, &symbol, sizeof version);
  tell(result, good, version());
}

std::string endText(int status) {
  if (status == -1) return "no process could be started: " + std::generic_category().message(errno);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) return "it did not answer in time";
  if (WIFSIGNALED(status)) return std::string("it crashed: ") + ::strsignal(WTERMSIG(status));
  return "it ended the process";
}

}  // namespace

PluginProbe probePlugin(const std::string& path) {
  const ChildReport report = inChild([&](int result) { loadAndAsk(path, result); });
  PluginProbe probe;
  if (report.text.starts_with(good)) {
    probe.version = report.text.substr(1);
    if (probe.version.empty()) probe.trouble = "it gives no version";
  } else {
    probe.trouble = report.text.empty() ? endText(report.status) : report.text.substr(1);
  }
  if (report.status != 0 && !probe.version.empty()) probe.trouble = endText(report.status);
  return probe;
}

namespace {

/// The path of the dynamic loader that this process uses; "" if it is not known.
std::string loaderPath() {
  void* loader = ::dlopen(LD_SO, RTLD_LAZY | RTLD_NOLOAD);
  const link_map* map = nullptr;
  const bool known = loader != nullptr && ::dlinfo(loader, RTLD_DI_LINKMAP, &map) == 0;
  std::string path = known ? map->l_name : "";
  if (loader != nullptr) ::dlclose(loader);
  return path;
}

}  // namespace

std::vector<std::string> missingLibraries(const std::string& path) {
  const std::string loader = loaderPath();
  const ChildReport report = inChild([&](int result) {
    static_cast<void>(::dup2(result, STDOUT_FILENO));
    // Not --list, which ends at the first library that is missing.
    ::setenv("LD_TRACE_LOADED_OBJECTS", "1", 1);
    ::execl(loader.c_str(), loader.c_str(), path.c_str(), nullptr);
  });
  constexpr std::string_view notFound = " => not found";
  std::vector<std::string> missing;
  std::string_view rest = report.text;
  while (!rest.empty()) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    if (!line.ends_with(notFound)) continue;
    line.remove_suffix(notFound.size());
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    missing.emplace_back(line);
  }
  return missing;
}

}  // namespace wenlolib::tools
