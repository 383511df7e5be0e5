#define _GNU_SOURCE
#include "harness.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include "product/process_state.h"
#include "torture_world.h"
#include "tracer.h"

enum { mostDescriptors = 64 };

typedef struct Request {
  char operation[64], fault[32];
  long index;
  int error, onwards, without, seconds;
} Request;

/* What the child reports, in memory that it shares with the server. */
typedef struct Observation {
  int left;
  int answered;
  volatile int inside;
  char answer[8192];
  char change[128];
  AllocationFaults allocations;
} Observation;

static Observation* observation;
static Request request;
static ProcessState before, after;
static int openBefore[mostDescriptors];
static long winterOffset, summerOffset;
static rlim_t usualLimit;
static int printed; /* replaces the child's standard output and standard error */
static volatile int late;

static int faultIs(const char* name) {
  return strcmp(request.fault, name) == 0;
}

static int isTraced(void) {
  return request.without != 0 || faultIs("kill") || faultIs("error") || faultIs("helper");
}

static void limitDescriptors(rlim_t most) {
  struct rlimit limit;
  getrlimit(RLIMIT_NOFILE, &limit);
  usualLimit = limit.rlim_cur;
  limit.rlim_cur = most;
  setrlimit(RLIMIT_NOFILE, &limit);
}

static int isOpen(int number) {
  return fcntl(number, F_GETFD) >= 0;
}

void enter(void) {
  int number;
  takeState(&before);
  for (number = 0; number < mostDescriptors; ++number) openBefore[number] = isOpen(number);
  if (faultIs("descriptors")) limitDescriptors((rlim_t)request.index);
  torture_watch(&observation->inside);
  if (faultIs("later")) torture_other_bytes();
  if (faultIs("allocation")) observation->allocations.failing = request.index;
  observation->allocations.onwards = request.onwards;
  torture_arm(&observation->allocations);
  if (isTraced()) {
    traceMe();
    close(enteringMark);
  }
}

/* --- Sabotages: ways to disturb the host, to prove that each is noticed. --- */

static void waitForEver(void) {
  for (;;) pause();
}

static void blockOneSignal(void) {
  sigset_t one;
  sigemptyset(&one);
  sigaddset(&one, SIGUSR1);
  sigprocmask(SIG_BLOCK, &one, NULL);
}

static void sabotage(void) {
  if (faultIs("!crash")) raise(SIGSEGV);
  if (faultIs("!exit")) _exit(0);
  if (faultIs("!hang")) waitForEver();
  if (faultIs("!mask")) umask(0);
  if (faultIs("!locale")) setlocale(LC_ALL, "C.UTF-8");
  if (faultIs("!folder") && chdir("/") != 0) _exit(3);
  if (faultIs("!handler")) signal(SIGPIPE, SIG_IGN);
  if (faultIs("!signals")) blockOneSignal();
  if (faultIs("!environment")) setenv("TORTURED", "yes", 1);
  if (faultIs("!descriptor") && dup(0) < 0) _exit(3);
  if (faultIs("!cancellation")) pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, NULL);
  if (faultIs("!child") && fork() == 0) _exit(0);
  if (faultIs("!print") && write(STDOUT_FILENO, "!", 1) != 1) _exit(3);
  if (faultIs("!zone")) {
    setenv("TZ", "UTC", 1);
    tzset();
  }
}

/* --- What a host would notice afterwards --- */

static void changed(const char* what) {
  if (observation->change[0] != '\0') return;
  strncpy(observation->change, what, sizeof observation->change - 1);
}

static void lookAtDescriptors(void) {
  char text[64];
  int number;
  for (number = 0; number < mostDescriptors; ++number) {
    if (isOpen(number) == openBefore[number]) continue;
    snprintf(text, sizeof text, "descriptor %d is %s", number,
             openBefore[number] ? "closed" : "left open");
    changed(text);
  }
}

static long offsetAt(time_t moment) {
  struct tm fields;
  return localtime_r(&moment, &fields) == NULL ? -1 : fields.tm_gmtoff;
}

static void lookAtZone(void) {
  const time_t winter = 1768471200, summer = 1784109600; /* the 15th of January and of July 2026 */
  if (offsetAt(winter) != winterOffset || offsetAt(summer) != summerOffset)
    changed("the time zone");
}

static void lookAtThread(void) {
  int state = -1;
  pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &state);
  if (state != PTHREAD_CANCEL_ENABLE) changed("the cancellation state");
  if (waitpid(-1, NULL, WNOHANG | __WALL) != -1 || errno != ECHILD) changed("a child is left");
}

void leave(void) {
  const char* change;
  torture_disarm();
  torture_watch(NULL);
  if (isTraced()) close(leavingMark);
  if (faultIs("descriptors")) limitDescriptors(usualLimit);
  sabotage();
  observation->left = 1;
  takeState(&after);
  change = changeOf(&before, &after);
  if (change != NULL) changed(change);
  lookAtDescriptors();
  lookAtZone();
  lookAtThread();
}

void answer(const char* text) {
  observation->answered = text != NULL;
  if (text != NULL) strncpy(observation->answer, text, sizeof observation->answer - 1);
}

