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

/* Makes a function visible to hosts. Defined here as well, so that this header needs no other. */
#define WENLOLIB_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* One entry of a printer's identity. The keys are "DeviceID", "SN", "ROMVER" and "NEWTAGTYPE". The
 * last one means yes if its text, after leading white space, at most one "+" or "-" and any zeros,
 * continues with Y, y, T, t or a digit 1 to 9. Other keys are ignored, and so is an entry with a
 * null key or value. If two entries have the same key, the later one counts. */
typedef struct WENLOLIBEntry {
  const char *key, *value;
} WENLOLIBEntry;

/* Whether application usage may be recorded now: 1 or 0. The rule is given at `isSupported` in
 * <wenlolib/WENLOLIB.h>. Only the low four bits of `option` count. */
WENLOLIB_EXPORT int WENLOLIB_isSupported(uint32_t option);

/* Whether a printer log may be recorded now: 1 or 0, by the rule of `isSupportedPlm` there.
 * `option` is ignored. */
WENLOLIB_EXPORT int WENLOLIB_isSupportedPlm(uint32_t option);

/* Records usage of the application `name`, in one file per application and month, mode 0666. Every
 * record of the month replaces it. `name` becomes part of the file's name as it is: a "/" in it
 * leads into a sub-folder.
 *
 * 0 if recording is refused (then only `option` is looked at), if `contents` or `name` is null, for
 * contents of 2 GiB or more, if memory runs out, if the system cannot tell what is in a file, and
 * if the file cannot be written. An earlier file then keeps its contents. After a failed write its
 * mode is still set to 0666, on purpose, if it is a regular file with no other name and is not
 * reached through a link.
 *
 * 1 if the file is written and also, on purpose, if no document can be made, so that no file is
 * written: a value holds markup that cannot be repaired, or a character that XML does not allow,
 * such as U+0001 or U+FFFE, which is never repaired. */
WENLOLIB_EXPORT int WENLOLIB_writeAppInfoWithContents(const char* contents, const char* name,
                                                      uint32_t option);

/* Records a printer log in a file of its own: the first free one of `name`_1 to `name`_999, mode
 * 0666. If all are taken, number 999 is replaced. Returns 0 and 1 for the same reasons as above.
 * `otherInfo` holds `otherInfoCount` entries; null means none. */
WENLOLIB_EXPORT int WENLOLIB_writePrinterLogInfoWithContents(const char* contents, const char* name,
                                                             uint32_t option,
                                                             const WENLOLIBEntry* otherInfo,
                                                             size_t otherInfoCount);

/* A buffer of this size holds every text from the function below, with its NUL. */
#define WENLOLIB_HEADER_STR_SIZE 1024

/* Makes `string` fit for a header value, which goes into a document without escaping: what a
 * printer says about itself, for example. "<", ">", "&", carriage returns, characters that XML does
 * not allow and every byte that is not UTF-8 become "_", so every XML serialiser leaves the result
 * as it is.
 *
 * Writes the result and a NUL into `buffer`, which has `size` bytes, and returns the length without
 * the NUL. The result is cut at a character: to `size` - 1 bytes, and to 1,023 at most. A null or
 * empty `string` gives an empty text. With a null `buffer` or a `size` of 0, nothing is written and
 * the result is 0. `buffer` may be `string` itself, but must not overlap it otherwise. Cannot fail;
 * allocates nothing. Any thread may call at any time, each with a buffer of its own. */
WENLOLIB_EXPORT size_t WENLOLIB_convertStrToHeaderStr(const char* string, char* buffer,
                                                      size_t size);

/* The library's version, such as "1.0.1". Never null; valid as long as the library is loaded. */
WENLOLIB_EXPORT const char* WENLOLIB_version(void);

#ifdef __cplusplus
}
#endif

#endif
