#include "extasm.h"

#include "error.h"
#include "expr.h"
#include "il.h"
#include "il_alloc.h"
#include "lexical.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "statements.h"

#include <cstring>

// ---- Constraints ----

// What the letters of a constraint mean is a matter of the assembler; these are
// the ones that every target has, and those of a matching operand.
static const char constraint_modifiers[] = "=+&%*#?!";
static const char constraint_letters[] = "mogrinsXpVEFGHIJKLMNOPQRSTUVWYZabcdefhjklqtuvwxyz<>,";

static bool is_output_modifier(char c) {
  return c == '=' || c == '+';
}

static void report_constraint(an_error_code code, const char* constraint,
                              const a_source_position* position) {
  pos_st_error(code, position, constraint);
}

// The number of the output operand that a digit names must be one that exists.
static bool names_output(const char* digits, unsigned num_outputs) {
  return static_cast<unsigned>(*digits - '0') < num_outputs;
}

static void note_letter(an_asm_operand* operand, char letter) {
  operand->allows_memory |= strchr("mogX", letter) != nullptr;
  operand->allows_register |= strchr("rgX", letter) != nullptr;
}

static void scan_constraint_characters(an_asm_operand* operand, unsigned num_outputs,
                                       bool* has_letter) {
  for (const char* c = operand->constraint; *c != '\0'; c++) {
    if (*c == '&') {
      operand->is_early_clobber = true;
    } else if (*c == '+') {
      operand->is_read_write = true;
    } else if (*c >= '0' && *c <= '9' && !operand->is_output && names_output(c, num_outputs)) {
      *has_letter = true;
      operand->allows_register = true;
    } else if (strchr(constraint_letters, *c)) {
      *has_letter = true;
      note_letter(operand, *c);
    } else if (!strchr(constraint_modifiers, *c)) {
      report_constraint(ec_bad_asm_constraint_letter, c, &operand->position);
      *has_letter = true;
      return;
    }
  }
}

static void check_constraint(an_asm_operand* operand, unsigned num_outputs) {
  bool has_output_modifier = is_output_modifier(operand->constraint[0]);
  bool has_letter = false;
  scan_constraint_characters(operand, num_outputs, &has_letter);
  if (!has_letter)
    pos_error(ec_missing_constraint_letter, &operand->position);
  else if (operand->is_output && !has_output_modifier)
    pos_error(ec_asm_output_must_have_output_mod, &operand->position);
  else if (!operand->is_output && has_output_modifier)
    pos_error(ec_asm_input_must_not_have_output_mod, &operand->position);
}

// ---- Operands ----

static bool at_narrow_string() {
  return curr_token == tok_string && const_for_curr_token.kind == con_string &&
         const_for_curr_token.string_char_kind == sck_ordinary;
}

// `[name]` in front of an operand.
static const char* scan_symbolic_name() {
  if (!loop_token(tok_lbracket))
    return nullptr;
  const char* name =
      curr_token == tok_identifier ? locator_for_curr_id.header->identifier : nullptr;
  required_token(tok_identifier, ec_exp_identifier);
  required_token(tok_rbracket, ec_exp_rbracket);
  return name;
}

static void check_symbolic_name(const an_asm_entry* entry, const an_asm_operand* operand) {
  for (const an_asm_operand* other = entry->operands; other && operand->name; other = other->next)
    if (other->name && strcmp(other->name, operand->name) == 0) {
      pos_st_error(ec_invalid_symbolic_asm_operand_name, &operand->position, operand->name);
      return;
    }
}

static void scan_operand_expression(an_asm_operand* operand) {
  required_token(tok_lparen, ec_exp_lparen);
  add_stop_token(tok_rparen);
  bool needs_object = operand->is_output || (operand->allows_memory && !operand->allows_register);
  operand->expr = scan_asm_operand_expression(operand->is_output, needs_object);
  remove_stop_token(tok_rparen);
  required_token(tok_rparen, ec_exp_rparen);
}

// Null, with nothing consumed, where no operand begins.
static an_asm_operand* scan_operand(const an_asm_entry* entry, bool is_output,
                                    unsigned num_outputs) {
  an_asm_operand* operand = alloc_asm_operand();
  operand->is_output = is_output;
  operand->position = pos_curr_token;
  operand->name = scan_symbolic_name();
  check_symbolic_name(entry, operand);
  if (!at_narrow_string()) {
    syntax_error(ec_exp_asm_operand);
    return nullptr;
  }
  operand->constraint =
      copy_string_to_region(curr_il_region_number, const_for_curr_token.value.string.text);
  get_token();
  check_constraint(operand, num_outputs);
  scan_operand_expression(operand);
  return operand;
}

static void asm_operand_list(an_asm_entry* entry, bool is_output) {
  an_asm_operand** link = &entry->operands;
  unsigned num_outputs = 0;
  for (; *link; link = &(*link)->next)
    ++num_outputs;
  add_stop_token(tok_comma);
  do {
    *link = scan_operand(entry, is_output, num_outputs);
    if (*link)
      link = &(*link)->next;
  } while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
}

// ---- Clobbers and labels ----

// The registers of the target have no names that a program could use; memory
// and the flags are what every asm statement is taken to change.
static void asm_clobbers_spec() {
  add_stop_token(tok_comma);
  do {
    if (!required_token_no_advance(tok_string, ec_exp_asm_clobber))
      continue;
    const char* name =
        const_for_curr_token.kind == con_string ? const_for_curr_token.value.string.text : "";
    if (strcmp(name, "memory") != 0 && strcmp(name, "cc") != 0)
      pos_st_error(ec_bad_reg_name, &pos_curr_token, name);
    get_token();
  } while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
}

// Where an `asm goto` may jump.
static void asm_labels_spec(an_asm_entry* entry) {
  a_label_list_entry** link = &entry->labels;
  add_stop_token(tok_comma);
  do {
    if (!required_token_no_advance(tok_identifier, ec_exp_asm_label))
      continue;
    *link = alloc_label_list();
    (*link)->label = scan_label_reference();
    link = &(*link)->next;
  } while (loop_token(tok_comma));
  remove_stop_token(tok_comma);
}

// ---- The sections ----

// The assembler gets the text alone, in which nothing can stand for an operand.
static void check_text_has_no_operands(const an_asm_entry* entry) {
  if (!suppress_back_end && entry->operands && strchr(entry->text->value.string.text, '%'))
    pos_st_error(ec_not_supported, &entry->operands->position, "operand in an asm text");
}

static bool is_end_of_section() {
  return curr_token == tok_colon || curr_token == tok_colon_colon || curr_token == tok_rparen ||
         curr_token == tok_end_of_source;
}

void asm_operands_spec(an_asm_entry* entry) {
  enum { outputs = 1, inputs = 2, clobbers = 3, labels = 4 };
  int section = 0;
  entry->is_gnu_form = true;
  if (report_gnu_extensions)
    pos_warning(ec_asm_operand_spec_is_gnu_extension, &pos_curr_token);
  while (curr_token == tok_colon || curr_token == tok_colon_colon) {
    section += curr_token == tok_colon_colon ? 2 : 1;
    get_token();
    if (is_end_of_section())
      continue;
    if (section <= inputs)
      asm_operand_list(entry, section == outputs);
    else if (section == clobbers)
      asm_clobbers_spec();
    else if (section == labels && entry->is_goto)
      asm_labels_spec(entry);
    else
      break; // the closing parenthesis is missed
  }
  if (entry->text)
    check_text_has_no_operands(entry);
}

void extasm_one_time_init() {
  // No variable of this module is kept for each unit.
}
