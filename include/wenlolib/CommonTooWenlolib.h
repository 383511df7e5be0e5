/// The common toolkit: system, folders, dates, text and version numbers, for the library and hosts.
#ifndef WENLOLIB_COMMONTOOWENLOLIB_H
#define WENLOLIB_COMMONTOOWENLOLIB_H

#include <cstddef>
#include <cstdint>
#include <optional>

#include "Export.h"
#include "Instant.h"
#include "Text.h"
#include "Value.h"

namespace wenlolib {

/// Operations without state: every call asks the platform again and nothing is cached. Any thread
/// may call at any time. Results belong to the caller. Only `convertVersionStrToBiasStr` can throw.
/// If memory runs out, an operation returns what it returns on failure. A text that is not UTF-8
/// counts as null.
///
/// Version numbers are major * 10000 + minor * 100 + patch (or bug-fix) as a signed 32-bit integer:
/// 10.9.5 is 100905. -1 means unknown or invalid. OS versions and library versions share the form
/// and compare as plain integers.
class WENLOLIB_EXPORT CommonTooWenlolib {
 public:
  CommonTooWenlolib() = delete;

  // --- The system ---

  /// The OS version without its bug-fix level, such as "10.15"; null when it is unknown.
  static Text systemVersion() noexcept;

  /// The OS version number; -1 when a part of it is unknown. A minor or bug-fix part of 100 or more
  /// spills into the next higher field; the number saturates at the 32-bit limits.
  static std::int32_t systemVersionNum() noexcept;

  /// The bug-fix level of the OS alone, or -1.
  static std::int32_t systemBugFixVersion() noexcept;

  /// 101700 (OS 10.17.0), a constant. From this OS version on, the support version list applies.
  static std::int32_t supportUpperOSVersion() noexcept;

  /// The OS version in full, such as "10.15.7"; null when a part of it is unknown.
  static Text osVersion() noexcept;

  /// Compares (major, minor) with (otherMajor, otherMinor), majors first: -1 if lower, 0 if equal,
  /// 1 if higher.
  static std::ptrdiff_t compareSystemVersionNumber(std::int32_t major, std::int32_t minor,
                                                   std::int32_t otherMajor,
                                                   std::int32_t otherMinor) noexcept;

  /// The processor architecture: 1 for 68k, 2 for PowerPC, 10 for Intel, or -1 when unknown.
  static std::int32_t systemArchitecture() noexcept;

  // --- Folders and the files in them ---
  //
  // Paths are absolute. A path is null if a folder that it lies in cannot be determined. The
  // library creates none of these folders: the host does, for example with `createDir`.

  /// The identifier of the app group whose container holds the folders: "K7MW2PL9QD.QX.common".
  static Text groupIdentifier() noexcept;

  /// The app-group container, as the system's lookup returns it, null included. If the system
  /// offers no lookup, it is "/Users/<login name>/Library/Group Containers/<identifier>". Linux's
  /// lookup returns the same folder below the home folder.
  static Text groupContainerDirPath() noexcept;

  /// "Library/Application Support/QMR", "Library/Preferences/QMR" and "Library/Caches/QMR" in the
  /// container.
  static Text appSupportDirPath() noexcept;
  static Text prefDirPath() noexcept;
  static Text cacheDirPath() noexcept;

  /// The folder of printer logs. For any `flag` other than zero, "PLM" in the support folder; for
  /// zero, "/Users/Shared/Orvan Quillmere/Logs", which needs no container.
  static Text pliDirPath(std::uint8_t flag) noexcept;

  /// "ALM" in the support folder: application usage records.
  static Text almDirPath() noexcept;

  /// "Config" in the support folder: the preference file, the support version list and the
  /// library's configuration file.
  static Text confDirPath() noexcept;

  /// For a `flag` of exactly 1, "PlugIns" in the support folder; for any other value, "Frameworks"
  /// there. On purpose, 2 does not count as true here, unlike in `pliDirPath`.
  static Text WENLOLIBDirPath(std::uint8_t flag) noexcept;

  /// "Preferences/com.orvan.printing.Quillmere.TargetPrinterList.plist" and
  /// "Preferences/com.orvan.printing.Quillmere.SurveyInfo.plist" in the user's Library folder; null
  /// if the user has no such folder.
  static Text printerListPath() noexcept;
  static Text surveyInfoPath() noexcept;

