#include "count.h"

// A box that is not full counts too.
int count_boxes(int pieces, int pieces_per_box) {
  return (pieces + pieces_per_box - 1) / pieces_per_box;
}
