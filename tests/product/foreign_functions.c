/* Functions of the host that happen to have the same names as functions of the library, or of a
 * library built into it. Nothing should call them: each prints its name and ends the host.
 *
 * FOREIGN_NAMES is a file with the names, each as FOREIGN(name). */
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void endHost(const char* name) {
  static const char found[] = "the library called a function of the host: ";
  const ssize_t first = write(2, found, sizeof found - 1);
  const ssize_t second = write(2, name, strlen(name));
  const ssize_t third = write(2, "\n", 1);
  abort();
  (void)(first + second + third);
}

#define FOREIGN(name)                                     \
  __attribute__((visibility("default"))) void name(void); \
  void name(void) {                                       \
    endHost(#name);                                       \
  }
#include FOREIGN_NAMES
