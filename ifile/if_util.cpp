#include "if_util.h"

const char* PRAGMA::name() const {
  static constexpr const char* names[] = {
#define IF_PRAGMA(kind, name, text) text,
#include "if_tags.def"
  };
  return kind < std::size(names) ? names[kind] : "unknown";
}
