/* The part of Core Services that the port uses, declarations only. */
#ifndef WENLOLIB_STUB_CORESERVICES_H
#define WENLOLIB_STUB_CORESERVICES_H

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifndef __APPLE__
typedef int16_t OSErr;
typedef uint32_t OSType;
enum { noErr = 0 };
#endif
OSErr Gestalt(OSType selector, SInt32* response);

#ifdef __cplusplus
}
#endif

#endif
