// How the template instantiations being made show in diagnostics: the lines
// that tell how each came about, and the filter that keeps one fault from being
// told once an instantiation.

#include <vector>

#include "error_int.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "source_file.h"
#include "trans_unit.h"

namespace {

// -- The context ---------------------------------------------------------------

// The texts of one sort of context: alone, and in a list of several.
struct a_context_text {
  an_error_code alone;
  an_error_code in_list;
};

constexpr a_context_text function_instantiation = {686, 456};
constexpr a_context_text implicit_generation = {687, 457};
constexpr a_context_text class_instantiation = {688, 529};
constexpr a_context_text template_argument_list = {689, 530};
constexpr a_context_text implicit_definition = {690, 464};
constexpr a_context_text secondary_translation_unit = {1139, 1140};

struct a_context_line {
  a_context_text text;
  const a_symbol* symbol;
  int depth;        // of the scope that the line is about
  const char* name; // of a translation unit
  a_source_position position;
};

// Describes what is being made in the scope at a depth of the scope stack;
// false if it is nothing that a reader can't see in the source.
bool describe_scope(int depth, a_context_line* line) {
  const a_scope_stack_entry& entry = scope_stack[depth];
  *line = a_context_line{};
  line->depth = depth;
  line->position = entry.saved_pos_curr_token;
  if (entry.kind == sk_function && entry.is_generated_function && entry.routine) {
    line->text = entry.routine->is_defaulted ? implicit_definition : implicit_generation;
    line->symbol = entry.routine->source_corresp.symbol;
    return true;
  }
  bool is_instantiation =
      entry.kind == sk_template_instantiation || entry.kind == sk_top_level_declaration;
  if (!is_instantiation || !entry.template_args || entry.is_fresh_start) {
    return false;
  }
  if (entry.routine) {
    line->text = function_instantiation;
    line->symbol = entry.routine->source_corresp.symbol;
  } else if (entry.assoc_type) {
    line->text = class_instantiation;
    line->symbol = entry.assoc_type->source_corresp.symbol;
  } else {
    line->text = template_argument_list;
    line->symbol = entry.template_symbol;
  }
  return line->symbol != nullptr;
}

// A diagnostic in a secondary unit tells which.
bool describe_translation_unit(const a_diagnostic* diag, a_context_line* line) {
  const a_translation_unit* unit = diag->translation_unit;
  if (!in_front_end || !unit || unit == translation_units || !unit->primary_source_file ||
      unit->primary_source_file == translation_units->primary_source_file) {
    return false;
  }
  *line = a_context_line{};
  line->text = secondary_translation_unit;
  line->name = unit->primary_source_file->file_name;
  return true;
}

// From the inside to the outside.
std::vector<a_context_line> find_contexts(const a_diagnostic* diag) {
  std::vector<a_context_line> lines;
  a_context_line line;
  for (int depth = depth_scope_stack; depth >= 1; --depth) {
    if (describe_scope(depth, &line)) {
      lines.push_back(line);
    }
  }
  if (describe_translation_unit(diag, &line)) {
    lines.push_back(line);
  }
  return lines;
}

void add_context_line(a_diagnostic* diag, an_error_code code, const a_context_line& line) {
  a_diagnostic* child = create_child_diagnostic(diag, dk_context, code);
  if (line.name) {
    add_argument(child, line.name);
    return;
  }
  add_argument(child, line.symbol);
  if (child->args.tail) {
    child->args.tail->scope_index = line.depth;
  }
  add_argument(child, &line.position);
}

// -- The repeat table ------------------------------------------------------------

constexpr int32_t no_scope_number = -1;
constexpr size_t repeat_table_size = 983;

// A diagnostic issued where it may be issued again and again.
struct an_issued_diagnostic {
  an_error_code code;
  an_error_severity severity;
  a_source_position position;
  int32_t scope_number; // of the scope in which it came last
  unsigned long count;  // of the repeats in that scope
};

std::vector<an_issued_diagnostic> repeat_table[repeat_table_size];
bool repeat_table_is_empty = true; // spares most runs the walk over the table

std::vector<an_issued_diagnostic>& repeat_chain(an_error_code code, an_error_severity severity,
                                                const a_source_position& position) {
  uint64_t key = (uint64_t{position.seq} + 1) * (uint64_t{position.column} + 1) *
                 ((uint64_t{severity} + 1) * static_cast<uint64_t>(code));
  return repeat_table[key % repeat_table_size];
}

an_issued_diagnostic* find_issued_diagnostic(an_error_code code, an_error_severity severity,
                                             const a_source_position& position) {
  for (an_issued_diagnostic& issued : repeat_chain(code, severity, position)) {
    if (issued.code == code && issued.severity == severity && issued.position == position) {
      return &issued;
    }
  }
  return nullptr;
}

void enter_issued_diagnostic(an_error_code code, an_error_severity severity,
                             const a_source_position& position) {
  repeat_table_is_empty = false;
  repeat_chain(code, severity, position)
      .push_back(an_issued_diagnostic{code, severity, position, no_scope_number, 0});
}

// Notes a repeat in a scope; true if the last one was in another.
bool is_first_in_scope(an_issued_diagnostic* issued, int32_t scope_number) {
  if (issued->scope_number == scope_number) {
    ++issued->count;
    return false;
  }
  issued->scope_number = scope_number;
  issued->count = 0;
  return true;
}

bool in_template_context() {
  const a_scope_stack_entry& entry = scope_stack[depth_scope_stack];
  return depth_template_declaration_scope != -1 || entry.is_template_declaration ||
         entry.is_dependent || entry.is_prototype_instantiation;
}

} // namespace

