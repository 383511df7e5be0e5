/* A service in C that is linked against the shared receiver alone. Prints the contents of each
 * named document, read in two ways: as bytes that it examines, and as a row. Fails if one is not
 * sound. */
#include <stdio.h>
#include <string.h>
#include <wenlolib/receiver_c.h>

static int text_is(const wenlolib_cell* cells, const char* column, const char* text) {
  size_t i;
  for (i = 0; i < wenlolib_column_count(); ++i) {
    if (strcmp(wenlolib_column_name(i), column) != 0) continue;
    return cells[i].type == WENLOLIB_TEXT && strcmp(cells[i].text, text) == 0;
  }
  return 0;
}

static int receive(const char* path, const wenlolib_cell* cells) {
  static char bytes[65536];
  FILE* const file = fopen(path, "rb");
  const size_t size = file == NULL ? 0 : fread(bytes, 1, sizeof bytes, file);
  wenlolib_report* report = NULL;
  size_t length = 0;
  const char* contents;
  int good;
  if (file != NULL) fclose(file);
  if (wenlolib_examine(bytes, size, &report) != WENLOLIB_OK) return 0;
  contents = wenlolib_report_contents(report, &length);
  good = contents != NULL && strcmp(wenlolib_report_layer(report), "none") == 0 &&
         wenlolib_report_trusted(report) && text_is(cells, "source", path) &&
         text_is(cells, "contents", contents);
  if (good) printf("%s: %.*s\n", wenlolib_report_layout(report), (int)length, contents);
  wenlolib_report_free(report);
  return good;
}

int main(int count, char** arguments) {
  const size_t paths = (size_t)count - 1;
  wenlolib_rows* rows = NULL;
  const wenlolib_cell* cells = NULL;
  int good = count > 1;
  int i;
  if (wenlolib_rows_open((const char* const*)arguments + 1, paths, 2, 0, &rows) != WENLOLIB_OK) {
    return 1;
  }
  for (i = 1; i < count && good; ++i) {
    good = wenlolib_rows_next(rows, &cells) == WENLOLIB_OK && cells != NULL &&
           receive(arguments[i], cells);
  }
  good = good && wenlolib_rows_next(rows, &cells) == WENLOLIB_OK && cells == NULL;
  wenlolib_rows_free(rows);
  return good ? 0 : 1;
}
