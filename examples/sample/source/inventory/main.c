// Prints what a small shop has in stock.

#include "platform/clock.h"
#include "report/format/table.h"
#include "stock/count.h"

int main(void) {
  print_heading("stock", day_of_year());
  print_row("screws", count_boxes(1200, 100));
  print_row("hinges", count_boxes(75, 10));
  return 0;
}
