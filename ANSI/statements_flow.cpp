// Jumps past initialisations and into protected blocks. While a function is
// parsed, its blocks, initialisations, gotos and labels are noted in the order
// of the source; each jump is judged as soon as both of its ends are known.
// Breaks and continues only leave blocks and need no record.

#include <unordered_map>
#include <vector>

#include "error.h"
#include "il.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "statements_int.h"
#include "types.h"

enum a_control_flow_kind : uint8_t {
  cfk_block_start = 0,
  cfk_init = 1,
  cfk_goto = 2,
  cfk_label = 3,
  cfk_case = 4,
  cfk_block_end = 5
};

struct a_control_flow_descr {
  a_control_flow_descr* next;
  a_control_flow_descr* prev;
  a_control_flow_descr* enclosing_block;
  a_source_position position;
  a_control_flow_kind kind;
  uint8_t contains_label : 1;
  uint8_t contains_goto : 1;
  uint8_t is_try : 1;
  uint8_t is_handler : 1;
  uint8_t is_statement_expression : 1;
  uint32_t number; // in the order of the source
  uint32_t depth;  // of a block, in blocks
  union {
    a_variable* variable;              // of an initialisation
    a_label* label;                    // of a goto or a label
    a_control_flow_descr* block_start; // of a block's end
  };
  a_control_flow_descr* next_goto_to_label; // the next one that waits for the label
};

a_control_flow_state control_flow;

static a_control_flow_descr* avail_control_flow_descrs;

namespace {

// What is known of a label: its place, or the gotos that wait for it.
struct a_label_flow {
  a_control_flow_descr* place;
  a_control_flow_descr* waiting_gotos;
};

std::unordered_map<const a_label*, a_label_flow> label_flows;

} // namespace

// ---- The list ----

static a_control_flow_descr* append_descr(a_control_flow_kind kind,
                                          const a_source_position* position) {
  a_control_flow_descr* descr = avail_control_flow_descrs;
  if (descr)
    avail_control_flow_descrs = descr->next;
  else
    descr = static_cast<a_control_flow_descr*>(alloc_in_region(0, sizeof *descr));
  *descr = {};
  descr->kind = kind;
  descr->position = *position;
  descr->enclosing_block = control_flow.block;
  descr->number = control_flow.next_number++;
  descr->prev = control_flow.last;
  if (control_flow.last)
    control_flow.last->next = descr;
  else
    control_flow.first = descr;
  control_flow.last = descr;
  return descr;
}

// Frees a record and all behind it.
static void drop_descrs_from(a_control_flow_descr* first) {
  a_control_flow_descr* last = control_flow.last;
  control_flow.last = first->prev;
  if (first->prev)
    first->prev->next = nullptr;
  else
    control_flow.first = nullptr;
  last->next = avail_control_flow_descrs;
  avail_control_flow_descrs = first;
}

void flow_open_block(unsigned block_flags, const a_source_position* position) {
  a_control_flow_descr* block = append_descr(cfk_block_start, position);
  block->is_try = (block_flags & bf_try) != 0;
  block->is_handler = (block_flags & bf_handler) != 0;
  block->is_statement_expression = (block_flags & bf_statement_expression) != 0;
  if (block->is_try || block->is_handler || block->is_statement_expression)
    ++control_flow.num_hazards;
  block->depth = control_flow.block ? control_flow.block->depth + 1 : 0;
  control_flow.block = block;
}

a_control_flow_descr* flow_open_switch(const a_source_position* position) {
  flow_open_block(bf_none, position);
  return control_flow.block;
}

bool any_goto_in_open_blocks() {
  const a_control_flow_descr* block = control_flow.block;
  while (block && !block->contains_goto)
    block = block->enclosing_block;
  return block != nullptr;
}

// A block that nothing jumps out of or into leaves no record.
void flow_close_block() {
  a_control_flow_descr* block = control_flow.block;
  a_control_flow_descr* outer = block->enclosing_block;
  control_flow.block = outer;
  if (!block->contains_label && !block->contains_goto) {
    drop_descrs_from(block);
    return;
  }
  a_control_flow_descr* end = append_descr(cfk_block_end, &block->position);
  end->block_start = block;
  if (outer) {
    outer->contains_label |= block->contains_label;
    outer->contains_goto |= block->contains_goto;
  }
}

void wrapup_control_flow_processing(a_scope*) {
  for (const a_control_flow_descr* descr = control_flow.first; descr; descr = descr->next)
    if (descr->kind == cfk_goto || descr->kind == cfk_label)
      label_flows.erase(descr->label);
  if (control_flow.first)
    drop_descrs_from(control_flow.first);
  control_flow = {};
}

// ---- Judging a jump ----

static a_control_flow_descr* common_block(a_control_flow_descr* a, a_control_flow_descr* b) {
  while (a != b)
    if (a->depth >= b->depth)
      a = a->enclosing_block;
    else
      b = b->enclosing_block;
  return a;
}

