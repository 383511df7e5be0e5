#include <CommonCrypto/CommonDigest.h>
#include <CoreServices/CoreServices.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <mbedtls/version.h>
#include <sys/param.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <string>

#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

#if MBEDTLS_VERSION_MAJOR >= 3
#define mbedtls_md5_starts_ret mbedtls_md5_starts
#define mbedtls_md5_update_ret mbedtls_md5_update
#define mbedtls_md5_finish_ret mbedtls_md5_finish
#endif

// Assumed: Gestalt under OS 11 and later.
OSErr Gestalt(OSType selector, SInt32* response) {
  const auto found = world().gestalt.find(selector);
  if (refused("Gestalt") || found == world().gestalt.end()) {
    *response = 12345;  // a failing call may leave anything behind
    return -5551;
  }
  *response = found->second;
  return noErr;
}

// Assumed: CommonCrypto.
int CC_MD5_Init(CC_MD5_CTX* context) {
  mbedtls_md5_init(context);
  return mbedtls_md5_starts_ret(context) == 0 ? 1 : 0;
}

// Assumed: CommonCrypto.
int CC_MD5_Update(CC_MD5_CTX* context, const void* data, CC_LONG length) {
  return mbedtls_md5_update_ret(context, static_cast<const uint8_t*>(data), length) == 0 ? 1 : 0;
}

// Assumed: CommonCrypto.
int CC_MD5_Final(unsigned char* digest, CC_MD5_CTX* context) {
  return mbedtls_md5_finish_ret(context, digest) == 0 ? 1 : 0;
}

// Assumed: CommonCrypto.
unsigned char* CC_MD5(const void* data, CC_LONG length, unsigned char* digest) {
  refused("CC_MD5");
  CC_MD5_CTX context;
  CC_MD5_Init(&context);
  CC_MD5_Update(&context, data, length);
  CC_MD5_Final(digest, &context);
  return digest;
}

// The linker sends the port's calls of these functions here; `__real_` calls the system's.
extern "C" {

void* __real_dlsym(void* handle, const char* name);

/// A system without the functions named in `World::absent`. A sanitizer calls this before it, or
/// the world, is ready. It gets the system's answer, from code that it does not instrument.
/// Assumed: Calls that a system lacks.
__attribute__((no_sanitize("address"))) void* __wrap_dlsym(void* handle, const char* name) {
  if (!isWorldReady) return __real_dlsym(handle, name);
  return world().absent.contains(name) ? nullptr : __real_dlsym(handle, name);
}

int __real_fsync(int file);

// Assumed: The full flush.
int __wrap_fsync(int file) {
  ++world().flushes;
  errno = world().flushError;
  return errno == 0 ? __real_fsync(file) : -1;
}

int __real_fcntl(int file, int command, ...);

// Assumed: The full flush. Assumed: The path of an open folder.
int __wrap_fcntl(int file, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  auto* argument = va_arg(arguments, char*);
  va_end(arguments);
  if (command == F_FULLFSYNC) {
    ++world().fullFlushes;
    const bool interrupted = world().fullFlushInterrupts > 0;
    if (interrupted) --world().fullFlushInterrupts;
    errno = interrupted ? EINTR : world().fullFlushError;
    return errno == 0 ? 0 : -1;
  }
  if (command != F_GETPATH) return __real_fcntl(file, command, argument);
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const ssize_t length = readlink(link.c_str(), argument, MAXPATHLEN - 1);
  if (refused("fcntl F_GETPATH") || length < 0) return -1;
  argument[length] = '\0';
  return 0;
}
}
