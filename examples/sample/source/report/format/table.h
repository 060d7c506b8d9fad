#pragma once

void print_heading(const char* title, int day);
void print_row(const char* name, int boxes);