void answerNumber(long number) {
  char text[32];
  snprintf(text, sizeof text, "%ld", number);
  answer(text);
}

/* --- The server --- */

static void perform(const TortureOperation* operation) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(printed, STDOUT_FILENO);
  dup2(printed, STDERR_FILENO);
  operation->run();
  _exit(0);
}

static void onAlarm(int signal) {
  (void)signal;
  late = 1;
}

static void startClock(void) {
  struct sigaction action;
  memset(&action, 0, sizeof action);
  action.sa_handler = onAlarm; /* without SA_RESTART: calls are interrupted */
  sigaction(SIGALRM, &action, NULL);
  late = 0;
  alarm((unsigned)request.seconds);
}

static int waitPlainly(pid_t child) {
  int status = -1;
  while (waitpid(child, &status, 0) < 0) {
    if (!late) continue;
    kill(child, SIGKILL);
    waitpid(child, NULL, 0);
    return -1;
  }
  return status;
}

static TracePlan plan(void) {
  TracePlan result = {noFault,         request.index,   request.error,
                      request.onwards, request.without, &observation->inside};
  if (faultIs("kill")) result.fault = killBefore;
  if (faultIs("error")) result.fault = errorAt;
  if (faultIs("helper")) result.fault = errorInHelper;
  return result;
}

static void printPlaces(const AllocationFaults* faults) {
  int i;
  for (i = 0; i < faults->depth; ++i) {
    const char* const address = faults->places[i];
    Dl_info information;
    if (dladdr(address, &information) == 0) continue;
    printf("%s[\"%s\",%ld]", i == 0 ? "" : ",", information.dli_fname,
           (long)(address - (const char*)information.dli_fbase));
  }
}

static void printHexadecimal(const char* text) {
  for (; *text != '\0'; ++text) printf("%02x", (unsigned char)*text);
}

static void report(int status, const Trace* trace) {
  const Observation* const seen = observation;
  const off_t length = lseek(printed, 0, SEEK_END);
  char text[128];
  printf("{\"late\":%d,\"signal\":%d,\"exit\":%d,\"left\":%d,\"answered\":%d,\"answer\":\"",
         status == -1, status != -1 && WIFSIGNALED(status) ? WTERMSIG(status) : 0,
         status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : 0, seen->left, seen->answered);
  printHexadecimal(seen->answer);
  printf("\",\"change\":\"%s\",\"printed\":%ld,\"calls\":%ld,\"helperCalls\":%ld,", seen->change,
         (long)length, trace->calls, trace->helperCalls);
  printf("\"struck\":%d,\"inside\":%d,\"number\":%ld,\"path\":\"", trace->struck,
         trace->inside | seen->allocations.inside, trace->number);
  printHexadecimal(trace->path);
  memset(text, 0, sizeof text);
  if (pread(printed, text, sizeof text - 1, 0) < 0) text[0] = '?';
  printf("\",\"shown\":\"");
  printHexadecimal(text);
  printf("\",\"allocations\":%ld,\"places\":[", seen->allocations.seen);
  printPlaces(&seen->allocations);
  printf("]}\n");
  fflush(stdout);
}

static void handle(const TortureOperation* operation) {
  const TracePlan tracePlan = plan();
  Trace trace;
  pid_t child;
  int status;
  memset(observation, 0, sizeof *observation);
  memset(&trace, 0, sizeof trace);
  if (ftruncate(printed, 0) != 0) exit(2);
  lseek(printed, 0, SEEK_SET);
  startClock();
  child = fork();
  if (child == 0) {
    alarm(0);
    signal(SIGALRM, SIG_DFL);
    perform(operation);
  }
  status = isTraced() ? traceChild(child, &tracePlan, &trace, &late) : waitPlainly(child);
  alarm(0);
  report(status, &trace);
}

static const TortureOperation* named(const TortureOperation* operations, int count) {
  int i;
  for (i = 0; i < count; ++i) {
    if (strcmp(operations[i].name, request.operation) == 0) return &operations[i];
  }
  fprintf(stderr, "there is no operation named %s\n", request.operation);
  exit(2);
}

int serve(const TortureOperation* operations, int count, char** arguments) {
  char line[256];
  int i;
  winterOffset = atol(arguments[0]);
  summerOffset = atol(arguments[1]);
  if (strcmp(arguments[2], "shown") == 0) {
    const time_t any = 0;
    if (localtime(&any) == NULL) return 2;
  }
  printed = memfd_create("printed", MFD_CLOEXEC);
  observation =
      mmap(NULL, sizeof *observation, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (printed < 0 || observation == MAP_FAILED) return 2;
  for (i = 0; i < count; ++i) printf("%s ", operations[i].name);
  printf("\n");
  fflush(stdout);
  while (fgets(line, sizeof line, stdin) != NULL) {
    if (sscanf(line, "%63s %31s %ld %d %d %d %d", request.operation, request.fault, &request.index,
               &request.error, &request.onwards, &request.without, &request.seconds) != 7) {
      return 2;
    }
    handle(named(operations, count));
  }
  return 0;
}
