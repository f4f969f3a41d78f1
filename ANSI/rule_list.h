// Lists of rules, as the options and pragmas of the rule checks give them:
// items split by commas, each a word or numbers, with a leading `-` for "not".

#ifndef RULE_LIST_H
#define RULE_LIST_H

enum a_rule_item_kind { rik_all, rik_none, rik_required, rik_advisory, rik_numbers };

struct a_rule_item {
  a_rule_item_kind kind;
  bool is_negated;
  // For rik_numbers: rules N to M with all subrules, or one rule's subrules S
  // to T.
  int first_rule;
  int last_rule;
  bool has_subrules;
  int first_subrule;
  int last_subrule;
};

// Obeys one item; false if the item is not allowed in this list.
typedef bool a_rule_item_action(const a_rule_item& item, void* data);

// Calls `action` with each item of the list. False if any item was bad or
// refused; the others take effect all the same.
bool obey_rule_list(const char* list, a_rule_item_action* action, void* data);

#endif