  /// The contents of these files. Nothing if the path is null, if the file is missing or
  /// unreadable, or if its root is not a dictionary. Keys are not checked.
  static std::optional<Dictionary> printerListDictionary() noexcept;
  static std::optional<Dictionary> surveyInfoDictionary() noexcept;

  /// Creates every missing level of `path` as a folder with mode 0700, whatever the file-creation
  /// mask. True if something already exists at `path` (even a file; it is left as it is) or if
  /// every level was created. False for null and if a level cannot be created; the levels created
  /// before it stay.
  static bool createDir(const Text& path) noexcept;

  // --- Dates and text ---
  //
  // Dates are shown in the Gregorian calendar and the process's default time zone, with the offset
  // in force at that date. Fields are padded with zeros to the width shown and never cut. Null for
  // a date that the calendar cannot show (one that is not finite, for example).

  /// Two-digit year and month, such as "2403"; for a flag of exactly 1, followed by the day, such
  /// as "240315". The year is counted from 2000, so from 2100 on the text begins with three digits.
  static Text calendarFormatString(Instant date, std::uint8_t isNeedDay) noexcept;

  /// "2024-03-15T09:05:07+09:00"; any seconds in the zone's offset are dropped.
  static Text calendarWithTimeZoneFormatString(Instant date) noexcept;

  /// "2024/03/15 09:05:07".
  static Text dateFormatWithHourMinSec(Instant date) noexcept;

  /// `string` with every occurrence of `before` replaced by `after` (null: removed). The search
  /// starts again from the beginning after every replacement, so text that a replacement brings
  /// together is found too: replacing "aa" with "a" in "aaaa" gives "a".
  ///
  /// Do not pass an `after` that contains `before` and more: the replacing would never end.
  ///
  /// `string` is returned unchanged if it is null or empty, if `before` is null or empty, and if
  /// `before` and `after` are the same.
  static Text replaceString(Text string, const Text& before, const Text& after) noexcept;

  /// `string` made fit for a header value, which goes into a document without escaping: what a
  /// printer says about itself, for example. "<", ">", "&", carriage returns, characters that XML
  /// does not allow and every byte that is not UTF-8 become "_". The result is cut at a character
  /// to at most 1,023 bytes, so every XML serialiser leaves it as it is. Empty for an empty text;
  /// null for null alone.
  static Text convertStrToHeaderStr(const Text& string) noexcept;

  // --- Version numbers ---

  /// The number of a version text such as "3.1.0". Only the leading digits of a part count, a
  /// missing part is 0, and parts after the third are ignored. -1 for null and for a major of 0, or
  /// of 100 or more. A minor or patch of 100 or more gives the bare major ("3.100.0" gives 3), on
  /// purpose. Saturates at the 32-bit limits.
  static std::int32_t convertVersionStrToNum(const Text& version) noexcept;

  /// "major.minor.patch"; null if the major is not 1 to 99.
  static Text convertVersionNumToStr(std::int32_t version) noexcept;

  /// The key of the support version list: (major + 1000), a point, minor, such as "1003.1"; null if
  /// the major is not 1 to 99.
  static Text convertVersionNumToBiasStr(std::int32_t version) noexcept;

  /// The same for a version text, which must have at least two points; null for null. With fewer
  /// points it throws std::out_of_range, or std::bad_alloc if there is no memory for that. No other
  /// operation of this class throws.
  static Text convertVersionStrToBiasStr(const Text& version);

  /// "major.minor" of a list key: "1003.1" gives "3.1". Null for null and for a first part that is
  /// not 1000 to 1099.
  static Text convertBiasVersionStrToVerStr(const Text& bias) noexcept;

  /// "CFBundleVersion" of the host application as a number; -1 if the bundle or the key is missing.
  /// The bundle is "/Applications/Orvan Utilities/Quillmere/Quillmere.app".
  static std::int32_t moduleVersion() noexcept;

  /// The same for the installed library. The bundle is
  /// "/Library/Application Support/Orvan/Quillmere/Plugins/WENLOLIB.bundle".
  static std::int32_t moduleVersionFromBundle() noexcept;

  /// Whether the support version list allows the library version `version` on the running OS: 1 for
  /// yes; -1 for no, and also if the list, its entry or the OS version is not known.
  static std::int32_t getandcompLocalSupportVersion(std::int32_t version) noexcept;
};

}  // namespace wenlolib

#endif
