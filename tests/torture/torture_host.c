/* A C host for the torture. It loads the plug-in and calls each of its functions by name.
 *
 *   torture_host SHARED_OBJECT WINTER_OFFSET SUMMER_OFFSET shown|first */
#include <stdio.h>
#include <string.h>

#include "contents.h"
#include "harness.h"
#include "product/plugin_library.h"

static PluginLibrary library;

static void recordApplication(uint32_t option) {
  int yes;
  enter();
  yes = library.writeAppInfo(TORTURE_CONTENTS, "App", option);
  leave();
  answerNumber(yes);
}

static void application(void) {
  recordApplication(1);
}

static void applicationOfUser(void) {
  recordApplication(2);
}

static void recordPrinter(const WENLOLIBEntry* entries, size_t count) {
  int yes;
  enter();
  yes = library.writePrinterLogInfo(TORTURE_CONTENTS, "App", 1, entries, count);
  leave();
  answerNumber(yes);
}

static void printerOlder(void) {
  const WENLOLIBEntry entries[] = {{"DeviceID", "QX 200"}, {"SN", "4711"}, {"ROMVER", "2.14"}};
  recordPrinter(entries, 3);
}

static void printerMended(void) {
  const WENLOLIBEntry entries[] = {{"DeviceID", "QX & 200"}, {"SN", "4711"}};
  recordPrinter(entries, 2);
}

static void printerNewer(void) {
  const WENLOLIBEntry entries[] = {{"NEWTAGTYPE", "YES"}};
  recordPrinter(entries, 1);
}

static void isSupported(void) {
  int yes;
  enter();
  yes = library.isSupported(1);
  leave();
  answerNumber(yes);
}

static void isSupportedPlm(void) {
  int yes;
  enter();
  yes = library.isSupportedPlm(1);
  leave();
  answerNumber(yes);
}

static void headerText(void) {
  char buffer[WENLOLIB_HEADER_STR_SIZE];
  enter();
  library.headerText("a<b>&c", buffer, sizeof buffer);
  leave();
  answer(buffer);
}

static void version(void) {
  const char* text;
  enter();
  text = library.version();
  leave();
  answer(text);
}

/* --- The codec: the status and what was written, as text --- */

static void answerBytes(int32_t status, const uint8_t* bytes, int count) {
  char text[128];
  int i, used = snprintf(text, sizeof text, "%d ", (int)status);
  for (i = 0; i < count; ++i)
    used += snprintf(text + used, sizeof text - (size_t)used, "%02X", bytes[i]);
  answer(text);
}

static const uint8_t sixteen[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

static void bytesToText(void) {
  char text[32] = "";
  int32_t status;
  enter();
  status = library.bytesToText(sixteen, text, 16, 1);
  leave();
  answerBytes(status, (const uint8_t*)text, 32);
}

static void textToBytes(void) {
  uint8_t bytes[16] = {0};
  int32_t status;
  enter();
  status = library.textToBytes("900150983CD24FB0D6963F7D28E17F72", bytes, 1);
  leave();
  answerBytes(status, bytes, 16);
}

static void digest(void) {
  uint8_t bytes[16] = {0};
  int32_t status;
  enter();
  status = library.digest("abc", bytes);
  leave();
  answerBytes(status, bytes, 16);
}

static void exclusiveOr(void) {
  uint8_t bytes[16] = {0};
  int32_t status;
  enter();
  status = library.exclusiveOr(bytes, NULL, (const uint8_t*)"sixteen letters!", 16, sixteen);
  leave();
  answerBytes(status, bytes, 16);
}

static void rc4(void) {
  uint8_t bytes[16] = {0};
  int32_t status, length = 0;
  enter();
  status = library.rc4(sixteen, 16, (const uint8_t*)"sixteen letters!", 16, bytes, &length);
  leave();
  answerBytes(status, bytes, 16);
}

static void printDebug(void) {
  int32_t status;
  enter();
  status = library.hexPrint("label", sixteen, 16);
  leave();
  answerNumber(status);
}

/* Each name begins with the function that is called. */
static const TortureOperation operations[] = {
    {"WENLOLIB_writeAppInfoWithContents", application},
    {"WENLOLIB_writeAppInfoWithContents-user", applicationOfUser},
    {"WENLOLIB_writePrinterLogInfoWithContents-older", printerOlder},
    {"WENLOLIB_writePrinterLogInfoWithContents-mended", printerMended},
    {"WENLOLIB_writePrinterLogInfoWithContents-newer", printerNewer},
    {"WENLOLIB_isSupported", isSupported},
    {"WENLOLIB_isSupportedPlm", isSupportedPlm},
    {"WENLOLIB_convertStrToHeaderStr", headerText},
    {"WENLOLIB_version", version},
    {"ConvertHexToCharData", bytesToText},
    {"ConvertCharDataToHex", textToBytes},
    {"CreateDigestMD5_CC", digest},
    {"DoEncryptXOR", exclusiveOr},
    {"DoRC4Encrypt", rc4},
    {"hexPrint", printDebug},
};

int main(int count, char** arguments) {
  const char* problem;
  if (count != 5) {
    fprintf(stderr, "usage: torture_host SHARED_OBJECT WINTER_OFFSET SUMMER_OFFSET shown|first\n");
    return 2;
  }
  problem = openPlugin(arguments[1], &library);
  if (problem != NULL) {
    fprintf(stderr, "%s\n", problem);
    return 2;
  }
  return serve(operations, sizeof operations / sizeof *operations, arguments + 2);
}
