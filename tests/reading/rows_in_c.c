/* Prints the rows of the named files and folders as the C functions give them: a line for each,
 * with a word for each column. The words are "n" for null, "i" or "t" with a number, and "x" with
 * the bytes of a text in hexadecimal digits. The first line has the names of the columns. */
#include <inttypes.h>
#include <stdio.h>
#include <wenlolib/receiver_c.h>

static void print_cell(const wenlolib_cell* cell) {
  size_t i;
  if (cell->type == WENLOLIB_NULL) printf("n");
  if (cell->type == WENLOLIB_INTEGER) printf("i%" PRId64, cell->integer);
  if (cell->type == WENLOLIB_TRUTH) printf("t%" PRId64, cell->integer);
  if (cell->type == WENLOLIB_TEXT) {
    printf("x");
    for (i = 0; i < cell->size; ++i) printf("%02x", (unsigned char)cell->text[i]);
    if (cell->text[cell->size] != '\0') printf("?");
  }
}

int main(int count, char** arguments) {
  const char* const* paths = (const char* const*)arguments + 1;
  const wenlolib_cell* cells = NULL;
  wenlolib_rows* rows = NULL;
  size_t i;
  for (i = 0; i < wenlolib_column_count(); ++i) printf("%s ", wenlolib_column_name(i));
  if (wenlolib_rows_open(paths, (size_t)count - 1, 2, 0, &rows) != WENLOLIB_OK) return 1;
  while (wenlolib_rows_next(rows, &cells) == WENLOLIB_OK && cells != NULL) {
    printf("\n");
    for (i = 0; i < wenlolib_column_count(); ++i) {
      print_cell(&cells[i]);
      printf(" ");
    }
  }
  printf("\n");
  wenlolib_rows_free(rows);
  return 0;
}