static an_error_code code_of_entry_into(const a_control_flow_descr* block) {
  if (block->is_try)
    return ec_branch_into_try_block;
  if (block->is_handler)
    return ec_branch_into_handler;
  return block->is_statement_expression ? ec_branch_into_statement_expr : 0;
}

// The line of a message that names a variable.
static void add_variable_info(const a_variable* variable, a_diagnostic* diag) {
  constexpr an_error_code text_variable = 549, text_vla = 1087;
  sym_add_diag_info(diag, is_vla_type(variable->type) ? text_vla : text_variable,
                    variable->source_corresp.symbol);
}

// Reports a jump into a block that only its start may lead into.
static bool check_entered_blocks(const a_control_flow_descr* target,
                                 const a_control_flow_descr* common,
                                 const a_source_position* position) {
  for (const a_control_flow_descr* block = target->enclosing_block; block != common;
       block = block->enclosing_block) {
    an_error_code code = code_of_entry_into(block);
    if (code != 0) {
      pos_error(code, position);
      return false;
    }
  }
  return true;
}

static bool block_holds(const a_control_flow_descr* end, const a_control_flow_descr* descr) {
  return end->block_start->number <= descr->number && descr->number < end->number;
}

// The variables that live at the target, but not where the jump comes from, the
// innermost last. What stands in the common block has been passed by a jump
// from behind.
static std::vector<a_variable*> bypassed_variables(const a_control_flow_descr* source,
                                                   const a_control_flow_descr* target,
                                                   const a_control_flow_descr* common) {
  std::vector<a_variable*> variables;
  bool is_forward = source->number < target->number;
  const a_control_flow_descr* block = target->enclosing_block;
  const a_control_flow_descr* descr = target->prev;
  while (descr && descr != source && descr != common && (is_forward || block != common)) {
    if (descr->kind == cfk_block_end) {
      if (block_holds(descr, source))
        break;
      descr = descr->block_start;
    } else if (descr->kind == cfk_block_start) {
      block = descr->enclosing_block;
    } else if (descr->kind == cfk_init) {
      variables.push_back(descr->variable);
    }
    descr = descr->prev;
  }
  return variables;
}

static void check_jump(a_control_flow_descr* source, const a_control_flow_descr* target,
                       const a_source_position* position) {
  if (control_flow.num_hazards == 0)
    return;
  bool is_block = source->kind == cfk_block_start;
  const a_control_flow_descr* common =
      common_block(is_block ? source : source->enclosing_block, target->enclosing_block);
  if (!check_entered_blocks(target, common, position))
    return;
  std::vector<a_variable*> variables = bypassed_variables(source, target, common);
  if (variables.empty())
    return;
  a_diagnostic* diag = pos_start_error(ec_branch_past_initialization, position);
  for (size_t i = variables.size(); i-- > 0;)
    if (!variables[i]->is_compiler_generated)
      add_variable_info(variables[i], diag);
  end_diagnostic(diag);
}

// ---- Jumps and their targets ----

void flow_goto(a_label* label, const a_source_position* position) {
  a_control_flow_descr* descr = append_descr(cfk_goto, position);
  descr->label = label;
  descr->enclosing_block->contains_goto = true;
  a_label_flow& flow = label_flows[label];
  if (flow.place) {
    check_jump(descr, flow.place, position);
  } else {
    descr->next_goto_to_label = flow.waiting_gotos;
    flow.waiting_gotos = descr;
  }
}

void flow_label(a_label* label, const a_source_position* position) {
  a_control_flow_descr* descr = append_descr(cfk_label, position);
  descr->label = label;
  descr->enclosing_block->contains_label = true;
  a_label_flow& flow = label_flows[label];
  flow.place = descr;
  // The newest goto waits in front.
  std::vector<a_control_flow_descr*> gotos;
  for (a_control_flow_descr* jump = flow.waiting_gotos; jump; jump = jump->next_goto_to_label)
    gotos.push_back(jump);
  for (size_t i = gotos.size(); i-- > 0;)
    check_jump(gotos[i], descr, &gotos[i]->position);
}

// Nothing but its switch leads to a case, so the record is dropped at once.
void flow_case(const a_struct_stmt_stack_entry* switch_entry, const a_source_position* position) {
  a_control_flow_descr* descr = append_descr(cfk_case, position);
  check_jump(switch_entry->control_flow, descr, position);
  drop_descrs_from(descr);
}

// ---- Hooks of declarations ----

static void record_init(a_variable* variable) {
  if (depth_stmt_stack < 0 || !control_flow.block || !variable)
    return;
  append_descr(cfk_init, &variable->source_corresp.position)->variable = variable;
  ++control_flow.num_hazards;
}

// In C only the declaration of a variable length array may not be passed (C99
// 6.8.6.1 p1).
void update_init_statement_control_flow(a_statement* statement) {
  if (statement->kind == stmk_vla_decl)
    record_init(statement->variant.vla_decl.variable);
  else if (in_cplusplus_mode())
    record_init(statement->variant.dynamic_init->variable);
}

void record_trivial_init_control_flow(a_variable* variable) {
  if (in_cplusplus_mode())
    record_init(variable);
}
