/* The codec's plain functions, for C and C++.
 *
 * They do the byte work of the survey document: hexadecimal text, MD5, RC4 and a cycling XOR. The
 * names of the two hexadecimal conversions say the opposite of what they do. They are kept because
 * hosts resolve them by name.
 *
 * Conventions
 *   - Every buffer belongs to the caller. No function keeps or frees one, and none writes a
 *     terminating NUL into an output buffer.
 *   - Lengths are in bytes. A negative length counts as zero, unless a function says that it fails.
 *   - A null pointer never causes a crash: nothing is written, and the function returns its failure
 *     status, if it has one. A null buffer of length zero is not a failure.
 *   - All functions may be called from any thread, at the same time, on different buffers.
 */
#ifndef WENLOLIB_CODEC_H
#define WENLOLIB_CODEC_H

#include <stdint.h>

/* Makes a function visible to hosts. Defined here as well, so that this header needs no other. */
#define WENLOLIB_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* Bytes to hexadecimal text: writes exactly 2 * count characters to `text`, high nibble first,
 * digits and the capital letters A to F, for example 00AB7F for the bytes 0x00 0xAB 0x7F.
 * `flag` is ignored (callers pass 1). Always returns 0; with a null pointer or a count of zero or
 * less nothing is written. */
WENLOLIB_EXPORT int32_t ConvertHexToCharData(const uint8_t* source, char* text, int32_t count,
                                             uint8_t flag);

/* Text to bytes: reads the NUL-terminated `text` in pairs and writes one byte per pair to `bytes`,
 * which needs room for half the text's length, rounded up. With `radixFlag` non-zero a pair is
 * hexadecimal, in either case; with zero it is a decimal number of two digits (12 gives the byte
 * 12). Returns 0 if every pair is valid, and 1 at the first invalid pair: the bytes before it are
 * then written, and nothing after them. The last character of a text of odd length is half a pair,
 * and so invalid. Returns 1 for a null pointer; an empty text needs no `bytes`. */
WENLOLIB_EXPORT int32_t ConvertCharDataToHex(const char* text, uint8_t* bytes, uint8_t radixFlag);

/* The MD5 digest (RFC 1321) of the NUL-terminated `text`, without its NUL: 16 bytes to `digest`.
 * Always returns 0; with a null pointer nothing is written. */
WENLOLIB_EXPORT int32_t CreateDigestMD5_CC(const char* text, uint8_t* digest);

/* Writes to `destination` the first `count` bytes of `source`, byte i combined by exclusive or with
 * byte i mod 16 of `key` (16 bytes). Applied twice it gives the source back. `destination` may be
 * `source`. `unused` is neither read nor written and may be null. Always returns 0; with a null
 * pointer or a count of zero or less nothing is written. */
WENLOLIB_EXPORT int32_t DoEncryptXOR(uint8_t* destination, int32_t* unused, const uint8_t* source,
                                     int32_t count, const uint8_t* key);

/* RC4 (also known as ARCFOUR; test vectors in RFC 6229) from the first byte of its keystream:
 * writes exactly `sourceLength` bytes to `destination` and that length to `outputLength`. Applied
 * twice with the same key it gives the source back. `destination` may overlap `source` and `key` in
 * any way: both are used as they were before the call. Returns 0. Returns -1 and writes nothing,
 * not even the length, for a null pointer, a negative length, a key that is not 1 to 256 bytes
 * long, and if the system refuses the cipher. Encrypting zero bytes succeeds, even with null
 * buffers. */
WENLOLIB_EXPORT int32_t DoRC4Encrypt(const uint8_t* key, int32_t keyLength, const uint8_t* source,
                                     int32_t sourceLength, uint8_t* destination,
                                     int32_t* outputLength);

/* A debug hook that is empty on purpose: ignores its arguments, prints nothing, returns 0. */
WENLOLIB_EXPORT int32_t hexPrint(const char* label, const uint8_t* bytes, int32_t length);

#ifdef __cplusplus
}
#endif

#endif
