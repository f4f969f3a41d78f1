#include "builtin_condition.h"

#include "mem_manage.h"
#include "mode_words.h"
#include "target.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

const char* const default_condition = "gxLxmx(1600-)";

struct a_named_condition {
  const char* name;
  bool (*holds)();
};

const a_named_condition named_conditions[] = {
    {"QL", [] { return true; }}, // whatever the compiler is
};

// What was found out; conditions don't change within a run.
struct a_builtin_condition_entry {
  const char* text;
  a_boolean value;
  uint64_t length;
};
static_assert(sizeof(a_builtin_condition_entry) == 24);
constexpr size_t num_builtin_condition_entries = 32;

a_builtin_condition_entry* builtin_condition_table;

// Reads one term at *p and moves behind it. An unknown letter makes the term
// false.
class A_TERM {
public:
  explicit A_TERM(const char** p) : at(p) {
    is_final = skip('S');
    holds = compiler_matches() && holds;
    holds = language_matches() && holds;
    holds = machine_matches() && holds;
    holds = version_matches() && holds;
    if (skip('['))
      while (**at != '\0' && *(*at)++ != ']') {
      }
  }
  bool is_final;
  bool holds = true;

private:
  char next() {
    return **at == '\0' ? '\0' : *(*at)++;
  }
  bool skip(char c) {
    if (**at != c)
      return false;
    ++*at;
    return true;
  }
  bool compiler_matches() {
    switch (next()) {
    case 'g':
      version = gnu_version;
      return gnu_mode && !clang_mode;
    case 'L':
      version = clang_version;
      return gnu_mode && clang_mode;
    default:
      return false;
    }
  }
  bool language_matches() {
    switch (next()) {
    case 'x':
      return true;
    case 'c':
      return C_dialect != cd_cplusplus;
    case '+':
      return C_dialect == cd_cplusplus;
    default:
      return false;
    }
  }
  bool machine_matches() {
    if (skip('8'))
      return targ_supports_x86_64 != 0;
    return !skip('4') || targ_supports_x86_64 == 0;
  }
  // Both ends are inclusive; either may be left out.
  bool version_matches() {
    if (!skip('('))
      return true;
    char* end;
    long low = **at == '-' ? 0 : strtol(*at, &end, 10);
    if (**at != '-')
      *at = end;
    skip('-');
    long high = LONG_MAX;
    if (**at != ')') {
      high = strtol(*at, &end, 10);
      *at = end;
    }
    skip(')');
    return version >= low && version <= high;
  }

  const char** at;
  long version = 0;
};

bool evaluate(const char* text) {
  if (strncmp(text, "QL", 2) == 0) {
    for (const a_named_condition& condition : named_conditions)
      if (strcmp(text, condition.name) == 0)
        return condition.holds();
    return false;
  }
  bool result = false;
  while (*text != '\0') {
    A_TERM term(&text);
    result |= term.holds;
    if (term.is_final && term.holds)
      break;
  }
  return result;
}

} // namespace

bool builtin_condition_holds(const char* text) {
  if (text == nullptr)
    text = default_condition;
  size_t length = strlen(text);
  for (size_t i = 0; i < num_builtin_condition_entries; i++) {
    a_builtin_condition_entry& entry = builtin_condition_table[i];
    if (entry.text == nullptr)
      entry = {text, evaluate(text), length};
    if (entry.length == length && memcmp(entry.text, text, length) == 0)
      return entry.value != 0;
  }
  return evaluate(text);
}

void builtin_condition_one_time_init() {
  size_t size = num_builtin_condition_entries * sizeof(a_builtin_condition_entry);
  builtin_condition_table = static_cast<a_builtin_condition_entry*>(alloc_general(size));
  memset(builtin_condition_table, 0, size);
}
