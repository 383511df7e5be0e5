/* A host in C that loads the plug-in and uses every function of it:
 *
 *   plugin_host SHARED_OBJECT CONTENTS_FILE [STACK_BYTES]
 *
 * With STACK_BYTES it does so on a thread with a stack of that size and no memory below it.
 *
 * The folders and preferences below HOME must be there when it starts. It prints what went wrong on
 * standard error. Exit status 0 means that nothing did. */
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

#include "plugin_library.h"
#include "wenlolib/version.h"

enum { hostLanguage = 1, needsNoAgreement = 2, unknownMode = 3 };

static int failures = 0;

static void expect(int holds, const char* what) {
  if (holds) return;
  fprintf(stderr, "expected, but not true: %s\n", what);
  ++failures;
}

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

static void useCodec(const PluginLibrary* library) {
  static const char expected[] = "900150983CD24FB0D6963F7D28E17F72"; /* RFC 1321: "abc" */
  uint8_t digest[16], again[16], sealed[16];
  char text[33] = "";
  int32_t length = 0;
  expect(library->digest("abc", digest) == 0, "the digest succeeds");
  expect(library->bytesToText(digest, text, 16, 1) == 0, "bytes become text");
  expect(strcmp(text, expected) == 0, "the digest of abc is the published one");
  expect(library->textToBytes(text, again, 1) == 0, "text becomes bytes");
  expect(memcmp(again, digest, 16) == 0, "the text gives back the bytes that it was made from");
  expect(library->textToBytes("zz", again, 1) == 1, "text that is not a number is refused");
  expect(library->rc4(digest, 16, digest, 16, sealed, &length) == 0, "RC4 succeeds");
  expect(length == 16, "RC4 tells its length");
  expect(library->rc4(digest, 16, sealed, 16, again, &length) == 0, "RC4 succeeds again");
  expect(memcmp(again, digest, 16) == 0, "RC4 applied twice gives the source back");
  expect(library->rc4(digest, -1, digest, 16, sealed, &length) == -1, "a bad key is refused");
  expect(library->exclusiveOr(sealed, NULL, digest, 16, digest) == 0, "exclusive or succeeds");
  expect(sealed[0] == 0 && sealed[15] == 0, "the exclusive or of a text with itself is all zeros");
  expect(library->hexPrint("label", digest, 16) == 0, "the debug hook answers 0");
}

static void refuse(const PluginLibrary* library, const char* contents) {
  expect(library->isSupported(unknownMode) == 0, "an unknown mode is not supported");
  expect(library->writeAppInfo(contents, "Refused", unknownMode) == 0, "nor recorded");
  expect(library->writeAppInfo(NULL, "Refused", needsNoAgreement) == 0, "null contents");
  expect(library->writeAppInfo(contents, NULL, needsNoAgreement) == 0, "null name");
  expect(library->writeAppInfo("\xff", "Refused", needsNoAgreement) == 0,
         "contents that are not UTF-8 are refused");
  expect(library->writePrinterLogInfo(NULL, "Refused", 0, NULL, 0) == 0,
         "null contents of a printer log are refused");
  expect(library->writePrinterLogInfo(contents, "\xc0\x80", 0, NULL, 0) == 0,
         "a name that is not UTF-8 is refused");
}

static void record(const PluginLibrary* library, const char* contents) {
  const WENLOLIBEntry older[] = {{"DeviceID", "QX 200"}, {"SN", "4711"}, {"ROMVER", "2.14"},
                                 {NULL, "ignored"},      {"SN", NULL},   {"ROMVER", "\xff"}};
  const WENLOLIBEntry newer[] = {{"NEWTAGTYPE", "YES"}};
  const WENLOLIBEntry beyond[] = {{"DeviceID", "Größe &amp; &#233;"}};
  expect(library->isSupported(hostLanguage) == 1, "application usage is supported");
  expect(library->isSupportedPlm(hostLanguage) == 1, "printer logs are supported");
  expect(library->writeAppInfo(contents, "Host", hostLanguage) == 1, "application recorded");
  expect(library->writePrinterLogInfo(contents, "Host", hostLanguage, newer, 1) == 1,
         "a newer printer is recorded");
  expect(library->writePrinterLogInfo(contents, "Host", hostLanguage, older, 6) == 1,
         "an older printer is recorded");
  expect(library->writePrinterLogInfo("", "Host", hostLanguage, NULL, 0) == 1,
         "a printer without an identity is recorded");
  expect(library->writePrinterLogInfo(contents, "Host", hostLanguage, beyond, 1) == 1,
         "a printer with an identity beyond ASCII is recorded");
}

static void makeFit(const PluginLibrary* library) {
  char text[WENLOLIB_HEADER_STR_SIZE];
  expect(
      library->headerText("<Größe\xff&", text, sizeof text) == 10 && strcmp(text, "_Größe__") == 0,
      "a text is made fit for a header value");
}

typedef struct Host {
  PluginLibrary library;
  char* contents;
} Host;

static void* use(void* pointer) {
  const Host* host = pointer;
  expect(strcmp(host->library.version(), WENLOLIB_VERSION) == 0, "the version is the headers'");
  useCodec(&host->library);
  refuse(&host->library, host->contents);
  record(&host->library, host->contents);
  makeFit(&host->library);
  return NULL;
}

static void useOnStack(Host* host, size_t bytes) {
  const size_t guard = (size_t)1 << 20;
  pthread_attr_t attributes;
  pthread_t thread;
  char* stack = mmap(NULL, guard + bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  const int ready = stack != MAP_FAILED &&
                    mprotect(stack + guard, bytes, PROT_READ | PROT_WRITE) == 0 &&
                    pthread_attr_init(&attributes) == 0 &&
                    pthread_attr_setstack(&attributes, stack + guard, bytes) == 0 &&
                    pthread_create(&thread, &attributes, use, host) == 0;
  expect(ready, "a thread with a stack of this size starts");
  if (ready) pthread_join(thread, NULL);
}

int main(int count, char** arguments) {
  Host host;
  const char* problem;
  if (count != 3 && count != 4) {
    fprintf(stderr, "usage: plugin_host SHARED_OBJECT CONTENTS_FILE [STACK_BYTES]\n");
    return 2;
  }
  host.contents = readText(arguments[2]);
  problem = host.contents == NULL ? "no contents" : openPlugin(arguments[1], &host.library);
  if (problem != NULL) {
    fprintf(stderr, "%s\n", problem);
    free(host.contents);
    return 2;
  }
  if (count == 3) {
    use(&host);
  } else {
    useOnStack(&host, strtoul(arguments[3], NULL, 10));
  }
  expect(closePlugin(&host.library) == NULL, "the plug-in unloads");
  free(host.contents);
  return failures == 0 ? 0 : 1;
}
