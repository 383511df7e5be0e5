/// The user's own records: finding them where the library writes, and choosing among them.
#ifndef WENLOLIB_TOOLS_RECORDS_OWNRECORDS_H
#define WENLOLIB_TOOLS_RECORDS_OWNRECORDS_H

#include <cstdint>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "library/ToolPlatform.h"
#include "records/RecordReading.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

/// Which records are meant. Whatever is not set does not count.
struct Choice {
  std::optional<std::time_t> since;   // the first moment that counts
  std::optional<std::time_t> before;  // the first moment that no longer counts
  std::optional<RecordKind> kind;
  std::string printer;  // in device identifier, serial number or name of a printer log

  [[nodiscard]] bool everything() const;
  [[nodiscard]] bool includes(const RecordFacts& facts) const;
};

/// A record that was found. There may be very many, so the document itself is not kept.
struct OwnRecord {
  std::time_t date = 0;
  std::string place;        // below the support folder
  FileState state;          // when it was read
  std::uint32_t group = 0;  // for the caller's use
};

/// Something else in the folders.
struct LeftAlone {
  std::string place;
  std::string why;
  bool unreadable = false;  // it may hold records
  bool folder = false;
  bool perhapsChosen = false;  // nobody can tell whether it is one of the chosen records
};

struct OwnRecords {
  std::string folder;              // the support folder, with "/" at the end; "" if not known
  std::vector<OwnRecord> records;  // newest first; those of one date by the bytes of their places
  std::vector<LeftAlone> others;   // by the bytes of their places
};

/// Real paths of the folders that the library writes printer logs and application usage to, on the
/// platform in use; none if the home folder is not known.
[[nodiscard]] std::vector<std::string> recordFolders(const ToolPlatform& platform);

/// Hears of each chosen record, in no order.
using RecordListener = std::function<void(const RecordReading&, OwnRecord&)>;

/// Reads all that lies in those folders and their sub-folders and keeps what is chosen. No link to
/// a sub-folder is followed. `output` shows the progress.
[[nodiscard]] OwnRecords findRecords(const ToolPlatform& platform, const Choice& choice,
                                     Output& output, const RecordListener& hear = nullptr);

/// Reads the records again, in their order, and passes them on. Leaves out what has been removed
/// since.
void readAgain(const OwnRecords& found,
               const std::function<void(const RecordReading&, const OwnRecord&)>& take);

/// Says what could not be read. Returns the exit status that goes with it.
int complainOfUnreadable(const OwnRecords& found, Output& output);

}  // namespace wenlolib::tools

#endif
