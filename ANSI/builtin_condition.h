// Conditions under which a builtin function exists.
//
// A text that begins with "QL" names a condition. Any other is a row of terms,
// and holds when one of them does. A term is a compiler that is imitated (g GNU,
// L clang, m one that this tool never is), a language (x any, c C, + C++), and
// then what may follow: 8 or 4 (with or without 64-bit x86), a range of the
// compiler's versions such as (30400-) or (-40500), and a remark in brackets. An
// S before a term ends the evaluation there when the term holds.

#ifndef BUILTIN_CONDITION_H
#define BUILTIN_CONDITION_H

#include "basics.h"

// Null: the condition of a row that gives none.
bool builtin_condition_holds(const char* text);

void builtin_condition_one_time_init();

#endif
