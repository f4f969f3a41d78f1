// Plain records that the intermediate file's writer takes: positions, pragmas,
// option sets, and the entries of exception and dependence tables.

#ifndef IF_UTIL_H
#define IF_UTIL_H

#include <cstdint>
#include <string>
#include <vector>

#include "if_tags.h"

class BASE_NODE;

// A source position of the file. A null `file` stands for an unknown one.
struct PSN {
  const char* file;
  unsigned line;
  unsigned column;
};

// The name under which a position without a file is entered.
inline constexpr char if_no_file[] = "NO_FILE";

// A pragma of a symbol, of a function or of the file.
struct PRAGMA {
  uint8_t kind; // an_if_pragma_kind
  std::vector<std::string> strings;
  PRAGMA* next = nullptr;

  explicit PRAGMA(uint8_t pragma_kind, std::vector<std::string> texts = {})
      : kind(pragma_kind), strings(std::move(texts)) {}
  // The kind's name; "unknown" above the last kind.
  const char* name() const;
};

// Words of the command line that belong together under a number.
struct OPTION_SET {
  uint32_t id = 0;
  std::vector<std::string> strings;
};

// One entry of a dependence vector.
struct DD_ENTRY {
  int8_t direction;
  int8_t distance;
};

// A handler of a try block in an exception table.
struct I_CATCH_ENTRY {
  const char* name;
  uint32_t value;
  bool flag;
};

enum EHT_ENTRY_KIND : uint32_t {
  eht_cleanup = 1, // `u.expr` is the clean-up expression, or null
  eht_catch = 2    // `u.catches` are `count` handlers
};

// An entry of a function's exception table.
struct EHT_ENTRY {
  uint32_t id;
  uint32_t kind; // EHT_ENTRY_KIND
  uint32_t parent;
  uint32_t count;
  union {
    BASE_NODE* expr;
    const I_CATCH_ENTRY* catches;
  } u;
};

#endif
