/* Many writers at once:
 *
 *   torture_crowd KIND PLUGIN WRITERS RECORDS [HOME...]
 *
 * KIND is one of
 *   month      every writer is a process; all of them replace the same file of application usage
 *   numbers    every writer is a process; RECORDS printer logs in all, with the same name
 *   starts     every writer is a process; one record in each HOME, and all writers start at once
 *   threads    every writer is a thread; each record has its own name, of both kinds in turn
 * KIND may end with "-no-exclusive" (the system cannot rename without replacing) and then
 * "-no-links" (it cannot make second links either). Contents are "writer W record R" and dots up to
 * a varying length. The program prints one line: the number of records that were not answered with
 * yes. */
#define _GNU_SOURCE
#include <errno.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "product/plugin_library.h"

enum { longestContents = 2048, needsNoAgreement = 2 };

typedef struct Crowd {
  const char* kind;
  long writers, records;
  char** homes;
  PluginLibrary library;
  pthread_barrier_t* released;
} Crowd;

typedef struct Writer {
  const Crowd* crowd;
  long number;
  long refused;
} Writer;

static void give_up(const char* what) {
  fprintf(stderr, "torture_crowd: %s: %s\n", what, strerror(errno));
  exit(2);
}

/* From now on the system refuses renaming without replacing, and second links if `links_too`. */
static void refuse_calls(int links_too) {
  struct sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_linkat, 3, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 4),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, args[4])),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, 0, 2, 1),
      BPF_STMT(BPF_RET | BPF_K, links_too ? SECCOMP_RET_ERRNO | EPERM : SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const struct sock_fprog program = {sizeof filter / sizeof *filter, filter};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    give_up("cannot install the filter for system calls");
  }
  if (renameat2(-1, "", -1, "", 1) == 0 || errno != EINVAL)
    give_up("renaming without replacing is not refused");
  if (links_too && (linkat(-1, "", -1, "", 0) == 0 || errno != EPERM)) {
    give_up("second links are not refused");
  }
}

static int write_one(const Writer* writer, long record, const char* name, int printer_log) {
  char contents[longestContents];
  const PluginLibrary* library = &writer->crowd->library;
  const int length =
      snprintf(contents, sizeof contents, "writer %ld record %ld ", writer->number, record);
  const size_t dots = (size_t)(record * 37 + writer->number * 613) % 1500;
  memset(contents + length, '.', dots);
  contents[(size_t)length + dots] = '\0';
  return printer_log ? library->writePrinterLogInfo(contents, name, 0, NULL, 0)
                     : library->writeAppInfo(contents, name, needsNoAgreement);
}

static void write_share(Writer* writer) {
  const Crowd* crowd = writer->crowd;
  const int numbers = strncmp(crowd->kind, "numbers", 7) == 0;
  const long first = numbers ? crowd->records * writer->number / crowd->writers : 0;
  const long end =
      numbers ? crowd->records * (writer->number + 1) / crowd->writers : crowd->records;
  long record;
  for (record = first; record < end; ++record) {
    writer->refused += !write_one(writer, record, "Crowd", numbers);
  }
}

static void start_everywhere(Writer* writer) {
  char name[32];
  char** home;
  snprintf(name, sizeof name, "Writer%ld", writer->number);
  for (home = writer->crowd->homes; *home != NULL; ++home) {
    setenv("HOME", *home, 1);
    pthread_barrier_wait(writer->crowd->released);
    writer->refused += !write_one(writer, 0, name, 1);
  }
}

static void* write_names(void* argument) {
  Writer* writer = argument;
  char name[64];
  long record;
  for (record = 0; record < writer->crowd->records; ++record) {
    snprintf(name, sizeof name, "W%ldR%ld", writer->number, record);
    writer->refused += !write_one(writer, record, name, (int)(record % 2));
  }
  return NULL;
}

static long in_processes(const Crowd* crowd) {
  long number, refused = 0;
  int status;
  for (number = 0; number < crowd->writers; ++number) {
    Writer writer = {crowd, number, 0};
    const pid_t child = fork();
    if (child < 0) give_up("no process");
    if (child > 0) continue;
    pthread_barrier_wait(crowd->released);
    if (strcmp(crowd->kind, "starts") == 0) start_everywhere(&writer);
    if (strcmp(crowd->kind, "starts") != 0) write_share(&writer);
    _exit(writer.refused > 100 ? 100 : (int)writer.refused);
  }
  while (wait(&status) > 0) refused += WIFEXITED(status) ? WEXITSTATUS(status) : 1000;
  return refused;
}

static long in_threads(const Crowd* crowd) {
  enum { mostThreads = 64 };
  pthread_t threads[mostThreads];
  Writer writers[mostThreads];
  long number, refused = 0;
  for (number = 0; number < crowd->writers && number < mostThreads; ++number) {
    writers[number] = (Writer){crowd, number, 0};
    if (pthread_create(&threads[number], NULL, write_names, &writers[number]) != 0) {
      give_up("no thread");
    }
  }
  while (number-- > 0) {
    pthread_join(threads[number], NULL);
    refused += writers[number].refused;
  }
  return refused;
}

static pthread_barrier_t* shared_barrier(unsigned count) {
  pthread_barrierattr_t attributes;
  pthread_barrier_t* barrier =
      mmap(NULL, sizeof *barrier, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (barrier == MAP_FAILED) give_up("there is no shared memory");
  pthread_barrierattr_init(&attributes);
  pthread_barrierattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
  if (pthread_barrier_init(barrier, &attributes, count) != 0) give_up("no barrier");
  return barrier;
}

int main(int count, char** arguments) {
  Crowd crowd;
  const char* problem;
  if (count < 5) {
    fprintf(stderr, "usage: torture_crowd KIND PLUGIN WRITERS RECORDS [HOME...]\n");
    return 2;
  }
  crowd.kind = arguments[1];
  crowd.writers = strtol(arguments[3], NULL, 10);
  crowd.records = strtol(arguments[4], NULL, 10);
  crowd.homes = arguments + 5;
  crowd.released = shared_barrier((unsigned)crowd.writers);
  problem = openPlugin(arguments[2], &crowd.library);
  if (problem != NULL) give_up(problem);
  if (strstr(crowd.kind, "-no-exclusive") != NULL) {
    refuse_calls(strstr(crowd.kind, "-no-links") != NULL);
  }
  printf("%ld\n", strcmp(crowd.kind, "threads") == 0 ? in_threads(&crowd) : in_processes(&crowd));
  return 0;
}
