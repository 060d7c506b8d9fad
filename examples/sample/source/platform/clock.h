#pragma once

int day_of_year(void);
