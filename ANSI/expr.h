// Expressions.

#ifndef EXPR_H
#define EXPR_H

#include "basics.h"

void expr_one_time_init();
void expr_init();
void expr_trans_unit_init();

#endif
