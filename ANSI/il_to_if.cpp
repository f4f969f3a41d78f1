// The order of the output stage.

#include "il_to_if.h"

#include <cerrno>
#include <cstring>
#include <string>

#include "cmd_line.h"
#include "error.h"
#include "host_envir.h"
#include "if_write_util.h"
#include "il.h"
#include "il_to_if_int.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "source_file.h"

I_FILE* gen_file;
const PSN* gen_position;
a_source_position typed_entity_position;
a_scope* gen_function_scope;
a_scope* gen_scope;
int gen_level;
uint32_t next_label;
IL_HOOKS_CONTAINER* hooks;
std::vector<OPTION_SET> icode_optlist;

namespace {

constexpr size_t command_comment_limit = 511;

PSN position_storage;
std::string unit_name;

// The command line, for a reader of the file. Words that don't fit are left
// out with all that follow.
std::string command_line_comment() {
  std::string text = ";\t";
  for (int i = 0; i < sys_argc; i++) {
    if (text.size() + strlen(sys_argv[i]) + 1 > command_comment_limit)
      break;
    text += sys_argv[i];
    text += ' ';
  }
  return text;
}

void open_file() {
  if (i_file_name == nullptr)
    i_file_name = derived_name(primary_source_file_name, ".if");
  FILE* stream = open_output_file_with_error_handling(i_file_name, true, false, tolerate_nothing,
                                                      fk_il_output);
  if (type_pkg == nullptr)
    init_tp();
  const char* name = unit_name.empty() ? primary_source_file_name : unit_name.c_str();
  gen_file = if_create(stream, type_pkg, name);
  if_set_output_name(i_file_name);
}

void start_generator() {
  gen_scope = il_header.primary_scope;
  gen_function_scope = nullptr;
  gen_level = 0;
  in_front_end = 0;
  // What the stage makes goes with the file scope.
  switch_il_region(file_scope_region_number);
  hooks = IL_HOOKS_FACTORY::instantiate_il_hooks();
  error_position = {1, 0, 0};
  gen_position = nullptr;
  update_gen_position(error_position);
  start_symbols();
  start_declarations();
  add_hook_calls_to_il();
}

// Tells that options of its own hold for the whole unit.
void gen_override_of_unit() {
  const OPT_OVERRIDE* entry = get_opt_override(nullptr, nullptr);
  if (entry == nullptr)
    return;
  PRAGMA pragma(ifpk_OPT_OVERRIDE, texts_of_override(*entry));
  gen_file->if_write_pragma(&pragma);
}

// ---- Routines ----

a_routine* declared_routine_of_name(const char* name) {
  for (a_routine* routine = il_header.primary_scope->routines; routine != nullptr;
       routine = routine->next)
    if (routine->source_corresp.symbol != nullptr && routine->source_corresp.name != nullptr &&
        strcmp(routine->source_corresp.name, name) == 0)
      return routine;
  return nullptr;
}

// A redeclaration that has lost its declaring symbol is written as the routine
// that has it.
void unite_redeclaration(a_routine* routine) {
  a_source_correspondence& head = routine->source_corresp;
  if (!routine->detached_redeclaration || !head.needed || head.symbol != nullptr ||
      head.name == nullptr)
    return;
  a_routine* declared = declared_routine_of_name(head.name);
  if (declared == nullptr)
    return;
  routine->file_symbol = routine_symbol(declared);
  declared->source_corresp.needed = true;
  head.needed = false;
}

void prepare_routines() {
  for (a_routine* routine = gen_scope->routines; routine != nullptr; routine = routine->next)
    if (!routine->is_template_function)
      unite_redeclaration(routine);
}

void enter_routines() {
  for (a_routine* routine = gen_scope->routines; routine != nullptr; routine = routine->next) {
    if (!routine->source_corresp.needed || routine->is_template_function)
      continue;
    SYMTAB* symbol = routine_symbol(routine);
    if (routine->storage_kind != sc_extern && !symbol->is_entered())
      gen_file->if_enter_global(symbol);
  }
}

// Candidates for inlining come first, so that they are known where they are
// called.
void gen_functions() {
  for (bool inline_candidates : {true, false})
    for (a_routine* routine = gen_scope->routines; routine != nullptr; routine = routine->next)
      if (bool(routine->inline_candidate) == inline_candidates && !routine->is_template_function)
        gen_function(routine);
}

// ---- Variables ----

void enter_variables() {
  for (a_variable* variable = gen_scope->variables; variable != nullptr;
       variable = variable->next) {
    const a_source_correspondence& head = variable->source_corresp;
    if (variable->not_in_back_end || !head.needed ||
        head.reference_state == ref_state_unreferenced_static)
      continue;
    SYMTAB* symbol = variable_symbol(variable);
    if (!symbol->is_entered())
      gen_file->if_enter_global(symbol);
  }
}

void gen_initializers() {
  for (a_variable* variable = gen_scope->variables; variable != nullptr; variable = variable->next)
    if (!variable->not_in_back_end)
      gen_initializer(variable);
  gen_promoted_initializers();
}

// ---- Types ----

bool type_is_written(const a_type* type) {
  const a_source_correspondence& head = type->source_corresp;
  if (ignore_type_in_back_end(type) || (!head.needed && !keep_unneeded_types) ||
      type->source_file_type != nullptr)
    return false;
  if (type->kind == tk_typeref)
    return head.name != nullptr && (!type->is_generated || head.needed);
  if (type->kind == tk_integer && type->variant.integer.is_enum)
    return !type->is_incomplete && first_enumerator_of_enum(type) != nullptr;
  return true;
}

void make_types() {
  for (a_type* type = gen_scope->types; type != nullptr; type = type->next)
    if (type_is_written(type)) {
      typed_entity_position = type->source_corresp.position;
      tp_type(type, tpm_lowered);
    }
}

void close_file() {
  I_FILE* file = gen_file;
  gen_file = nullptr;
  // What the stage has refused leaves the file incomplete.
  bool is_abandoned = total_errors != 0;
  if (file->if_close(keep_unneeded_types != 0, is_abandoned))
    named_file_write_error("generated IL output", errno);
  delete type_pkg;
  type_pkg = nullptr;
  delete hooks;
  hooks = nullptr;
  end_symbols();
}

} // namespace

std::vector<std::string> texts_of_override(const OPT_OVERRIDE& entry) {
  return {entry.front_end_word == nullptr ? "" : entry.front_end_word, ""};
}

void i_set_trans_unit_name(const char* name) {
  unit_name = name;
}

void update_gen_position(const a_source_position& position) {
  if (position.seq == 0)
    return;
  position_storage = psn_of(position);
  gen_position = &position_storage;
}

void back_end() {
  error_position = null_source_position;
  open_file();
  start_generator();
  gen_file->if_write_comment(command_line_comment().c_str());
  for (const OPTION_SET& set : icode_optlist)
    gen_file->if_enter_option_set(set);
  gen_override_of_unit();
  gen_pragmas(gen_scope->pragmas, nullptr, placed_at_file);
  prepare_routines();
  enter_routines();
  enter_variables();
  for (const an_asm_entry* entry = gen_scope->asm_entries; entry != nullptr; entry = entry->next)
    gen_assembly(entry);
  gen_functions();
  gen_initializers();
  make_types();
  close_file();
}
