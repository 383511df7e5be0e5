/* Prints the seconds from loading the plug-in to its first answer, in a process that has loaded
 * nothing that the plug-in needs. */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <time.h>

int main(int count, char** arguments) {
  struct timespec start, end;
  int (*isSupported)(uint32_t) = NULL;
  if (count != 2 || clock_gettime(CLOCK_MONOTONIC, &start) != 0) return 2;
  void* library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
  if (library != NULL) *(void**)&isSupported = dlsym(library, "WENLOLIB_isSupported");
  if (isSupported == NULL || isSupported(2) != 1) return 1;
  if (clock_gettime(CLOCK_MONOTONIC, &end) != 0) return 1;
  printf("%.9f\n",
         (double)(end.tv_sec - start.tv_sec) + 1e-9 * (double)(end.tv_nsec - start.tv_nsec));
  return 0;
}
