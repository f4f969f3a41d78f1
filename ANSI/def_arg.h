// Default arguments (C++11 8.3.6): scanned where they stand, or, inside a class,
// cached there and scanned when the outermost class is complete.

#ifndef DEF_ARG_H
#define DEF_ARG_H

#include "declarator.h"

// The `=` of a parameter is the current token.
void scan_default_argument(a_param_id* param);

// Caches the tokens of a default argument without analysing them, up to the `,`
// or `)` of the list. Of a template argument the end is `,` or `>`, and one that
// runs on behind it is invalid.
void prescan_default_arg_expr(a_token_cache* cache, bool is_template_arg);
void prescan_member_function_default_arg_expr(a_param_id* param);

// Scans a default argument that waits, in the scope of its class; one that is
// scanned already is left alone.
void delayed_scan_of_default_arg_expr(a_def_arg_expr_fixup* fixup);
// The node of the argument that a call leaves out, scanned now if it still
// waits; an error node after a message.
an_expr_node* default_arg_expr_of_param(a_param_type* param, const a_source_position* position);

void def_arg_one_time_init();
void def_arg_init();

#endif
