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

/// One record on its way into a file, and the class operations with which a host records.
///
/// Most hosts need only `writeAppInfoWithContents` and `writePrinterLogInfoWithContents`. A host
/// may also build a record itself and write it with `writeAppInfo`, which does not check whether
/// recording is allowed.
///
/// Nothing is thrown, printed or kept in memory between calls. If memory runs out, a call returns
/// what it returns on failure. A text that is not UTF-8 counts as null. Calls are synchronous.
/// Class operations may be called from any thread; a record may be used by one thread at a time.
class WENLOLIB_EXPORT WENLOLIB {
 public:
  ~WENLOLIB();

  // --- Building a record ---

  /// A printer log record (file type 1) without contents or name, and with option 0. Null only if
  /// memory runs out.
  static std::shared_ptr<WENLOLIB> init() noexcept;

  /// The same with these contents, this name and this option word, which is kept as it is.
  static std::shared_ptr<WENLOLIB> initWithContents(Text contents, Text name = {},
                                                    std::uint32_t option = 0) noexcept;

  /// These set the contents and the name used in the file's name. Null clears the field, and so do
  /// bytes that are not UTF-8.
  void setContents(Text contents) noexcept;
  void setApplicationName(Text name) noexcept;

  /// 1 for a printer log record, 2 for application usage; any other value is ignored.
  void setFileType(std::uint32_t fileType) noexcept;

  /// The printer's identity: texts under "DeviceID", "SN" and "ROMVER", a boolean, number or text
  /// under "NEWTAGTYPE". Other keys are ignored. Null is ignored: the record keeps what it had.
  void serOtherInfo(std::optional<Dictionary> otherInfo) noexcept;

  /// Copies of the record's fields; null if the field is null or there is no memory for a copy.
  [[nodiscard]] Text contents() const noexcept;
  [[nodiscard]] Text applicationName() const noexcept;
  [[nodiscard]] std::uint32_t fileType() const noexcept;

  // --- Writing it ---

  /// Makes the survey document from the record and keeps it for `writeAppInfo`. False if memory
  /// runs out and for contents of 2 GiB or more. True does not mean that there is a new document:
  /// none is made if a value holds markup that cannot be repaired, or a character that XML does not
  /// allow, such as U+0001 or U+FFFE, which is never repaired. If no new document is made, the
  /// record keeps the one that an earlier call made, if any.
  bool WENLOLIBCreateXMLDocument() noexcept;

  /// Makes the document and writes it to a file with mode 0666. A printer log gets the first free
  /// number, 1 to 999, in the folder of printer logs; if all are taken, number 999 is replaced.
  /// Application usage goes into this month's file in the folder of application usage, which every
  /// record of the month replaces.
  ///
  /// False without contents or name, for contents of 2 GiB or more, if memory runs out, if the
  /// system cannot tell what is in a file, and if the file cannot be written. An earlier file then
  /// keeps its contents. After a failed write its mode is still set to 0666, on purpose, if it is a
  /// regular file with no other name and is not reached through a link.
  ///
  /// True if the file is written and also, on purpose, if there is no document to write (see
  /// above), so that no file is made. If no new document can be made but an earlier call made one,
  /// that one is written, however the record has changed since. Once a write has been tried, the
  /// record no longer holds a document.
  bool writeAppInfo() noexcept;

  // --- The values that a document carries; "" if a value is unknown ---

  /// The host application's version, cut to two components, such as "2.1". The installed library's
  /// version is used only if there is no host bundle at all: a host bundle without a version gives
  /// "".
  [[nodiscard]] std::string getCliantVersion() const noexcept;
  /// The version of this library, the one that runs, cut to two components.
  [[nodiscard]] std::string getCliantVersionforALM() const noexcept;
  /// "M." and the OS version, such as "M.10.13.6".
  [[nodiscard]] std::string getOSVersion() const noexcept;
  /// Language and one more component, such as "zh_Hans". The option's low four bits choose the
  /// source: 1 for the language last selected in the host, 0 and 2 for the user's locale; other
  /// values give "".
  [[nodiscard]] std::string getLocale() const noexcept;
  /// The identifier of this installation, such as "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}". The
  /// first call on a record reads it from the library's configuration file; if there is none yet,
  /// the call makes one and tries to store it there. The record then keeps it.
  std::string getWENLOLIBId() noexcept;
  /// The texts given to `serOtherInfo`; a value that is not text counts as absent.
  [[nodiscard]] std::string getDevId() const noexcept;
  [[nodiscard]] std::string getSerialNum() const noexcept;
  [[nodiscard]] std::string getRomVersion() const noexcept;
  /// The truth value of "NEWTAGTYPE"; false if it is absent.
  [[nodiscard]] bool isNewTagTypePrinter() const noexcept;

  // --- Recording ---

  /// Records application usage: asks `isSupported` first, and looks at the other arguments only if
  /// recording is allowed. False if recording is refused, if contents or name is null, and whenever
  /// `writeAppInfo` returns false.
  static bool writeAppInfoWithContents(Text contents, Text name, std::uint32_t option) noexcept;

  /// Records a printer log in the same way, after asking `isSupportedPlm`. `otherInfo` may be null.
  static bool writePrinterLogInfoWithContents(Text contents, Text name, std::uint32_t option,
                                              std::optional<Dictionary> otherInfo) noexcept;

  /// Whether application usage may be recorded now. False while the OS version is unknown. From OS
  /// 10.17 on, the support version list must name the library's version (the running bundle's
  /// CFBundleShortVersionString) with an OS version not below the running one. The option's low
  /// four bits choose what else is needed: 0 and 1 need the user's agreement and an installation
  /// date less than 1440 days ago; 2 needs neither; other values are refused.
  static bool isSupported(std::uint32_t option) noexcept;

  /// Whether a printer log may be recorded now: the installation date must be less than 3614 days
  /// ago. False while the OS version is unknown. From OS 10.17 on, the support version list must
  /// name the library's version (the installed bundle's CFBundleVersion) with an OS version not
  /// below the running one. The option is ignored.
  static bool isSupportedPlm(std::uint32_t option) noexcept;

  // --- Running a program ---

  /// Runs the executable file at `path` with `args` (null: none). With a `wait` of exactly 1 the
  /// call waits for the program to end and returns its exit status, or the number of the signal
  /// that ended it. With any other value it returns 0 at once, and the program runs on by itself.
  /// Also 0 if `path` is null or not an executable file, and if the program cannot be started. An
  /// argument that is not UTF-8 is passed on as it is.
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
