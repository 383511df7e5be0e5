/* The part of the Security framework that the port uses, declarations only. */
#ifndef WENLOLIB_STUB_SECURITY_H
#define WENLOLIB_STUB_SECURITY_H

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct OpaqueSecKeyRef* SecKeyRef;
typedef CFTypeRef SecTransformRef;
extern const CFTypeRef kSecAttrType;
extern const CFTypeRef kSecAttrKeyTypeRC4;
extern const CFStringRef kSecTransformInputAttributeName;
SecKeyRef SecKeyCreateFromData(CFDictionaryRef parameters, CFDataRef keyData, CFErrorRef* error);
SecTransformRef SecEncryptTransformCreate(SecKeyRef key, CFErrorRef* error);
Boolean SecTransformSetAttribute(SecTransformRef transform, CFStringRef attribute, CFTypeRef value,
                                 CFErrorRef* error);
CFTypeRef SecTransformExecute(SecTransformRef transform, CFErrorRef* error);

#ifdef __cplusplus
}
#endif

#endif
