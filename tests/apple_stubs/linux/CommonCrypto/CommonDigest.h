/* The part of CommonCrypto that the port uses, over mbedTLS. */
#ifndef WENLOLIB_STUB_COMMONDIGEST_H
#define WENLOLIB_STUB_COMMONDIGEST_H

#include <mbedtls/md5.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t CC_LONG;
typedef mbedtls_md5_context CC_MD5_CTX;
int CC_MD5_Init(CC_MD5_CTX* context);
int CC_MD5_Update(CC_MD5_CTX* context, const void* data, CC_LONG length);
int CC_MD5_Final(unsigned char* digest, CC_MD5_CTX* context);
unsigned char* CC_MD5(const void* data, CC_LONG length, unsigned char* digest);

#ifdef __cplusplus
}
#endif

#endif
