// What the files of the output stage share: the state of the generator and the
// operations that one topic offers to the others.

#ifndef IL_TO_IF_INT_H
#define IL_TO_IF_INT_H

#include <cstdint>
#include <string>
#include <vector>

#include "if_nodes.h"
#include "if_symbol.h"
#include "if_write.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_hooks.h"
#include "il_statements.h"
#include "il_to_if.h"
#include "type_pkg.h"
#include "types.h"

// ---- State of the generator. ----

extern I_FILE* gen_file;
extern const PSN* gen_position;     // of the records; null: none
extern a_scope* gen_function_scope; // of the function being written
extern a_scope* gen_scope;          // where pragmas are looked up
extern int gen_level;       // 0 outside of functions, 1 in parameters, 2 in the body, and blocks
extern uint32_t next_label; // unique within a function
extern IL_HOOKS_CONTAINER* hooks;

// Makes the position that of the source; one that isn't known changes nothing.
void update_gen_position(const a_source_position& position);
// Where the entity is declared whose type is wanted: what is wrong with a type is
// reported there.
extern a_source_position typed_entity_position;
// The file, line and column of a source position.
PSN psn_of(const a_source_position& position);

struct OPT_OVERRIDE;
// The two texts of an OPT_OVERRIDE pragma. The words for the other passes stand in
// a set, so the second is empty.
std::vector<std::string> texts_of_override(const OPT_OVERRIDE& entry);

// ---- Symbols and sections (il_to_if_symbols.cpp). ----

void start_symbols();
void end_symbols();
// Symbols live until the end of the stage.
SYMTAB* new_symbol();
SYMTAB* routine_symbol(a_routine* routine);
// The name of a routine in the file; a nameless one gets a name that it keeps.
std::string routine_name(a_routine* routine);
// The symbol of a variable, made at the first request; `index` as for sym_name.
SYMTAB* variable_symbol(a_variable* variable, unsigned index = 0);
// The same for use in an expression: what isn't in a table yet is entered.
SYMTAB* referenced_routine_symbol(a_routine* routine);
SYMTAB* referenced_variable_symbol(a_variable* variable);
// A number for a symbol of class 22.
int32_t next_temporary_number();
// The pragmas of an entity that are in force, in their order.
std::vector<a_pragma*> assoc_pragmas(const void* entity);
// Writes the pragmas of an entity (null: those of a scope that belong to no
// entity) with a placement as records of the body.
void gen_pragmas(a_pragma* list, const void* entity, uint8_t placement);
void gen_assoc_pragmas(const void* entity, uint8_t placement);
bool routine_is_interrupt(const a_routine* routine);

// ---- Functions, locals and initialisers (il_to_if_decls.cpp). ----

void start_declarations();
// Writes the variables of a function or block, and promotes its statics.
void gen_locals(a_scope* scope);
void gen_zero_fills(a_scope* scope);
// A nameless const static with the type and value of a local's initialiser.
a_variable* make_static_copy(const a_variable* variable, a_constant* value);
void gen_assembly(const an_asm_entry* entry);
void gen_function(a_routine* routine);
void gen_initializer(a_variable* variable);
void gen_promoted_initializers();

// How the parameter at hand came in, when the function works on a copy.
struct a_parameter_copy {
  a_variable* parameter;
  SYMTAB* copy;
  SYMTAB* incoming;
  a_type* incoming_type;
};
const a_parameter_copy* find_parameter_copy(const a_variable* parameter);

// ---- Statements (il_to_if_stmts.cpp). ----

void gen_statement(a_statement* statement);
// Clears a variable by a call of memset.
void gen_zero_fill(a_variable* variable);

// ---- Expressions (il_to_if_exprs.cpp, il_to_if_calls.cpp). ----

// The record that announces an expression at the current position.
void gen_expr_start();
// Single nodes. A null type is void.
void gen_node(an_if_opcode opcode, a_type* type);
void gen_void_nodes(an_if_opcode opcode, size_t count);
void gen_label_node(uint32_t label);
void gen_icon(a_type* type, int64_t value);
void gen_lcon(a_type* type, uint64_t value);
// A floating constant by its decimal text.
void gen_fcon(a_type* type, const char* text);
void gen_name(a_type* type, SYMTAB* symbol);
// The conversion of what follows to a type.
void gen_conversion(a_type* type);
void gen_conversion_if_needed(a_type* from, a_type* to);

// Writes an expression; `type_override` is the result type when it isn't the
// expression's own.
void gen_expr(an_expr_node* expr, a_type* type_override = nullptr);
void gen_call(an_expr_node* call);
// The address of an lvalue, as a pointer type.
void gen_address(an_expr_node* expr, a_type* pointer_type);
// `pointer` plus or minus `integer` times the size of what it points at.
void gen_ptr_arith(an_if_opcode opcode, a_type* result, an_expr_node* pointer,
                   an_expr_node* integer);
// The warning about an int operation whose result is converted to a wider type.
void check_int_portability(const an_expr_node* operand, a_type* target);
// The unsigned integer type of the size of a pointer to the type.
a_type* integer_type_of_pointer(const a_type* pointed);
// ASG, STASG or ARASG for an object of a type.
an_if_opcode assignment_opcode(a_type* type);
// No complex or extended floating value is written yet; one message in a file
// says so.
void refuse_float_values(const a_source_position* position, const char* what);
// Whether a value of the type is passed and assigned as a class.
bool is_class_object(a_type* type);

// ---- Single precision (il_to_if_floats.cpp). ----

// Rewrites double arithmetic whose value goes to `target`, and below, where
// float arithmetic gives the same value; with relaxed_fp also where it is near.
void narrow_float_expr(an_expr_node* expr, const a_type* target);
// Remarks on the first constant of type double that meets a float and could be
// one.
void float_constant_remark(const an_expr_node* expr);

// ---- Constants (il_to_if_constants.cpp). ----

// Writes a constant of an expression or an initialiser. An aggregate is the
// sequence of its scalars; `expected` is the type of the object.
void gen_constant(a_constant* constant, a_type* expected);
// Whether a constant is an aggregate that gives no part of it a value.
bool is_empty_aggregate(const a_constant* constant);
// The type by which a bit-field is read and written, with the qualifiers of
// `expected`.
a_type* bit_field_type(const a_field* field, a_type* expected);
void gen_field(a_type* type, a_field* field);

#endif
