#include "plugin_library.h"

#include <dlfcn.h>
#include <string.h>

/* A function pointer has the size of a data pointer on every system that has dlsym. */
typedef struct Binding {
  const char* name;
  void* function;
} Binding;

static const char* resolve(void* handle, const Binding* binding) {
  void* symbol = dlsym(handle, binding->name);
  if (symbol == NULL) return dlerror();
  memcpy(binding->function, &symbol, sizeof symbol);
  return NULL;
}

const char* openPluginIn(const char* path, int scope, PluginLibrary* library) {
  const Binding bindings[] = {
      {"WENLOLIB_isSupported", &library->isSupported},
      {"WENLOLIB_isSupportedPlm", &library->isSupportedPlm},
      {"WENLOLIB_writeAppInfoWithContents", &library->writeAppInfo},
      {"WENLOLIB_writePrinterLogInfoWithContents", &library->writePrinterLogInfo},
      {"WENLOLIB_convertStrToHeaderStr", &library->headerText},
      {"WENLOLIB_version", &library->version},
      {"ConvertHexToCharData", &library->bytesToText},
      {"ConvertCharDataToHex", &library->textToBytes},
      {"CreateDigestMD5_CC", &library->digest},
      {"DoEncryptXOR", &library->exclusiveOr},
      {"DoRC4Encrypt", &library->rc4},
      {"hexPrint", &library->hexPrint},
  };
  size_t i;
  library->handle = dlopen(path, RTLD_LAZY | scope); /* each function is bound at its first call */
  if (library->handle == NULL) return dlerror();
  for (i = 0; i < sizeof bindings / sizeof *bindings; ++i) {
    const char* problem = resolve(library->handle, &bindings[i]);
    if (problem != NULL) return problem;
  }
  return NULL;
}

const char* openPlugin(const char* path, PluginLibrary* library) {
  return openPluginIn(path, RTLD_LOCAL, library);
}

const char* closePlugin(PluginLibrary* library) {
  return dlclose(library->handle) == 0 ? NULL : dlerror();
}
