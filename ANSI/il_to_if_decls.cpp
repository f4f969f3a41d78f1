// Functions, their parameters and locals, and the initial data of variables.

#include <algorithm>
#include <forward_list>
#include <map>
#include <string>
#include <vector>

#include "cmd_line.h"
#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_to_if_int.h"
#include "mode_words.h"
#include "target.h"

namespace {

// A static of a function, with the initialiser that the function's scope has
// for it.
struct a_promoted_variable {
  a_variable* variable;
  an_init_kind init_kind;
  an_initializer initializer;
};

std::forward_list<a_promoted_variable> promoted_variables; // newest first
std::vector<a_parameter_copy> parameter_copies;
std::map<std::string, unsigned> comdat_statics_of_name;
bool inline_asm_remark_done;

} // namespace

void start_declarations() {
  promoted_variables.clear();
  comdat_statics_of_name.clear();
  inline_asm_remark_done = false;
}

const a_parameter_copy* find_parameter_copy(const a_variable* parameter) {
  for (const a_parameter_copy& copy : parameter_copies)
    if (copy.parameter == parameter)
      return &copy;
  return nullptr;
}

// ---- Initialisers ----

static void gen_initial_data(a_variable* variable, an_init_kind kind,
                             const an_initializer& initializer) {
  if (kind == initk_constant && is_empty_aggregate(initializer.constant))
    kind = initk_zero;
  hooks->variable_initialization(variable, kind, &initializer);
  if (kind != initk_constant)
    return;
  gen_file->if_write_init(referenced_variable_symbol(variable));
  gen_constant(initializer.constant, variable->type);
  gen_node(ifop_ENDINIT, nullptr);
}

static bool has_initial_data(const a_variable* variable) {
  return variable->source_corresp.needed &&
         variable->source_corresp.reference_state != ref_state_unreferenced_static &&
         variable->storage_kind != sc_extern;
}

void gen_initializer(a_variable* variable) {
  if (!has_initial_data(variable))
    return;
  an_init_kind kind;
  an_initializer initializer;
  get_variable_initializer(variable, nullptr, &kind, &initializer.generic);
  gen_initial_data(variable, kind, initializer);
}

void gen_promoted_initializers() {
  for (const a_promoted_variable& promoted : promoted_variables)
    if (has_initial_data(promoted.variable))
      gen_initial_data(promoted.variable, promoted.init_kind, promoted.initializer);
}

// ---- Statics of functions ----

static void keep_initializer(a_variable* variable, a_scope* scope) {
  a_promoted_variable promoted = {variable, initk_none, {nullptr}};
  get_variable_initializer(variable, scope, &promoted.init_kind, &promoted.initializer.generic);
  promoted_variables.push_front(promoted);
}

// The static of an inline function that several units may have is one object. A
// function's statics of one name, which are in different blocks, are numbered
// from the second on.
static void make_comdat_static(a_variable* variable, const a_routine* routine, SYMTAB* symbol) {
  symbol->name =
      std::string(sym_name(&variable->source_corresp, 0)) + "$" + routine->source_corresp.name;
  if (unsigned discriminator = comdat_statics_of_name[symbol->name]++)
    symbol->name += "_" + std::to_string(discriminator);
  symbol->add_pragma(ifpk_COMDAT_GROUP, {symbol->name});
  symbol->storage_class = ifsc_global;
}

static void promote_local_static(a_variable* variable, a_scope* scope) {
  if (variable->file_symbol != nullptr)
    return;
  SYMTAB* symbol = variable_symbol(variable);
  if (gen_function_scope != nullptr) {
    const a_routine* routine = gen_function_scope->assoc.routine;
    if (in_C_mode() && routine->is_inline_comdat)
      make_comdat_static(variable, routine, symbol);
    symbol->add_pragma(ifpk_SCOPING_FUNC, {routine->file_symbol->name});
  }
  if (!symbol->is_entered())
    gen_file->if_enter_global(symbol);
  keep_initializer(variable, scope);
}

