/// The record, and the library's entry points.
#ifndef WENLOLIB_WENLOLIB_H
#define WENLOLIB_WENLOLIB_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Export.h"
#include "Text.h"
#include "Value.h"

namespace wenlolib {

struct RecordFields;

/// One record on its way into a file, and the class operations by which a host records.
///
/// Most hosts need `writeAppInfoWithContents` and `writePrinterLogInfoWithContents` alone. A host
/// may also build a record itself and write it with `writeAppInfo`, which asks no one's permission.
///
/// Nothing is thrown, printed or kept in memory between calls. Where memory runs out the answer is
/// the failing one. A text that is not UTF-8 counts as null. Calls are synchronous; class
/// operations may be called from any thread, a record by one thread at a time.
class WENLOLIB_EXPORT WENLOLIB {
 public:
  ~WENLOLIB();

  // --- Building a record ---

  /// A printer log record (file type 1) without contents and name, option 0. Null only when memory
  /// runs out.
  static std::shared_ptr<WENLOLIB> init() noexcept;

  /// The same with these contents, this name and this option word, which is kept as it is.
  static std::shared_ptr<WENLOLIB> initWithContents(Text contents, Text name = {},
                                                    std::uint32_t option = 0) noexcept;

  /// The payload and the name used in the file's name; null clears the field, and so do bytes that
  /// are not UTF-8: what was there does not stay.
  void setContents(Text contents) noexcept;
  void setApplicationName(Text name) noexcept;

  /// 1 for a printer log record, 2 for application usage; any other value is ignored.
  void setFileType(std::uint32_t fileType) noexcept;

  /// The printer's identity: texts under "DeviceID", "SN" and "ROMVER", a boolean, number or text
  /// under "NEWTAGTYPE". Other keys are ignored. Null is ignored: the record keeps what it had.
  void serOtherInfo(std::optional<Dictionary> otherInfo) noexcept;

  /// Copies of the record's own; null where the field is, and when there is no memory for a copy.
  [[nodiscard]] Text contents() const noexcept;
  [[nodiscard]] Text applicationName() const noexcept;
  [[nodiscard]] std::uint32_t fileType() const noexcept;

  // --- Writing it ---

  /// Makes the survey document from the record and keeps it for `writeAppInfo`. False when memory
  /// runs out and for contents of 2 GiB and more. True does not mean that there is a new document:
  /// there is none where a value holds markup that cannot be mended or a character that XML does
  /// not have, such as U+0001 or U+FFFE, which is never mended. Whenever no new document is made
  /// the record keeps the one that an earlier call has made, if any.
  bool WENLOLIBCreateXMLDocument() noexcept;

  /// Makes the document and writes it, with mode 0666, to the first free number in the folder of
  /// printer logs (1 to 999; with all taken the last is replaced) or to this month's file in the
  /// folder of application usage, which every record of the month replaces.
  ///
  /// False without contents or name, for contents of 2 GiB and more, when memory runs out or the
  /// system cannot say what is in a file, and when the file could not be written. An earlier file
  /// then holds what it held; after a failed write its mode is opened to 0666 all the same, on
  /// purpose, where it is a regular file with no other name and not reached through a link.
  ///
  /// True when the file is written, and also, on purpose, when the record holds no document (see
  /// above) and so comes to no file. Where no new document can be made, but an earlier call has
  /// made one, that one is written, whatever the record was changed to since. Once a write was
  /// tried the record holds no document any more.
  bool writeAppInfo() noexcept;

  // --- The values that a document carries; "" where a value is unknown ---

  /// The host application's version, cut to two components, such as "2.1". The installed library's
  /// stands in only where there is no host bundle at all: a host bundle without a version gives "".
  [[nodiscard]] std::string getCliantVersion() const noexcept;
  /// The version of this library, the one that runs, cut to two components.
  [[nodiscard]] std::string getCliantVersionforALM() const noexcept;
  /// "M." and the OS version, such as "M.10.13.6".
  [[nodiscard]] std::string getOSVersion() const noexcept;
  /// Language and one more component, such as "zh_Hans". The option's low four bits choose the
  /// source: 1 the language last selected in the host, 0 and 2 the user's locale; others give "".
  [[nodiscard]] std::string getLocale() const noexcept;
  /// The identifier of this installation, such as "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}". The
  /// first call on a record reads the library's configuration file, and where that has none yet
  /// makes one and tries to store it; the record then keeps it.
  std::string getWENLOLIBId() noexcept;
  /// The texts of `serOtherInfo`; a value that is not text counts as absent.
  [[nodiscard]] std::string getDevId() const noexcept;
  [[nodiscard]] std::string getSerialNum() const noexcept;
  [[nodiscard]] std::string getRomVersion() const noexcept;
  /// The truth value of "NEWTAGTYPE"; false where it is absent.
  [[nodiscard]] bool isNewTagTypePrinter() const noexcept;

  // --- Recording ---

  /// Records application usage: asks `isSupported` first, and only then looks at the arguments.
  /// False when refused, when contents or name is null, and when `writeAppInfo` answers false.
  static bool writeAppInfoWithContents(Text contents, Text name, std::uint32_t option) noexcept;

  /// Records a printer log in the same way, after `isSupportedPlm`. `otherInfo` may be null.
  static bool writePrinterLogInfoWithContents(Text contents, Text name, std::uint32_t option,
                                              std::optional<Dictionary> otherInfo) noexcept;

  /// Whether application usage may be recorded now. No while the OS version is unknown. From OS
  /// 10.17 on the support version list must name the library's version (the running bundle's
  /// CFBundleShortVersionString), with an OS version not below the running one. Beyond that the
  /// option's low four bits choose what is needed: 0 and 1 the user's agreement and an installation
  /// date less than 1440 days ago, 2 neither of these; all others are refused.
  static bool isSupported(std::uint32_t option) noexcept;

  /// Whether a printer log may be recorded now: an installation date less than 3614 days ago. No
  /// while the OS version is unknown. From OS 10.17 on the support version list must name the
  /// library's version (the installed bundle's CFBundleVersion), with an OS version not below the
  /// running one. The option is ignored.
  static bool isSupportedPlm(std::uint32_t option) noexcept;

  // --- Running a program ---

  /// Runs the executable file at `path` with `args` (null: none). With a `wait` of exactly 1 the
  /// call ends with the program and answers its exit status (the signal's number where a signal
  /// ended it); otherwise the answer is 0 at once and the program runs on by itself. 0 too when
  /// `path` is null or no executable file, and when the program could not be started. An argument
  /// that is not UTF-8 is handed on as it is.
  static std::int32_t createTask(const Text& path,
                                 const std::optional<std::vector<std::string>>& args,
                                 std::uint8_t wait) noexcept;

 private:
  WENLOLIB();

  std::unique_ptr<RecordFields> _fields;
};

using SurveyRecord = WENLOLIB;

}  // namespace wenlolib

#endif
