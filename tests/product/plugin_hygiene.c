/* Loads, uses and unloads the plug-in again and again, and checks what it leaves in the process:
 *
 *   plugin_hygiene SHARED_OBJECT HOME_FOLDER [ROUNDS]
 *
 * SHARED_OBJECT is an absolute path without links in it. HOME_FOLDER is an empty folder, in which
 * everything is made. Faults are printed on standard error. Exit status 0 means that there were
 * none. */
#define _GNU_SOURCE
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "plugin_library.h"
#include "process_state.h"

enum { warmUpRounds = 100, usualRounds = 10000, slackBytes = 65536 };

static const char supportPath[] =
    "Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR";
static const char preferenceName[] = "Config/com.orvan.printing.Quillmere.Pref.plist";

static int reportTo = 2; /* standard error, as it was at the start */
static char printerLog[PATH_MAX];

static void fail(long round, const char* step, const char* what) {
  dprintf(reportTo, "round %ld, %s: %s\n", round, step, what);
  exit(1);
}

/* Makes the folder `path`, relative to the working folder, and all folders above it. */
static void makeFolders(const char* path) {
  char level[PATH_MAX] = "";
  size_t i;
  for (i = 0; path[i] != '\0'; ++i) {
    level[i] = path[i];
    if (path[i + 1] == '/' || path[i + 1] == '\0') mkdir(level, 0700);
  }
}

static void writePreferences(void) {
  const time_t yesterday = time(NULL) - 86400;
  struct tm fields;
  char date[32];
  FILE* file = fopen(preferenceName, "w");
  if (file == NULL) fail(0, "preparing", "cannot write the preferences");
  gmtime_r(&yesterday, &fields);
  strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%SZ", &fields);
  fprintf(file,
          "<plist version=\"1.0\"><dict><key>InstalledDate</key><date>%s</date>"
          "<key>LatestSelectedAgreement</key><true/></dict></plist>",
          date);
  if (fclose(file) != 0) fail(0, "preparing", "cannot write all of the preferences");
}

static void prepare(const char* home) {
  if (chdir(home) != 0) fail(0, "preparing", "cannot enter the home folder");
  makeFolders(supportPath);
  if (chdir(supportPath) != 0) fail(0, "preparing", "cannot enter the support folder");
  makeFolders("PLM");
  makeFolders("ALM");
  makeFolders("Config");
  writePreferences();
  snprintf(printerLog, sizeof printerLog, "%s/%s/PLM/Hygiene_1.PLM", home, supportPath);
  setenv("HOME", home, 1);
  /* Unusual values: it is noticed if the library resets them to the usual ones. */
  setlocale(LC_ALL, "C.UTF-8");
  umask(0137);
  signal(SIGCHLD, SIG_IGN);
  signal(SIGPIPE, SIG_IGN);
}

