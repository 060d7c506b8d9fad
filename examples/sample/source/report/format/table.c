#include "table.h"

#include <stdio.h>

void print_heading(const char* title, int day) {
  printf("%s on day %d\n", title, day);
}

void print_row(const char* name, int boxes) {
  printf("%-10s %4d\n", name, boxes);
}
