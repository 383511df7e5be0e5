/* A program in C that is linked against the installed library. HOME is an empty folder, so no
 * record can be written. */
#include <stdio.h>
#include <string.h>
#include <wenlolib/codec.h>
#include <wenlolib/plugin.h>
#include <wenlolib/version.h>

static int failures = 0;

static void expect(int holds, const char* what) {
  if (holds) return;
  fprintf(stderr, "expected, but not true: %s\n", what);
  ++failures;
}

int main(void) {
  const WENLOLIBEntry identity[] = {{"SN", "4711"}};
  uint8_t digest[16];
  char text[33] = "";
  CreateDigestMD5_CC("message digest", digest);
  ConvertHexToCharData(digest, text, 16, 1);
  expect(strcmp(text, "F96B697D7CB7938D525A2F31AAF161D0") == 0, "the published digest");
  expect(strcmp(WENLOLIB_version(), WENLOLIB_VERSION) == 0, "the version");
  expect(WENLOLIB_isSupported(2) == 1, "mode 2 is supported without preferences");
  expect(WENLOLIB_isSupported(1) == 0, "mode 1 is not");
  expect(WENLOLIB_isSupportedPlm(0) == 0, "printer logs are not");
  expect(WENLOLIB_writeAppInfoWithContents("contents", "Consumer", 2) == 0,
         "a record without a folder is refused");
  expect(WENLOLIB_writePrinterLogInfoWithContents("contents", "Consumer", 0, identity, 1) == 0,
         "printer logs are not recorded");
  return failures == 0 ? 0 : 1;
}
