// Shared by the files of the scope stack.

#ifndef SCOPE_STK_INT_H
#define SCOPE_STK_INT_H

#include "scope_stk.h"

// Judges the uses that check_c99_inline_definition recorded, and forgets them.
void judge_c99_inline_definitions();
void clear_c99_inline_uses();
// Records on the entry now at the top which names of the for-loop
// initialisation just closed mean something else outside it.
void record_for_init_names(const a_scope_pointers_block* block);
void clear_unexpanded_packs();
void clear_hidden_names();
void clear_name_linkages();

#endif
