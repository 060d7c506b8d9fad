#pragma once

int count_boxes(int pieces, int pieces_per_box);
