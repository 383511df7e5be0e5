/// RC4, MD5 and SHA-256 with nothing around them: the unavoidable work.
#ifndef WENLOLIB_BENCH_BAREWORK_H
#define WENLOLIB_BENCH_BAREWORK_H

#include <benchmark/benchmark.h>
#include <mbedtls/arc4.h>
#include <mbedtls/md5.h>
#include <mbedtls/sha256.h>

#include <cstddef>
#include <cstdint>

namespace wenlolib::bench {

inline void bareMd5(const void* bytes, std::size_t length) {
  std::uint8_t digest[16];
  mbedtls_md5_ret(static_cast<const std::uint8_t*>(bytes), length, digest);
  benchmark::DoNotOptimize(digest[0]);
}

inline void bareSha256(const void* bytes, std::size_t length) {
  std::uint8_t digest[32];
  mbedtls_sha256_ret(static_cast<const std::uint8_t*>(bytes), length, digest, 0);
  benchmark::DoNotOptimize(digest[0]);
}

/// `source` may be `destination`.
inline void bareRc4(const void* source, std::uint8_t* destination, std::size_t length) {
  const std::uint8_t key[16] = {1, 2, 3};
  mbedtls_arc4_context cipher;
  mbedtls_arc4_init(&cipher);
  mbedtls_arc4_setup(&cipher, key, sizeof key);
  mbedtls_arc4_crypt(&cipher, length, static_cast<const std::uint8_t*>(source), destination);
  benchmark::DoNotOptimize(destination[0]);
}

}  // namespace wenlolib::bench

#endif
