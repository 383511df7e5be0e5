/* A host in C that loads the library at run time and records three kinds of document:
 *
 *   host BUNDLE APPLICATION_DATA PRINTER_DATA
 *
 * At build time it needs only the library's header. */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>

#include <wenlolib/plugin.h>

typedef int (*WriteApplication)(const char*, const char*, uint32_t);
typedef int (*WritePrinterLog)(const char*, const char*, uint32_t, const WENLOLIBEntry*, size_t);
typedef const char* (*Version)(void);

/* Mode 1, in the option's low four bits: application usage needs the user's agreement, and
 * documents carry the language that the user last chose in the host. */
enum { hostLanguage = 1 };

/* The whole of a text file, for the caller to free; null if it cannot be read. */
static char* readText(const char* path) {
  FILE* file = fopen(path, "rb");
  char* text = NULL;
  long length = -1;
  if (file == NULL) return NULL;
  if (fseek(file, 0, SEEK_END) == 0) length = ftell(file);
  if (length >= 0 && fseek(file, 0, SEEK_SET) == 0) text = malloc((size_t)length + 1);
  if (text != NULL) text[fread(text, 1, (size_t)length, file)] = '\0';
  fclose(file);
  return text;
}

static int report(const char* what, int recorded) {
  printf("  %-34s %s\n", what, recorded ? "recorded" : "refused");
  return recorded;
}

int main(int count, char** arguments) {
  const WENLOLIBEntry olderPrinter[] = {{"DeviceID", "MFG:Orvan;MDL:QX 200;CLS:PRINTER;"},
                                        {"SN", "QX200-0004711"},
                                        {"ROMVER", "2.14"}};
  const WENLOLIBEntry newerPrinter[] = {{"NEWTAGTYPE", "YES"}};
  char path[4096];
  if (count != 4) {
    fprintf(stderr, "usage: host BUNDLE APPLICATION_DATA PRINTER_DATA\n");
    return 2;
  }
  snprintf(path, sizeof path, "%s/Contents/Linux/WENLOLIB", arguments[1]);
  void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  Version version = NULL;
  WriteApplication writeApplication = NULL;
  WritePrinterLog writePrinterLog = NULL;
  *(void**)&version = dlsym(library, "WENLOLIB_version");
  *(void**)&writeApplication = dlsym(library, "WENLOLIB_writeAppInfoWithContents");
  *(void**)&writePrinterLog = dlsym(library, "WENLOLIB_writePrinterLogInfoWithContents");
  char* usage = readText(arguments[2]);
  char* log = readText(arguments[3]);
  int all = version != NULL && writeApplication != NULL && writePrinterLog != NULL &&
            usage != NULL && log != NULL;
  if (all) {
    printf("Loaded WENLOLIB %s\n", version());
    all &= report("application usage, Photo Album",
                  writeApplication(usage, "PhotoAlbum", hostLanguage));
    all &= report("printer log, newer tag type",
                  writePrinterLog(log, "QX500", hostLanguage, newerPrinter, 1));
    all &= report("printer log, older tag type",
                  writePrinterLog(log, "QX200", hostLanguage, olderPrinter, 3));
  } else {
    fprintf(stderr, "A data file cannot be read, or the library lacks a function.\n");
  }
  free(usage);
  free(log);
  dlclose(library);
  return all ? 0 : 1;
}
