#include "endtoend/KeptDocuments.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <mutex>
#include <set>
#include <stdexcept>

#include "support/ExpectedDocument.h"

namespace wenlolib::tests {
namespace {

const char* layoutName(RecordKind kind) {
  switch (kind) {
    case RecordKind::application:
      return "application";
    case RecordKind::printer:
      return "printer";
    case RecordKind::printerOlderTag:
      break;
  }
  return "printer-older";
}

/// The layout that a document's wrapper names.
const char* layoutIn(const std::string& document) {
  if (document.starts_with("<OrvanQXApplication ")) return layoutName(RecordKind::application);
  if (document.starts_with("<OrvanQX2Application ")) return layoutName(RecordKind::printer);
  return layoutName(RecordKind::printerOlderTag);
}

bool looksLikeOne(const std::string& bytes) {
  return bytes.starts_with("<OrvanQX");
}

/// A unique name: the running test's name, the process's number, and a count.
std::string nextName() {
  static int number = 0;
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(test->test_suite_name()) + "." + test->name();
  std::ranges::replace(name, '/', '-');
  return name + "." + std::to_string(::getpid()) + "." + std::to_string(++number);
}

/// Appends the line in one write, since several programs may append at once.
void appendLine(const std::string& path, const std::string& line) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  const bool whole =
      file >= 0 && ::write(file, line.data(), line.size()) == static_cast<ssize_t>(line.size());
  if (file >= 0) ::close(file);
  if (!whole) throw std::runtime_error("cannot write " + path);
}

/// The folder for the documents, with a "/" at its end; nothing if none are kept.
Text place() {
  const char* folder = std::getenv("WENLOLIB_DOCUMENTS");
  if (folder == nullptr) return std::nullopt;
  std::filesystem::create_directories(folder);
  return std::string(folder) + "/";
}

/// True for bytes that this process has not kept before.
bool isNew(const std::string& document) {
  static std::set<std::size_t> kept;
  return kept.insert(std::hash<std::string>()(document)).second;
}

/// Keeps a document under a new name, and `contents`, if given, in a file next to it.
void keep(const std::string& document, const char* layout, const std::string& marker,
          const Text& contents) {
  static std::mutex oneAtATime;
  const std::lock_guard lock(oneAtATime);
  const Text folder = place();
  if (!folder || !isNew(document)) return;
  const std::string name = nextName();
  writeFile(*folder + name, document);
  if (contents) writeFile(*folder + name + ".contents", *contents);
  appendLine(*folder + "manifest.txt", name + "\t" + (contents ? name + ".contents" : "") + "\t" +
                                           layout + "\t" + marker + "\n");
}

}  // namespace

void keepDocument(const std::string& path, RecordKind kind, char marker,
                  const std::string& contents) {
  keep(readFile(path), layoutName(kind), std::string(1, marker), contents);
}

void keepBytes(const std::string& document) {
  keep(document, layoutIn(document), attributeIn(document, "C"), std::nullopt);
}

void keepAllBelow(const std::string& folder) {
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    const std::string bytes = readFile(entry.path());
    if (looksLikeOne(bytes)) keepBytes(bytes);
  }
}

}  // namespace wenlolib::tests