a_variable* make_static_copy(const a_variable* variable, a_constant* value) {
  a_variable* copy = alloc_variable(sc_static);
  copy->type = make_qualified_type(variable->type, tq_const);
  copy->alignment = variable->alignment;
  copy->is_compiler_generated = true;
  copy->source_corresp.position = variable->source_corresp.position;
  copy->source_corresp.needed = true;
  copy->init_kind = initk_constant;
  copy->initializer.constant = value;
  gen_file->if_enter_global(variable_symbol(copy));
  keep_initializer(copy, nullptr);
  return copy;
}

// ---- Locals ----

static void enter_local(SYMTAB* symbol) {
  if (symbol->storage_class == ifsc_temp)
    symbol->value = next_temporary_number();
  gen_file->if_enter_local(symbol);
  gen_file->if_write_symbol(symbol);
}

static void check_memory_bank(const a_variable* variable) {
  if (!variable->source_corresp.has_associated_pragma ||
      !routine_is_interrupt(gen_function_scope->assoc.routine))
    return;
  for (const a_pragma* pragma : assoc_pragmas(variable))
    if (pragma->tool_kind == ifpk_DATA_MEM_BANK)
      pos_st_error(ec_bad_membank_use, &variable->source_corresp.position,
                   variable->source_corresp.name);
}

static void gen_local(a_variable* variable, a_scope* scope) {
  if (variable->not_in_back_end || variable->storage_kind == sc_extern)
    return;
  if (variable->storage_kind < sc_auto) {
    promote_local_static(variable, scope);
    return;
  }
  check_memory_bank(variable);
  if (variable->source_corresp.needed)
    enter_local(variable_symbol(variable));
}

void gen_locals(a_scope* scope) {
  for (a_variable* variable = scope->variables; variable != nullptr; variable = variable->next)
    gen_local(variable, scope);
  for (a_variable* variable = scope->local_variables; variable != nullptr;
       variable = variable->next)
    gen_local(variable, scope);
}

void gen_zero_fills(a_scope* scope) {
  for (a_variable* variable = scope->local_variables; variable != nullptr;
       variable = variable->next)
    if (variable->source_corresp.needed && variable->storage_kind == sc_auto &&
        variable->init_kind == initk_zero)
      gen_zero_fill(variable);
}

// ---- Parameters ----

// The type in which a parameter comes in.
static a_type* incoming_type_of(a_type* routine_type, a_type* type) {
  if (!routine_type_is_prototyped(routine_type) ||
      routine_type->variant.routine.routine_supplement->old_style_definition)
    type = default_argument_promotion(type);
  return is_passed_by_ref_type(type) ? make_pointer_type(type) : type;
}

// The members of a parameter pack behind a parameter.
static unsigned following_pack_elements(const a_variable* parameter) {
  unsigned count = 0;
  if (parameter->is_pack_element)
    for (const a_variable* next = parameter->next; next != nullptr && next->is_pack_element;
         next = next->next)
      count++;
  return count;
}

static SYMTAB* gen_incoming_parameter(a_variable* parameter, a_type* type, bool is_last_named) {
  update_gen_position(parameter->source_corresp.position);
  typed_entity_position = parameter->source_corresp.position;
  SYMTAB* symbol = new_symbol();
  symbol->type = tp_type(type, tpm_lowered);
  if (gen_position != nullptr)
    symbol->set_psn(*gen_position);
  symbol->storage_class = is_last_named ? ifsc_last_param : ifsc_param;
  symbol->name = parameter->is_this_parameter
                     ? "this"
                     : sym_name(&parameter->source_corresp, following_pack_elements(parameter));
  symbol->size = static_cast<uint32_t>(symbol->type->size);
  symbol->align =
      std::max<uint32_t>(symbol->type->align, top_level_alignment(parameter) * targ_char_bit);
  gen_file->if_enter_local(symbol);
  gen_file->if_write_symbol(symbol);
  return symbol;
}

