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

/// Operations without state: every call asks the platform again, nothing is cached, any thread may
/// call at any time. Results belong to the caller. Nothing is thrown, but for the range error that
/// `convertVersionStrToBiasStr` names; where memory runs out the answer is the failing one. A text
/// that is not UTF-8 counts as null.
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
  /// spills into the next field; the number saturates at the 32-bit limits.
  static std::int32_t systemVersionNum() noexcept;

  /// The bug-fix level of the OS alone, or -1.
  static std::int32_t systemBugFixVersion() noexcept;

  /// 101700 (OS 10.17.0), the fixed bound from which on the support version list counts.
  static std::int32_t supportUpperOSVersion() noexcept;

  /// The OS version in full, such as "10.15.7"; null when a part of it is unknown.
  static Text osVersion() noexcept;

  /// Compares (major, minor) with (otherMajor, otherMinor), majors first: -1 lower, 0 equal, 1
  /// higher.
  static std::ptrdiff_t compareSystemVersionNumber(std::int32_t major, std::int32_t minor,
                                                   std::int32_t otherMajor,
                                                   std::int32_t otherMinor) noexcept;

  /// The processor architecture: 1 for 68k, 2 for PowerPC, 10 for Intel, or -1 when unknown.
  static std::int32_t systemArchitecture() noexcept;

  // --- Folders and the files in them ---
  //
  // Paths are absolute. A path below a folder that cannot be determined is null. The library makes
  // none of these folders: the host does, for instance with `createDir`.

  /// The identifier of the app group whose container holds the folders: "K7MW2PL9QD.QX.common".
  static Text groupIdentifier() noexcept;

  /// The app-group container: what the system's lookup answers, null included. Only where the
  /// system offers no lookup is it "/Users/<login name>/Library/Group Containers/<identifier>".
  static Text groupContainerDirPath() noexcept;

  /// "Library/Application Support/QMR", "Library/Preferences/QMR" and "Library/Caches/QMR" in the
  /// container.
  static Text appSupportDirPath() noexcept;
  static Text prefDirPath() noexcept;
  static Text cacheDirPath() noexcept;

  /// The folder of printer logs: "PLM" in the support folder for any `flag` other than zero; for
  /// zero "/Users/Shared/Orvan Quillmere/Logs", which is there without a container too.
  static Text pliDirPath(std::uint8_t flag) noexcept;

  /// "ALM" in the support folder: application usage records.
  static Text almDirPath() noexcept;

  /// "Config" in the support folder: preferences, support version list, the library's own file.
  static Text confDirPath() noexcept;

  /// In the support folder "PlugIns" for a `flag` of exactly 1, "Frameworks" for any other value:
  /// unlike `pliDirPath`, 2 is not true here. On purpose.
  static Text WENLOLIBDirPath(std::uint8_t flag) noexcept;

  /// "Preferences/com.orvan.printing.Quillmere.TargetPrinterList.plist" and
  /// "Preferences/com.orvan.printing.Quillmere.SurveyInfo.plist" in the user's Library folder; null
  /// where the user has no such folder.
  static Text printerListPath() noexcept;
  static Text surveyInfoPath() noexcept;

  /// What these files hold; nothing when the path is null, or the file is missing, unreadable, or
  /// has no dictionary at its root. Keys are not checked.
  static std::optional<Dictionary> printerListDictionary() noexcept;
  static std::optional<Dictionary> surveyInfoDictionary() noexcept;

  /// Makes every missing level of `path` a folder with mode 0700, whatever the file-creation mask.
  /// True when something already stood at `path` (a file too; it is left as it is), or when all is
  /// made. False for null and for a failed creation; what was made until then stays.
  static bool createDir(const Text& path) noexcept;

  // --- Dates and text ---
  //
  // Dates are shown in the Gregorian calendar and the process's default time zone, as it is at that
  // date. Fields are padded with zeros to the width shown and never cut. Null for a date that the
  // calendar cannot show (one that is not finite, say).

  /// Two-digit year and month, "2403", with the day after it, "240315", for a flag of exactly 1.
  /// The year is counted from 2000: in 2100 the text begins with three digits.
  static Text calendarFormatString(Instant date, std::uint8_t isNeedDay) noexcept;

  /// "2024-03-15T09:05:07+09:00"; odd seconds of the zone's offset are dropped.
  static Text calendarWithTimeZoneFormatString(Instant date) noexcept;

  /// "2024/03/15 09:05:07".
  static Text dateFormatWithHourMinSec(Instant date) noexcept;

  /// `string` with every occurrence of `before` replaced by `after` (null: removed). The search
  /// starts again from the beginning after every replacement, so text that a replacement brings
  /// together is found too: replacing "aa" by "a" in "aaaa" gives "a".
  ///
  /// A replacement that contains the text to find never comes to an end: do not ask for it.
  ///
  /// `string` comes back as it is when it is null or empty, when `before` is null or empty, and
  /// when both texts are the same.
  static Text replaceString(Text string, const Text& before, const Text& after) noexcept;

  // --- Version numbers ---

  /// The number of a version text such as "3.1.0"; parts after the third are ignored, missing ones
  /// are 0, and a part is what its leading digits say. -1 for null and for a major of 0 or of 100
  /// and more. A minor or patch of 100 or more gives the bare major ("3.100.0" gives 3), on
  /// purpose. Saturates at the 32-bit limits.
  static std::int32_t convertVersionStrToNum(const Text& version) noexcept;

  /// "major.minor.patch"; null when the major is not 1 to 99.
  static Text convertVersionNumToStr(std::int32_t version) noexcept;

  /// The key of the support version list, "major + 1000.minor", such as "1003.1"; null when the
  /// major is not 1 to 99.
  static Text convertVersionNumToBiasStr(std::int32_t version) noexcept;

  /// The same for a version text with at least two points; null for null. With fewer points it
  /// throws std::out_of_range (or std::bad_alloc where there is no memory for that), the one
  /// operation of this library that throws.
  static Text convertVersionStrToBiasStr(const Text& version);

  /// "major.minor" of a list key: "1003.1" gives "3.1". Null for null and for a first part that is
  /// not 1000 to 1099.
  static Text convertBiasVersionStrToVerStr(const Text& bias) noexcept;

  /// "CFBundleVersion" as a number; -1 without the bundle or the key. That of the host application,
  /// "/Applications/Orvan Utilities/Quillmere/Quillmere.app", and that of the installed library,
  /// "/Library/Application Support/Orvan/Quillmere/Plugins/WENLOLIB.bundle".
  static std::int32_t moduleVersion() noexcept;
  static std::int32_t moduleVersionFromBundle() noexcept;

  /// Whether the support version list allows the library version `version` on the running OS: 1 for
  /// yes; -1 for no, and when the list, its entry or the OS version is not known.
  static std::int32_t getandcompLocalSupportVersion(std::int32_t version) noexcept;
};

}  // namespace wenlolib

#endif
