#include "clock.h"

#include <time.h>

int day_of_year(void) {
  const time_t now = time(NULL);
  const struct tm* local = localtime(&now);
  return local ? local->tm_yday + 1 : 0;
}
