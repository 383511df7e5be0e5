/* Reading survey documents from C: examining one, and going through many as rows.
 *
 * The library is libwenlolib-receiver; it does not record. <wenlolib/Receiver.h> examines documents
 * in C++.
 *
 * Conventions
 *   - Texts end in NUL. A size is in bytes and does not count that NUL.
 *   - What a report gives is valid until it is freed; a row's cells and complaint until the next
 *     call for a row. Other texts are valid while the library is loaded.
 *   - Nothing is printed or thrown. No state is kept outside reports and rows, and no settings of
 *     the process are changed. Files are only read.
 *   - All functions may be called from any thread at the same time, but only one at a time with
 *     the same rows. A report does not change: many threads may read it.
 */
#ifndef WENLOLIB_RECEIVER_C_H
#define WENLOLIB_RECEIVER_C_H

#include <stddef.h>
#include <stdint.h>

/* Makes a function visible to programs. Defined here as well, so that this header needs no other.
 */
#define WENLOLIB_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* What the functions below answer. */
enum {
  WENLOLIB_OK = 0,
  WENLOLIB_WRONG_ARGUMENT = 1, /* a null pointer, or a number out of range */
  WENLOLIB_NO_MEMORY = 2,
  WENLOLIB_NO_THREAD = 3 /* could not start a thread */
};

/* --- One document --- */

/* What an examination found. The examined bytes are no longer needed. */
typedef struct wenlolib_report wenlolib_report;

/* Examines the `size` bytes of a document, and stores a report in `*report`, which
 * wenlolib_report_free releases. Any bytes give a report, in time and memory proportional to their
 * number. `bytes` may be null if `size` is 0. Anything but WENLOLIB_OK leaves null in `*report`. */
WENLOLIB_EXPORT int wenlolib_examine(const void* bytes, size_t size, wenlolib_report** report);

/* Null does nothing. */
WENLOLIB_EXPORT void wenlolib_report_free(wenlolib_report* report);

/* For a null report the functions return 0, null, or "" where they never return null. */

/* What has happened to the document: "none", "truncated" (its end is missing), "damaged" (its form
 * is broken), "altered" (its checksum is that of other content), "repaired" (stray markup was
 * escaped before it was stored; it can be relied on), "foreign" (a file of another kind). Never
 * null. */
WENLOLIB_EXPORT const char* wenlolib_report_fault(const wenlolib_report* report);

/* The first layer that does not hold: "none", "xml", "white_space", "layout", "cipher_marker",
 * "hexadecimal", "checksum", "contents". Never null. A document is sound if this is "none". */
WENLOLIB_EXPORT const char* wenlolib_report_layer(const wenlolib_report* report);

/* The place of the first wrong byte, from 0 on; the document's length if it is truncated; 0 if it
 * is sound or foreign. */
WENLOLIB_EXPORT size_t wenlolib_report_offset(const wenlolib_report* report);

/* The element or attribute that is concerned, such as "Date" or "SUM"; or "". Never null. */
WENLOLIB_EXPORT const char* wenlolib_report_field(const wenlolib_report* report);

/* What is wrong, in one sentence for a person; "" for a sound document. Never null. */
WENLOLIB_EXPORT const char* wenlolib_report_explanation(const wenlolib_report* report);

/* 1 if the checksum vouches for what the document says, or did before a repair; else 0: the
 * functions below then give only what was found. */
WENLOLIB_EXPORT int wenlolib_report_trusted(const wenlolib_report* report);

/* "application", "printer" or "printer_older_tag"; null if it could not be told. */
WENLOLIB_EXPORT const char* wenlolib_report_layout(const wenlolib_report* report);

/* The value of an element: "Version", "OSVersion", "Date", "Locale", "ID", and for the older tag
 * type "DeviceID", "SN" and "ROMVER". Bytes that are not UTF-8 stay as they are. Null if there is
 * no such value, and for a null `name`. `*size`, if not null, is its size, or 0. */
WENLOLIB_EXPORT const char* wenlolib_report_value(const wenlolib_report* report, const char* name,
                                                  size_t* size);

