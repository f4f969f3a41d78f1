#include "rule_list.h"

#include <cctype>
#include <string>
#include <string_view>

// Larger numbers name no rule.
static constexpr int max_rule_number = 9999;

// Reads a number and passes it; -1 if none stands there.
static int scan_rule_number(const char** p) {
  if (!isdigit(static_cast<unsigned char>(**p)))
    return -1;
  int value = 0;
  for (; isdigit(static_cast<unsigned char>(**p)); (*p)++)
    if (value <= max_rule_number)
      value = value * 10 + (**p - '0');
  return value;
}

// `N` or `N-M`; a missing second number is the first.
static bool scan_rule_range(const char** p, int* first, int* last, bool* is_range) {
  *first = *last = scan_rule_number(p);
  *is_range = *first >= 0 && **p == '-';
  if (*is_range) {
    (*p)++;
    *last = scan_rule_number(p);
  }
  return *first >= 0 && *last >= 0;
}

// N, N-M, N.S and N.S-T.
static bool scan_rule_numbers(const char* p, a_rule_item* item) {
  item->kind = rik_numbers;
  bool is_range;
  if (!scan_rule_range(&p, &item->first_rule, &item->last_rule, &is_range))
    return false;
  if (*p == '.' && !is_range) {
    item->has_subrules = true;
    p++;
    if (!scan_rule_range(&p, &item->first_subrule, &item->last_subrule, &is_range))
      return false;
  }
  return *p == '\0';
}

static bool scan_rule_item(const std::string& text, a_rule_item* item) {
  static const struct {
    const char* word;
    a_rule_item_kind kind;
  } words[] = {
      {"all", rik_all}, {"none", rik_none}, {"required", rik_required}, {"advisory", rik_advisory}};
  *item = {};
  item->is_negated = text[0] == '-';
  const char* p = text.c_str() + item->is_negated;
  for (const auto& row : words)
    if (row.word == std::string_view(p)) {
      item->kind = row.kind;
      return true;
    }
  return scan_rule_numbers(p, item);
}

bool obey_rule_list(const char* list, a_rule_item_action* action, void* data) {
  bool is_good = true;
  std::string text;
  for (const char* p = list;; p++) {
    if (*p != ',' && *p != '\0') {
      if (*p != ' ')
        text.push_back(*p);
      continue;
    }
    a_rule_item item;
    if (!scan_rule_item(text, &item) || !action(item, data))
      is_good = false;
    text.clear();
    if (*p == '\0')
      return is_good;
  }
}
