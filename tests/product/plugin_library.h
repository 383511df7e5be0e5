/* The library as a host in C sees it: loaded at run time, every function resolved by name. */
#ifndef WENLOLIB_TESTS_PRODUCT_PLUGIN_LIBRARY_H
#define WENLOLIB_TESTS_PRODUCT_PLUGIN_LIBRARY_H

#include "wenlolib/codec.h"
#include "wenlolib/plugin.h"

typedef struct PluginLibrary {
  void* handle;
  int (*isSupported)(uint32_t);
  int (*isSupportedPlm)(uint32_t);
  int (*writeAppInfo)(const char*, const char*, uint32_t);
  int (*writePrinterLogInfo)(const char*, const char*, uint32_t, const WENLOLIBEntry*, size_t);
  size_t (*headerText)(const char*, char*, size_t);
  const char* (*version)(void);
  int32_t (*bytesToText)(const uint8_t*, char*, int32_t, uint8_t);
  int32_t (*textToBytes)(const char*, uint8_t*, uint8_t);
  int32_t (*digest)(const char*, uint8_t*);
  int32_t (*exclusiveOr)(uint8_t*, int32_t*, const uint8_t*, int32_t, const uint8_t*);
  int32_t (*rc4)(const uint8_t*, int32_t, const uint8_t*, int32_t, uint8_t*, int32_t*);
  int32_t (*hexPrint)(const char*, const uint8_t*, int32_t);
} PluginLibrary;

/* Loads the shared object at `path` and resolves every function. Null on success, else what went
 * wrong. The text is valid until the next call of the dynamic loader. */
const char* openPlugin(const char* path, PluginLibrary* library);

/* The same with a scope: RTLD_LOCAL, which `openPlugin` uses, or RTLD_GLOBAL. */
const char* openPluginIn(const char* path, int scope, PluginLibrary* library);

/* Unloads the library. Null on success, else what went wrong. */
const char* closePlugin(PluginLibrary* library);

#endif
