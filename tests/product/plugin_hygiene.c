/* Loads, uses and unloads the plug-in again and again, and looks at what stays behind:
 *
 *   plugin_hygiene SHARED_OBJECT HOME_FOLDER [ROUNDS]
 *
 * SHARED_OBJECT is an absolute path without links in it. HOME_FOLDER is empty; everything is made
 * in it. Exit status 0 means that nothing was found; findings go to standard error. */
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

/* Makes `path`, relative to the working folder, with all its levels. */
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
  if (file == NULL) fail(0, "preparing", "no preferences can be written");
  gmtime_r(&yesterday, &fields);
  strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%SZ", &fields);
  fprintf(file,
          "<plist version=\"1.0\"><dict><key>InstalledDate</key><date>%s</date>"
          "<key>LatestSelectedAgreement</key><true/></dict></plist>",
          date);
  if (fclose(file) != 0) fail(0, "preparing", "the preferences are not whole");
}

static void prepare(const char* home) {
  if (chdir(home) != 0) fail(0, "preparing", "no home folder");
  makeFolders(supportPath);
  if (chdir(supportPath) != 0) fail(0, "preparing", "no support folder");
  makeFolders("PLM");
  makeFolders("ALM");
  makeFolders("Config");
  writePreferences();
  snprintf(printerLog, sizeof printerLog, "%s/%s/PLM/Hygiene_1.PLM", home, supportPath);
  setenv("HOME", home, 1);
  /* Values that the library would show if it reset them to anything usual. */
  setlocale(LC_ALL, "C.UTF-8");
  umask(0137);
  signal(SIGCHLD, SIG_IGN);
  signal(SIGPIPE, SIG_IGN);
}

/* From now on both standard streams end in a file, which has to stay empty. */
static int captureOutput(void) {
  const int capture = open("output", O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  reportTo = fcntl(2, F_DUPFD_CLOEXEC, 10);
  if (capture < 0 || reportTo < 0 || dup2(capture, 1) < 0 || dup2(capture, 2) < 0) {
    fail(0, "preparing", "no output can be captured");
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
  if (!right) fail(round, step, "another answer than expected");
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
  if (unlink(printerLog) != 0) fail(round, "printer log", "it is not where it should be");
}

static void playRound(const char* path, long round, int output) {
  PluginLibrary library;
  struct stat status;
  const char* problem = openPlugin(path, &library);
  if (problem != NULL) fail(round, "loading", problem);
  checkState(round, "loading");
  if (mappingsOf(path) <= 0) fail(round, "loading", "it is not in the map");
  useCodec(&library, round);
  record(&library, round);
  problem = closePlugin(&library);
  if (problem != NULL) fail(round, "unloading", problem);
  checkState(round, "unloading");
  if (mappingsOf(path) != 0) fail(round, "unloading", "it is still in the map");
  if (fstat(output, &status) != 0 || status.st_size != 0)
    fail(round, "output", "something printed");
}

static void compareUse(const ProcessUse* early, const ProcessUse* late) {
  dprintf(reportTo,
          "after %d rounds and at the end: descriptors %ld %ld, mappings %ld %ld, heap %ld %ld, "
          "private memory %ld %ld\n",
          (int)warmUpRounds, early->descriptors, late->descriptors, early->mappings, late->mappings,
          early->heapBytes, late->heapBytes, early->residentBytes, late->residentBytes);
  if (late->descriptors != early->descriptors) fail(-1, "at the end", "other descriptors");
  if (late->mappings > early->mappings) fail(-1, "at the end", "more mappings");
  /* The C library counts the blocks that it keeps ready as used, a few thousand bytes of them, and
   * touches some pages late. The smallest block lost in every round makes several times the slack.
   */
  if (late->heapBytes > early->heapBytes + slackBytes) fail(-1, "at the end", "more of the heap");
  if (late->residentBytes > early->residentBytes + slackBytes)
    fail(-1, "at the end", "more memory");
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
  early = takeUse(); /* once in vain: what taking it allocates is there from now on */
  for (round = 1; round <= rounds; ++round) {
    playRound(arguments[1], round, output);
    if (round == warmUpRounds) early = takeUse();
  }
  late = takeUse();
  compareUse(&early, &late);
  return 0;
}
