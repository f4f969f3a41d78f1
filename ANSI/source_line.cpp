// The line buffer.

#include "source_line.h"

void source_line_one_time_init() {}

void source_line_init() {}

void source_line_reset() {}