/* The checksum as it is in the document; "" if there is none. Never null. */
WENLOLIB_EXPORT const char* wenlolib_report_checksum(const wenlolib_report* report);

/* "RC4" or "XOR"; null if there is no payload. */
WENLOLIB_EXPORT const char* wenlolib_report_cipher(const wenlolib_report* report);

/* The record's contents, decrypted: any bytes, with a NUL after them. Null if there is no payload,
 * or no date, or an empty one, to decrypt it by. `*size`, if not null, is their size, or 0. */
WENLOLIB_EXPORT const char* wenlolib_report_contents(const wenlolib_report* report, size_t* size);

/* --- Many documents, as rows --- */

/* One value of a row. */
enum { WENLOLIB_NULL = 0, WENLOLIB_INTEGER = 1, WENLOLIB_TRUTH = 2, WENLOLIB_TEXT = 3 };

typedef struct wenlolib_cell {
  int type;         /* the type of its column, or WENLOLIB_NULL */
  int64_t integer;  /* of an integer; of a truth 1 or 0; else 0 */
  const char* text; /* of a text: UTF-8 without NUL characters, ends in NUL; else null */
  size_t size;      /* of a text, in bytes; else 0 */
} wenlolib_cell;

/* The columns of schema 1, in their order; man 5 wenlolib says what each of them means. A later
 * version of the library may have more. */
WENLOLIB_EXPORT size_t wenlolib_column_count(void);

/* The name of a column, such as "device_id", and its type; null and WENLOLIB_NULL for a number that
 * is too large. */
WENLOLIB_EXPORT const char* wenlolib_column_name(size_t column);
WENLOLIB_EXPORT int wenlolib_column_type(size_t column);

/* A walk through documents. */
typedef struct wenlolib_rows wenlolib_rows;

/* Begins a walk through the `count` files and folders at `paths`, in the order given, and stores
 * it in `*rows`, which wenlolib_rows_free releases. A path is bytes, as the system has it; "-" is
 * a file of this name, whose source is "./-". In folders and sub-folders *.PLM, *.ALM and archives
 * (*.tar, *.tar.gz, *.tgz, *.tar.zst) count, in the order of their names' bytes. A file given by
 * path may be an archive under any name that does not end in .PLM or .ALM.
 *
 * With `jobs` from 2 to 256, that many threads work ahead of the row asked for, and block all
 * signals; with 1 all work is done on the caller's thread. With `redact` not 0, rows lack the
 * installation identifier and the serial number, also where these stand in another value; man 5
 * wenlolib has the exceptions.
 *
 * Nothing is opened yet: what cannot be read becomes a row. Anything but WENLOLIB_OK leaves null in
 * `*rows`. */
WENLOLIB_EXPORT int wenlolib_rows_open(const char* const* paths, size_t count, int jobs, int redact,
                                       wenlolib_rows** rows);

/* The next document's row: stores a pointer to a cell for each column in `*cells`; null at the
 * end, and unless the answer is WENLOLIB_OK. After WENLOLIB_NO_MEMORY the walk is over. A
 * file that cannot be read has a row too, with the fault "unreadable"; a folder or archive without
 * documents has none. Blocks while a file is read, and with several jobs also while a later pipe is
 * opened. */
WENLOLIB_EXPORT int wenlolib_rows_next(wenlolib_rows* rows, const wenlolib_cell** cells);

/* Why the document of the last row could not be read, in words for a person; "" if it could be
 * read, before the first row and after the last. Never null. */
WENLOLIB_EXPORT const char* wenlolib_rows_complaint(const wenlolib_rows* rows);

/* Ends the walk, even in the middle: waits until its threads have finished the documents that they
 * are working on, which takes as long as a pipe that one of them waits for. Null does nothing. In a
 * process that was forked off from the one that opened the rows, they cannot be used: there the
 * call for a row answers WENLOLIB_WRONG_ARGUMENT, and this one does nothing. */
WENLOLIB_EXPORT void wenlolib_rows_free(wenlolib_rows* rows);

/* The library's version, such as "1.0.1". Never null. */
WENLOLIB_EXPORT const char* wenlolib_receiver_version(void);

#ifdef __cplusplus
}
#endif

#endif
