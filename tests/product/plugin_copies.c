/* A host that loads two copies of the plug-in at once, of two versions:
 *
 *   plugin_copies local|global FIRST VERSION SECOND VERSION
 *
 * It loads the shared object FIRST, then SECOND, then records application usage with each, under
 * the names "First" and "Second". Exit status 0 means that each answered with its own version. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "plugin_library.h"

static int useCopy(const PluginLibrary* library, const char* version, const char* name) {
  uint8_t digest[16] = "";
  int failures = 0;
  if (strcmp(library->version(), version) != 0) {
    fprintf(stderr, "%s has version %s, but answers version %s\n", name, version,
            library->version());
    ++failures;
  }
  if (library->digest("abc", digest) != 0 || digest[0] != 0x90) {
    fprintf(stderr, "%s: another digest\n", name);
    ++failures;
  }
  if (library->writeAppInfo("contents", name, 1) != 1) {
    fprintf(stderr, "%s did not record\n", name);
    ++failures;
  }
  return failures;
}

int main(int count, char** arguments) {
  PluginLibrary first, second;
  const char* problem = NULL;
  int scope, failures;
  if (count != 6) {
    fprintf(stderr, "usage: plugin_copies local|global FIRST VERSION SECOND VERSION\n");
    return 2;
  }
  scope = strcmp(arguments[1], "global") == 0 ? RTLD_GLOBAL : RTLD_LOCAL;
  problem = openPluginIn(arguments[2], scope, &first);
  if (problem == NULL) problem = openPluginIn(arguments[4], scope, &second);
  if (problem != NULL) {
    fprintf(stderr, "%s\n", problem);
    return 2;
  }
  failures = useCopy(&first, arguments[3], "First") + useCopy(&second, arguments[5], "Second");
  problem = closePlugin(&first);
  if (problem == NULL) failures += useCopy(&second, arguments[5], "Remaining");
  if (problem == NULL) problem = closePlugin(&second);
  if (problem != NULL) fprintf(stderr, "%s\n", problem);
  return failures == 0 && problem == NULL ? 0 : 1;
}
