// The output stage: the road from the lowered IL to the intermediate file.

#ifndef IL_TO_IF_H
#define IL_TO_IF_H

#include <vector>

#include "basics.h"
#include "if_util.h"

class SYMTAB;
class TYPE;
enum ACCESS_KIND : uint8_t;

// Writes the IL of the primary unit to the intermediate file `i_file_name`,
// by default the source's base name with ".if" in the current directory.
void back_end();

// The name of the unit that the file states; called when the primary source
// file is opened.
void i_set_trans_unit_name(const char* name);

// The sets of command line words that go into the file.
extern std::vector<OPTION_SET> icode_optlist;

// The form of an IL type in the file: as lowered, or as written in the source.
enum a_tp_mode { tpm_lowered = 0, tpm_source = 1 };
TYPE* tp_type(a_type* type, int mode);

// The name of an entity in the file. A nameless one gets a name that it keeps.
// `index` isn't 0 for a parameter of an expanded pack: the number of parameters
// of the pack that follow.
const char* sym_name(a_source_correspondence* entity, unsigned index);
// The alignment, in bytes, of an object without a declared one.
int top_level_alignment(const a_variable* variable);
// Whether a class stands for its single scalar member.
bool scalar_csu(const a_type* type);
ACCESS_KIND access_type(unsigned char access);
bool ignore_type_in_back_end(const a_type* type);

// A section that was asked for becomes a pragma of the symbol.
void process_routine_section_specification(a_routine* routine, SYMTAB* symbol);
void process_variable_section_specification(a_variable* variable, SYMTAB* symbol);

#endif
