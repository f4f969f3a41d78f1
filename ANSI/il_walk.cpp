#include "il_walk.h"

uint8_t flag_value_meaning_visited;

void il_walk_init() {
  flag_value_meaning_visited = 1;
}