/* From now on both standard streams go to a file, which must stay empty. */
static int captureOutput(void) {
  const int capture = open("output", O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  reportTo = fcntl(2, F_DUPFD_CLOEXEC, 10);
  if (capture < 0 || reportTo < 0 || dup2(capture, 1) < 0 || dup2(capture, 2) < 0) {
    fail(0, "preparing", "cannot capture the output");
  }
  return capture;
}

static void checkState(long round, const char* step) {
  static ProcessState before, after;
  static int known = 0;
  takeState(&after);
  if (known) {
    const char* change = changeOf(&before, &after);
    if (change != NULL) fail(round, step, change);
  }
  before = after;
  known = 1;
}

static void checkAnswer(long round, const char* step, int right) {
  if (!right) fail(round, step, "the answer is not the expected one");
  checkState(round, step);
}

static void useCodec(const PluginLibrary* library, long round) {
  uint8_t digest[16] = "", other[16] = "";
  char text[33] = "";
  int32_t length = 0;
  checkAnswer(round, "digest", library->digest("abc", digest) == 0 && digest[0] == 0x90);
  checkAnswer(round, "bytes to text", library->bytesToText(digest, text, 16, 1) == 0);
  checkAnswer(round, "text to bytes", library->textToBytes(text, other, 1) == 0);
  checkAnswer(round, "rc4", library->rc4(digest, 16, digest, 16, other, &length) == 0);
  checkAnswer(round, "xor", library->exclusiveOr(other, NULL, other, 16, digest) == 0);
  checkAnswer(round, "hexPrint", library->hexPrint("label", digest, 16) == 0);
}

static void record(const PluginLibrary* library, long round) {
  const WENLOLIBEntry identity[] = {{"SN", "4711"}, {"NEWTAGTYPE", round % 2 ? "1" : "0"}};
  checkAnswer(round, "version", library->version()[0] == '1');
  checkAnswer(round, "isSupported", library->isSupported(1) == 1);
  checkAnswer(round, "isSupportedPlm", library->isSupportedPlm(0) == 1);
  checkAnswer(round, "refused", library->writeAppInfo("contents", "Hygiene", 3) == 0);
  checkAnswer(round, "application", library->writeAppInfo("contents", "Hygiene", 0) == 1);
  checkAnswer(round, "printer log",
              library->writePrinterLogInfo("contents", "Hygiene", 0, identity, 2) == 1);
  if (unlink(printerLog) != 0) fail(round, "printer log", "the file is not where it should be");
}

static void playRound(const char* path, long round, int output) {
  PluginLibrary library;
  struct stat status;
  const char* problem = openPlugin(path, &library);
  if (problem != NULL) fail(round, "loading", problem);
  checkState(round, "loading");
  if (mappingsOf(path) <= 0) fail(round, "loading", "the plug-in is not in the memory map");
  useCodec(&library, round);
  record(&library, round);
  problem = closePlugin(&library);
  if (problem != NULL) fail(round, "unloading", problem);
  checkState(round, "unloading");
  if (mappingsOf(path) != 0) fail(round, "unloading", "the plug-in is still in the memory map");
  if (fstat(output, &status) != 0 || status.st_size != 0)
    fail(round, "output", "something printed");
}

static void compareUse(const ProcessUse* early, const ProcessUse* late) {
  dprintf(reportTo,
          "after %d rounds and at the end: descriptors %ld %ld, mappings %ld %ld, heap %ld %ld, "
          "private memory %ld %ld\n",
          (int)warmUpRounds, early->descriptors, late->descriptors, early->mappings, late->mappings,
          early->heapBytes, late->heapBytes, early->residentBytes, late->residentBytes);
  if (late->descriptors != early->descriptors)
    fail(-1, "at the end", "the number of descriptors has changed");
  if (late->mappings > early->mappings) fail(-1, "at the end", "there are more mappings");
  /* The C library counts the free blocks that it keeps ready, a few thousand bytes, as used, and
   * touches some pages late. Losing even the smallest block in every round takes several times the
   * slack. */
  if (late->heapBytes > early->heapBytes + slackBytes)
    fail(-1, "at the end", "more of the heap is in use");
  if (late->residentBytes > early->residentBytes + slackBytes)
    fail(-1, "at the end", "more memory is in use");
}

int main(int count, char** arguments) {
  const long rounds = count > 3 ? strtol(arguments[3], NULL, 10) : usualRounds;
  ProcessUse early, late;
  long round;
  int output;
  if (count < 3 || arguments[1][0] != '/' || arguments[2][0] != '/' || rounds <= warmUpRounds) {
    fprintf(stderr, "usage: plugin_hygiene SHARED_OBJECT HOME_FOLDER [ROUNDS]\n");
    return 2;
  }
  prepare(arguments[2]);
  output = captureOutput();
  checkState(0, "preparing");
  early = takeUse(); /* first once without use, since measuring allocates memory itself */
  for (round = 1; round <= rounds; ++round) {
    playRound(arguments[1], round, output);
    if (round == warmUpRounds) early = takeUse();
  }
  late = takeUse();
  compareUse(&early, &late);
  return 0;
}