static void gen_parameters(a_scope* scope, a_type* routine_type) {
  bool has_ellipsis = routine_type_has_ellipsis(routine_type);
  parameter_copies.clear();
  gen_level = 1;
  for (a_variable* parameter = scope->parameters; parameter != nullptr;
       parameter = parameter->next) {
    a_type* type = incoming_type_of(routine_type, parameter->type);
    bool is_last_named = has_ellipsis && parameter->next == nullptr;
    SYMTAB* symbol = gen_incoming_parameter(parameter, type, is_last_named);
    if (is_last_named || !identical_types(type, parameter->type))
      parameter_copies.push_back({parameter, nullptr, symbol, type});
    else
      parameter->file_symbol = symbol;
  }
}

// Parameters that came in with another type, or before an ellipsis, are
// copied into locals, which stand for them from here on.
static void gen_parameter_copies() {
  for (a_parameter_copy& copy : parameter_copies) {
    copy.copy = variable_symbol(copy.parameter);
    enter_local(copy.copy);
  }
}

static void gen_copy_assignments() {
  if (parameter_copies.empty())
    return;
  gen_expr_start();
  gen_void_nodes(ifop_PCOMMA, parameter_copies.size() - 1);
  for (const a_parameter_copy& copy : parameter_copies) {
    a_type* type = copy.parameter->type;
    gen_node(is_class_object(type) ? ifop_STASG : ifop_ASG, type);
    gen_name(type, copy.copy);
    gen_conversion_if_needed(copy.incoming_type, type);
    gen_name(copy.incoming_type, copy.incoming);
  }
}

// ---- Functions ----

// Labels of the source are numbered before those of the statements.
static void gen_labels(a_scope* scope) {
  for (a_label* label = scope->labels; label != nullptr; label = label->next) {
    SYMTAB* symbol = label->file_symbol = new_symbol();
    symbol->storage_class = ifsc_label;
    symbol->type = type_pkg->void_type;
    symbol->value = static_cast<int32_t>(next_label++);
    if (label->source_corresp.name == nullptr)
      continue;
    symbol->name = label->source_corresp.name;
    if (label->source_corresp.position.seq != 0)
      symbol->set_psn(psn_of(label->source_corresp.position));
    gen_file->if_enter_local(symbol);
    gen_file->if_write_symbol(symbol);
  }
}

static void gen_function_body(a_routine* routine, a_scope* scope) {
  if (routine->source_corresp.has_associated_pragma)
    gen_assoc_pragmas(routine, placed_at_symbol_with_operands);
  gen_pragmas(scope->pragmas, nullptr, placed_at_file);
  gen_copy_assignments();
  gen_zero_fills(scope);
  gen_statement(scope->assoc_statement);
}

void gen_function(a_routine* routine) {
  a_scope* scope = scope_for_routine_or_null(routine);
  if (!routine->source_corresp.needed || routine->region_number == 0 || !routine->defined ||
      scope == nullptr)
    return;
  std::unique_ptr<OPTION_STATE> options_before =
      process_opt_override(routine->source_corresp.name, &routine->source_corresp.position);
  a_scope* outer_scope = gen_scope;
  gen_function_scope = gen_scope = scope;
  gen_position = nullptr;
  update_gen_position(routine->source_corresp.position);
  hooks->routine_definition(routine);
  gen_file->if_write_begin_func(referenced_routine_symbol(routine), gen_position);
  gen_parameters(scope, f_skip_typerefs(routine->type));
  gen_level = 2;
  gen_file->if_write_end_args(gen_position);
  next_label = 0;
  gen_parameter_copies();
  gen_locals(scope);
  gen_labels(scope);
  gen_file->if_write_end_locals(gen_position);
  gen_function_body(routine, scope);
  hooks->end_routine_definition(routine);
  gen_scope = outer_scope;
  gen_function_scope = nullptr;
  gen_level = 0;
  gen_file->if_write_end_func(gen_position);
  if (options_before != nullptr)
    options_before->restore_state();
}

// ---- Assembly ----

void gen_assembly(const an_asm_entry* entry) {
  update_gen_position(entry->source_corresp.position);
  if (!embed_inline_assembly) {
    gen_file->if_set_flags(if_flag_not_embeddable);
    if (embed_icode && !inline_asm_remark_done) {
      inline_asm_remark_done = true;
      str_remark(ec_prevent_lto, "inline assembly");
    }
  }
  gen_file->if_write_assembly(entry->text->value.string.text, gen_position);
}