void add_instantiation_context(a_diagnostic* diag) {
  std::vector<a_context_line> lines = find_contexts(diag);
  if (lines.empty()) {
    return;
  }
  if (lines.size() == 1) {
    add_context_line(diag, lines[0].text.alone, lines[0]);
    return;
  }
  create_child_diagnostic(diag, dk_context, vc_contexts);
  bool is_elided = context_limit > 0 && lines.size() > context_limit + 1;
  size_t half = is_elided ? context_limit / 2 : lines.size();
  for (size_t i = 0; i < lines.size(); ++i) {
    if (is_elided && i == half) {
      a_diagnostic* child = create_child_diagnostic(diag, dk_context, vc_contexts_not_shown);
      add_argument(child, static_cast<long>(lines.size() - 2 * half));
      i = lines.size() - half;
    }
    if (i < lines.size()) {
      add_context_line(diag, lines[i].text.in_list, lines[i]);
    }
  }
}

bool is_repeat_of_instantiation(const a_diagnostic* diag) {
  if (depth_scope_stack < 0) {
    return false;
  }
  const a_source_position& position = diag->position.position;
  an_issued_diagnostic* issued = find_issued_diagnostic(diag->error_code, diag->severity, position);
  if (issued) {
    return is_first_in_scope(issued, scope_stack[depth_scope_stack].number) ||
           issued->count <= error_limit;
  }
  if (in_template_context()) {
    enter_issued_diagnostic(diag->error_code, diag->severity, position);
  }
  return false;
}

void record_prototype_diagnostic(an_error_code code, an_error_severity severity,
                                 const a_source_position* position) {
  if (!find_issued_diagnostic(code, severity, *position)) {
    enter_issued_diagnostic(code, severity, *position);
  }
}

bool find_prototype_diagnostic(an_error_code code, an_error_severity severity,
                               const a_source_position* position) {
  an_issued_diagnostic* issued = find_issued_diagnostic(code, severity, *position);
  if (!issued) {
    return false;
  }
  if (depth_scope_stack >= 0) {
    is_first_in_scope(issued, scope_stack[depth_scope_stack].number);
  }
  return true;
}

void clear_repeat_table() {
  if (repeat_table_is_empty)
    return;
  repeat_table_is_empty = true;
  for (std::vector<an_issued_diagnostic>& chain : repeat_table) {
    chain.clear();
  }
}
