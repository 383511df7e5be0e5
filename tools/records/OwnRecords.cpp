#include "records/OwnRecords.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/posix/AtomicFile.h"
#include "reading/DocumentFiles.h"
#include "toolkit/Folders.h"

namespace wenlolib::tools {

// --- Choosing ---

namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool contains(const std::string& text, const std::string& part) {
  const auto same = [](char a, char b) { return lower(a) == lower(b); };
  return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end() ||
         part.empty();
}

}  // namespace

bool Choice::everything() const {
  return !since && !before && !kind && printer.empty();
}

bool Choice::includes(const RecordFacts& facts) const {
  if (since && facts.date < *since) return false;
  if (before && facts.date >= *before) return false;
  if (kind && facts.kind != *kind) return false;
  if (printer.empty()) return true;
  return facts.kind == RecordKind::printerLog &&
         (contains(facts.deviceId, printer) || contains(facts.serialNumber, printer) ||
          contains(facts.name, printer));
}

// --- Finding ---

std::vector<std::string> recordFolders(const ToolPlatform& platform) {
  std::vector<std::string> folders;
  for (const Text& folder : {printerLogFolder(), applicationLogFolder()}) {
    if (folder) folders.push_back(platform.real(*folder));
  }
  return folders;
}

namespace {

namespace fs = std::filesystem;

/// Goes through folders without following links. Keeps the names of those that are still to come
/// instead of open folders, however deep they are.
class Search {
 public:
  Search(OwnRecords& found, const Choice& choice, Output& output, const RecordListener& hear)
      : found_(found), choice_(choice), output_(output), hear_(hear) {}

  void through(std::string place) {
    pending_.push_back(std::move(place));
    while (!pending_.empty()) {
      place = std::move(pending_.back());
      pending_.pop_back();
      folder(place);
    }
  }

 private:
  LeftAlone& pass(std::string place, std::string why, bool isUnreadable) {
    found_.others.push_back({std::move(place), std::move(why), isUnreadable});
    return found_.others.back();
  }

  void folder(const std::string& place) {
    std::error_code error;
    fs::directory_iterator entries(found_.folder + place, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
      entry(place + "/" + entries->path().filename().string(), *entries);
    }
    if (error && error != std::errc::no_such_file_or_directory) {
      pass(place, error.message(), true).folder = true;
    }
  }

  void entry(std::string place, const fs::directory_entry& entry) {
    std::error_code error;
    const fs::file_type type = entry.symlink_status(error).type();
    if (type == fs::file_type::directory) {
      pending_.push_back(std::move(place));
    } else if (type == fs::file_type::symlink) {
      pass(std::move(place), "a link", false);
    } else if (type != fs::file_type::regular) {
      pass(std::move(place), "not a regular file", false);
    } else if (platform::posix::isUnfinished(entry.path().filename().string())) {
      pass(std::move(place), "unfinished; wenlolib doctor --clean removes it once it is a day old",
           false)
          .perhapsChosen = choice_.everything();
    } else if (!hasDocumentName(place)) {
      pass(std::move(place), "not named *.PLM or *.ALM", false);
    } else {
      file(std::move(place));
    }
  }

  void file(std::string place) {
    const RecordReading reading = readRecord(found_.folder, place, buffer_);
    output_.advance();
    if (reading.vanished) return;
    if (!reading.complaint.empty()) {
      pass(std::move(place), reading.complaint, reading.unreadable);
    } else if (choice_.includes(reading.facts)) {
      OwnRecord record{reading.facts.date, std::move(place), reading.state};
      if (hear_) hear_(reading, record);
      found_.records.push_back(std::move(record));
    } else if (isOfUnknownPrinter(reading)) {
      pass(std::move(place), "damaged, so its printer is not known", false).perhapsChosen = true;
    }
  }

  /// It may be one of those asked for, and the user should hear of it.
  bool isOfUnknownPrinter(const RecordReading& reading) const {
    return !choice_.printer.empty() && !reading.report.document &&
           reading.facts.kind == RecordKind::printerLog && reading.facts.printer().empty();
  }

  OwnRecords& found_;
  const Choice& choice_;
  Output& output_;
  const RecordListener& hear_;
  std::vector<std::string> pending_;
  std::string buffer_;
};

bool isBefore(const OwnRecord& a, const OwnRecord& b) {
  return a.date != b.date ? a.date > b.date : a.place < b.place;
}

}  // namespace

OwnRecords findRecords(const ToolPlatform& platform, const Choice& choice, Output& output,
                       const RecordListener& hear) {
  OwnRecords found;
  found.folder = platform.realSupportFolder();
  if (found.folder.empty()) return found;
  found.folder += "/";
  Search search(found, choice, output, hear);
  for (const std::string& folder : recordFolders(platform)) {
    search.through(folder.substr(found.folder.size()));
  }
  std::ranges::sort(found.records, isBefore);
  std::ranges::sort(found.others, {}, &LeftAlone::place);
  return found;
}

void readAgain(const OwnRecords& found,
               const std::function<void(const RecordReading&, const OwnRecord&)>& take) {
  std::string buffer;
  for (const OwnRecord& record : found.records) {
    const RecordReading reading = readRecord(found.folder, record.place, buffer);
    if (reading.complaint.empty()) take(reading, record);
  }
}

int complainOfUnreadable(const OwnRecords& found, Output& output) {
  int status = allGood;
  if (found.folder.empty()) {
    output.complain("HOME", "the home folder is not known; set HOME to an absolute path");
    status = unreadable;
  }
  for (const LeftAlone& other : found.others) {
    if (!other.unreadable) continue;
    output.complain(found.folder + other.place, other.why);
    status = unreadable;
  }
  return status;
}

}  // namespace wenlolib::tools
