// The five C functions on a platform in memory: any contents, name, identity and option.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Input.h"
#include "Require.h"
#include "base/Utf8.h"
#include "support/HostInstallation.h"
#include "support/MemoryPlatform.h"
#include "wenlolib/Receiver.h"
#include "wenlolib/plugin.h"
#include "xml/WellFormed.h"

namespace {

using namespace wenlolib;
using fuzz::Input;
using fuzz::require;

/// A host's text, or null.
struct HostText {
  explicit HostText(Input& input) : text(input.plain()), null(input.byte() == 1) {}
  [[nodiscard]] const char* get() const { return null ? nullptr : text.c_str(); }
  [[nodiscard]] bool usable() const { return !null && isUtf8(text); }

  std::string text;
  bool null;
};

struct Host {
  explicit Host(Input& input)
      : option(input.byte()), contents(input), name(input), printerLog(input.byte() % 2 == 0) {
    constexpr const char* known[] = {"DeviceID", "SN", "ROMVER", "NEWTAGTYPE"};
    for (std::size_t count = input.below(8); count > 0; --count) {
      const std::size_t key = input.below(std::size(known) + 1);
      keys.emplace_back(key < std::size(known) ? known[key] : input.plain());
      values.emplace_back(input);
    }
  }

  /// Records once and returns what the library returns.
  [[nodiscard]] int record() const {
    if (!printerLog) return WENLOLIB_writeAppInfoWithContents(contents.get(), name.get(), option);
    std::vector<WENLOLIBEntry> entries;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      entries.push_back({keys[i].empty() ? nullptr : keys[i].c_str(), values[i].get()});
    }
    return WENLOLIB_writePrinterLogInfoWithContents(contents.get(), name.get(), option,
                                                    entries.empty() ? nullptr : entries.data(),
                                                    entries.size());
  }

  [[nodiscard]] bool allowed() const {
    const int answer = printerLog ? WENLOLIB_isSupportedPlm(option) : WENLOLIB_isSupported(option);
    require(answer == 0 || answer == 1, "a decision is yes or no");
    return answer == 1;
  }

  std::uint32_t option;
  HostText contents, name;
  bool printerLog;
  std::vector<std::string> keys;
  std::vector<HostText> values;
};

/// The platform in memory with the port's XML service, set up as the run's bytes say.
struct World {
  explicit World(Input& input) {
    tests::install(memory);
    const std::uint8_t choice = input.byte();
    if ((choice & 1) != 0) memory.faults.failAlways("cipher.rc4");
    if ((choice & 2) != 0) memory.files.remove(tests::preferencePath);
    if ((choice & 4) != 0) memory.user.localeSetting = utf8OrNull(input.text());
    if ((choice & 8) != 0) {
      memory.propertyLists.add(tests::identifierPath, {{"WENLIBUUID", input.text()}});
    }
    memory.services.xml = &xml;
  }

  tests::MemoryPlatform memory;
  xml::Service xml;
};

/// The one file that was not there before; nothing if there is none. Of the others, only the one
/// with the identifier may have changed.
std::optional<std::string> newFile(const tests::MemoryFiles::Entries& before,
                                   const tests::MemoryFiles::Entries& after) {
  std::optional<std::string> found;
  for (const auto& [path, entry] : after) {
    if (path == tests::identifierPath) continue;
    const auto old = before.find(path);
    if (old != before.end()) {
      require(old->second == entry, "an earlier file is unchanged");
      continue;
    }
    require(!found, "one record makes one file");
    require(entry.mode == 0666, "a record's mode");
    found = entry.bytes;
  }
  return found;
}

void checkDocument(const std::string& bytes, const Host& host) {
  const receiver::Report report = receiver::examine(bytes);
  const receiver::Verdict& verdict = report.verdict;
  require(verdict.layer == receiver::Layer::none || verdict.layer == receiver::Layer::layout ||
              verdict.layer == receiver::Layer::whiteSpace ||
              verdict.layer == receiver::Layer::checksum,
          "a written document is well-formed: " + verdict.explanation);
  if (!report.document) return;
  require(receiver::contentsOf(*report.document) == host.contents.text, "the contents come back");
}

void check(const Host& host, const tests::MemoryFiles& files) {
  const bool allowed = host.allowed();
  const tests::MemoryFiles::Entries before = files.all();
  const int answer = host.record();
  require(answer == 0 || answer == 1, "an answer is yes or no");
  const std::optional<std::string> file = newFile(before, files.all());
  if (!allowed || !host.contents.usable() || !host.name.usable()) {
    require(answer == 0 && !file, "a refused record leaves nothing");
  } else if (file) {
    require(answer == 1, "a file is a yes");
    checkDocument(*file, host);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  World world(input);
  const platform::Substitute substitute(world.memory.services);
  static const std::string version = WENLOLIB_version();
  require(version == WENLOLIB_version(), "one version");
  check(Host(input), world.memory.files);
  return 0;
}
