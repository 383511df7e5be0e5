/* The C functions that a host resolves after it has loaded the library at run time.
 *
 * Conventions
 *   - Texts are NUL-terminated UTF-8. A text that is not UTF-8 counts as null.
 *   - Answers are 1 for yes and 0 for no. Nothing is printed, raised or kept between calls.
 *   - All functions may be called from any thread, at the same time. They are synchronous, and keep
 *     no pointer that they are given.
 */
#ifndef WENLOLIB_PLUGIN_H
#define WENLOLIB_PLUGIN_H

#include <stddef.h>
#include <stdint.h>

/* Visible to hosts. Said here as well, so that this header needs no other one. */
#define WENLOLIB_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* One entry of a printer's identity: "DeviceID", "SN", "ROMVER" (texts), "NEWTAGTYPE". That one
 * means yes where its text, after leading white space, then at most one "+" or "-", then zeros,
 * goes on with Y, y, T, t or a digit 1 to 9. Other keys are ignored, and so is an entry with a null
 * key or value. Of two entries with one key the last counts. */
typedef struct WENLOLIBEntry {
  const char *key, *value;
} WENLOLIBEntry;

/* Whether application usage may be recorded now: 1 or 0. The rule stands with `isSupported` in
 * <wenlolib/WENLOLIB.h>. Of `option` the low four bits count. */
WENLOLIB_EXPORT int WENLOLIB_isSupported(uint32_t option);

/* Whether a printer log may be recorded now: 1 or 0, by the rule of `isSupportedPlm` there.
 * `option` is ignored. */
WENLOLIB_EXPORT int WENLOLIB_isSupportedPlm(uint32_t option);

/* Records application usage of the application `name`, in one file an application and month, with
 * mode 0666, which every record of the month replaces. `name` becomes part of the file's name as it
 * is: a "/" in it leads into a sub-folder.
 *
 * 0 when recording is refused (then none of the arguments but `option` is looked at), when
 * `contents` or `name` is null, for contents of 2 GiB and more, when memory runs out or the system
 * cannot say what is in a file, and when the file could not be written. An earlier file then holds
 * what it held; after a failed write its mode is opened to 0666 all the same, where it is a regular
 * file with no other name and not reached through a link.
 *
 * 1 when the file is written, and also, on purpose, when the record has come to no document and so
 * to no file: a value does that which holds markup that cannot be mended, or a character that XML
 * does not have, such as U+0001 or U+FFFE, which is never mended. */
WENLOLIB_EXPORT int WENLOLIB_writeAppInfoWithContents(const char* contents, const char* name,
                                                      uint32_t option);

/* Records a printer log, with the same answers for the same reasons, in a file of its own: the
 * first free of `name`_1 to `name`_999, mode 0666. With all of them taken the last is replaced.
 * `otherInfo` holds `otherInfoCount` entries; null means none. */
WENLOLIB_EXPORT int WENLOLIB_writePrinterLogInfoWithContents(const char* contents, const char* name,
                                                             uint32_t option,
                                                             const WENLOLIBEntry* otherInfo,
                                                             size_t otherInfoCount);

/* The library's version, such as "1.0.0". Never null; good for as long as the library is loaded. */
WENLOLIB_EXPORT const char* WENLOLIB_version(void);

#ifdef __cplusplus
}
#endif

#endif
