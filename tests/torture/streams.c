/* A host that has closed some of its standard streams, while its other threads print:
 *
 *   torture_streams PLUGIN CLOSED RECORDS
 *
 * CLOSED holds the numbers of the streams, as digits. The host writes both kinds of record in turn,
 * each under its own name. It prints one line to the former standard output: how many records were
 * not answered with yes, and after how many records a closed stream was open. */
#define _GNU_SOURCE
#include <fcntl.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "product/plugin_library.h"

enum { printers = 4 };

static const char* closed = "";
static atomic_int done;

static void* print(void* argument) {
  const char* stream;
  while (!atomic_load(&done)) {
    for (stream = closed; *stream != '\0'; ++stream) {
      if (write(*stream - '0', "noise\n", 6) < 0) continue;
    }
  }
  return argument;
}

static int closed_streams_stay_closed(void) {
  const char* stream;
  for (stream = closed; *stream != '\0'; ++stream) {
    if (fcntl(*stream - '0', F_GETFD) != -1) return 0;
  }
  return 1;
}

static int record(const PluginLibrary* library, long number) {
  char name[32];
  snprintf(name, sizeof name, "Streams%ld", number);
  if (number % 2 == 0) return library->writeAppInfo("contents", name, 0);
  return library->writePrinterLogInfo("contents", name, 0, NULL, 0);
}

int main(int count, char** arguments) {
  const long records = count == 4 ? strtol(arguments[3], NULL, 10) : 0;
  const int output = fcntl(1, F_DUPFD_CLOEXEC, 10);
  PluginLibrary library;
  pthread_t threads[printers];
  long number, refused = 0, opened = 0;
  if (records == 0 || output < 0 || openPlugin(arguments[1], &library) != NULL) {
    fprintf(stderr, "usage: torture_streams PLUGIN CLOSED RECORDS\n");
    return 2;
  }
  closed = arguments[2];
  for (number = 0; closed[number] != '\0'; ++number) close(closed[number] - '0');
  for (number = 0; number < printers; ++number) {
    if (pthread_create(&threads[number], NULL, print, NULL) != 0) return 2;
  }
  for (number = 0; number < records; ++number) {
    refused += !record(&library, number);
    opened += !closed_streams_stay_closed();
  }
  atomic_store(&done, 1);
  for (number = 0; number < printers; ++number) pthread_join(threads[number], NULL);
  dprintf(output, "%ld %ld\n", refused, opened);
  return 0;
}
