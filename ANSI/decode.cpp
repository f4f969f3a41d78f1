#include "decode.h"

bool probably_mangled_symbol_name(const char* name) {
  return name[0] == '_' && name[1] == 'Z';
}

std::string decode_id(const char* name, bool) {
  return name;
}
