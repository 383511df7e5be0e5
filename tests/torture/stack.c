/* A record on a small stack:
 *
 *   torture_stack PLUGIN STACK_BYTES
 *
 * A thread with a stack of this size records application usage and a printer log of each layout,
 * and asks what it is allowed to record. The memory below the stack may not be touched. The program
 * prints one line: how many of the five calls answered yes, and how many bytes of the stack they
 * used. */
#define _GNU_SOURCE
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include "product/plugin_library.h"

enum { guardBytes = 1 << 22, untouched = 0xA5, hostLanguage = 1 };

typedef struct Task {
  PluginLibrary library;
  int yes;
} Task;

static void* record(void* argument) {
  const WENLOLIBEntry newer[] = {{"NEWTAGTYPE", "YES"}};
  const WENLOLIBEntry older[] = {{"DeviceID", "Größe &amp; &#233;"}, {"SN", "4711"}};
  Task* task = argument;
  const PluginLibrary* library = &task->library;
  task->yes += library->isSupported(hostLanguage);
  task->yes += library->isSupportedPlm(hostLanguage);
  task->yes += library->writeAppInfo("contents", "Stack", hostLanguage);
  task->yes += library->writePrinterLogInfo("contents", "Stack", hostLanguage, newer, 1);
  task->yes += library->writePrinterLogInfo("contents", "Stack", hostLanguage, older, 2);
  return NULL;
}

static long reached(const unsigned char* stack, size_t size) {
  size_t unused = 0;
  while (unused < size && stack[unused] == untouched) ++unused;
  return (long)(size - unused);
}

int main(int count, char** arguments) {
  Task task = {0};
  pthread_attr_t attributes;
  pthread_t thread;
  const size_t size = count == 3 ? strtoul(arguments[2], NULL, 10) : 0;
  unsigned char* memory =
      mmap(NULL, guardBytes + size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  unsigned char* stack = memory + guardBytes;
  if (size == 0 || memory == MAP_FAILED || mprotect(stack, size, PROT_READ | PROT_WRITE) != 0) {
    fprintf(stderr, "usage: torture_stack PLUGIN STACK_BYTES\n");
    return 2;
  }
  memset(stack, untouched, size);
  if (openPlugin(arguments[1], &task.library) != NULL) return 2;
  if (pthread_attr_init(&attributes) != 0 || pthread_attr_setstack(&attributes, stack, size) != 0 ||
      pthread_create(&thread, &attributes, record, &task) != 0) {
    fprintf(stderr, "a thread with a stack of %zu bytes does not start\n", size);
    return 2;
  }
  pthread_join(thread, NULL);
  printf("%d %ld\n", task.yes, reached(stack, size));
  return 0;
}
