// Shared by the files of expression nodes.

#ifndef IL_EXPR_INT_H
#define IL_EXPR_INT_H

#include "il_expr.h"
#include "types.h"

// The heads of the operand lists that a node holds, in source order. Each is a
// list chained through `next`, or a single expression.
struct an_operand_list_heads {
  an_expr_node** heads[2];
  int count;
};

an_operand_list_heads operand_lists_of_node(an_expr_node* node);

inline bool same_type_or_null(a_type* a, a_type* b) {
  return a == b || (a != nullptr && b != nullptr && identical_types(a, b));
}

// Whether the node's own kind, its flags and the entities it names are those
// of the other, its operands aside.
bool same_node(const an_expr_node* a, const an_expr_node* b, unsigned flags);

#endif
