// From external names back to source names (the reverse of the Itanium C++
// ABI mangling, section 5.1).

#ifndef DECODE_H
#define DECODE_H

#include <string>

// The source form of `name`. A text that isn't a mangled name, or that can't
// be decoded, is given back as it stands. `decorated` adds the notes on
// generated variants, such as "[deleting]".
std::string decode_id(const char* name, bool decorated);

// Whether `name` has the form of a mangled name.
bool probably_mangled_symbol_name(const char* name);

#endif
