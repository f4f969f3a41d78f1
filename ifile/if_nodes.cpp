#include "if_nodes.h"

#include "const_ints.h"
#include "if_write.h"
#include "if_write_util.h"
#include "type_pkg.h"

// -- The opcode table ---------------------------------------------------------

IF_NODE_INFO if_node_info[if_opcode_limit];

void if_enter_node(uint32_t opcode, const char* name, unsigned operands) {
  if (opcode >= if_opcode_limit)
    if_stop("\nINTERNAL ERROR: Invalid opcode, aborting");
  if_node_info[opcode] = {opcode, name, operands};
}

void if_node_table_init() {
  static bool filled = false;
  if (filled)
    return;
  filled = true;
#define IF_NODE(opcode, name, operands, form) if_enter_node(opcode, #name, operands);
#include "if_tags.def"
}

// -- Nodes --------------------------------------------------------------------

NODE* new_node(uint32_t opcode, TYPE* type) {
  return new NODE(opcode, type);
}

I_SYMTAB* NODE::name_symbol() const {
  return value.symbol;
}

int NODE::field_kind() const {
  return 1;
}

fkMDATA* NODE::field_mval() const {
  return value.field->mdata;
}

TYPE* NODE::field_csu() const {
  return value.field->csu;
}

uint32_t NODE::icon_uvalue() const {
  return static_cast<uint32_t>(value.integer);
}

int32_t NODE::icon_svalue() const {
  return static_cast<int32_t>(value.integer);
}

const char* NODE::lcon_value() const {
  return str_for_integer_value(value.integer, type != nullptr && type->is_signed());
}

const char* NODE::fcon_value() const {
  return value.text;
}

const char* NODE::scon_value() const {
  return value.text;
}

uint32_t NODE::scon_length() const {
  return length;
}

uint32_t NODE::label_id() const {
  return static_cast<uint32_t>(value.integer);
}

int32_t NODE::vreg_id() const {
  return 0;
}

uint32_t NODE::skip_count() const {
  return static_cast<uint32_t>(value.integer);
}

uint32_t NODE::case_count() const {
  return static_cast<uint32_t>(value.integer);
}

uint32_t NODE::ddnode_id() const {
  return 0;
}

uint32_t NODE::ddnode_locale() const {
  return 0;
}

int NODE::ddnode_flags() const {
  return 0;
}

uint32_t NODE::call_num_vargs() const {
  return static_cast<uint32_t>(value.integer);
}

const char* NODE::icall_name() const {
  return value.text;
}

uint32_t NODE::eh_entry_id() const {
  return eh_entry;
}

uint32_t NODE::get_edge_profile_value() const {
  return 0xFFFFFFFF;
}

void NODE::set_edge_profile_value(uint32_t) {}

void NODE::mk_name(I_SYMTAB*) {}

void NODE::mk_field(int, fkMDATA*, TYPE*) {}

void NODE::mk_icon(int64_t) {}

void NODE::mk_lcon(const char*) {}

void NODE::mk_fcon(const char*) {}

void NODE::mk_scon(const char*, uint32_t) {}

void NODE::mk_label(uint32_t) {}

void NODE::mk_vreg(int32_t) {}

void NODE::mk_skip(uint32_t) {}

void NODE::mk_switch(uint32_t) {}

void NODE::mk_ddnode(uint32_t, uint32_t, int) {}

void NODE::mk_call(uint32_t, uint32_t) {}

void NODE::mk_ucall(uint32_t) {}

void NODE::mk_icall(const char*) {}

// -- Records ------------------------------------------------------------------

namespace {

struct FORM_TABLE {
  an_if_form form[if_opcode_limit] = {};

  constexpr FORM_TABLE() {
#define IF_NODE(opcode, name, operands, operand_form) form[opcode] = iff_##operand_form;
#include "if_tags.def"
  }
};
constexpr FORM_TABLE form_table;

// The operand form of an opcode; an unknown opcode has no operand.
an_if_form form_of(uint32_t opcode) {
  return opcode < if_opcode_limit ? form_table.form[opcode] : iff_none;
}

} // namespace

void I_FILE::if_write_expr(BASE_NODE* node, const PSN* psn) {
  i_write_psn(psn);
  i_flush(iftag_expr);
  if (node != nullptr)
    if_write_expr_node(node);
}

void I_FILE::if_write_expr_node(BASE_NODE* node) {
  for (; node != nullptr; node = node->next) {
    i_write_i8(static_cast<int>(node->opcode));
    i_write_typeref(node->type);
    write_expr_operand(node);
    i_flush(iftag_expr_node);
    if (node->child != nullptr)
      if_write_expr_node(node->child);
  }
}

void I_FILE::write_expr_operand(BASE_NODE* node) {
  switch (form_of(node->opcode)) {
  case iff_none:
    break;
  case iff_label:
    if_write_expr_label(node);
    break;
  case iff_name:
    if_write_expr_name(node);
    break;
  case iff_scon:
    if_write_expr_scon(node);
    break;
  case iff_icon:
    if_write_expr_icon(node);
    break;
  case iff_fcon:
    if_write_expr_fcon(node);
    break;
  case iff_lcon:
    if_write_expr_lcon(node);
    break;
  case iff_field:
    if_write_expr_field(node);
    break;
  case iff_switch:
    if_write_expr_switch(node);
    break;
  case iff_call:
    if_write_expr_call(node);
    break;
  case iff_ucall:
    if_write_expr_ucall(node);
    break;
  case iff_skip:
    if_write_expr_skip(node);
    break;
  case iff_vreg:
    if_write_expr_vreg(node);
    break;
  case iff_ddnode:
    if_write_expr_ddnode(node);
    break;
  case iff_icall:
    if_write_expr_icall(node);
    break;
  case iff_pval:
    if_write_expr_pval(node);
    break;
  }
}

void I_FILE::if_write_expr_label(BASE_NODE* node) {
  i_write_uint(node->label_id());
}

void I_FILE::if_write_expr_name(BASE_NODE* node) {
  I_SYMTAB* symbol = node->name_symbol();
  if (!symbol->is_entered())
    if_stop(">> Symbol %s is not in the symbol table", symbol->sym_name());
  i_write_uint(static_cast<uint32_t>(symbol->sym_level()));
  i_write_uint(static_cast<uint32_t>(symbol->id));
}

void I_FILE::if_write_expr_scon(BASE_NODE* node) {
  i_write_uint(node->scon_length());
  i_write_string(node->scon_value(), node->scon_length());
}

void I_FILE::if_write_expr_icon(BASE_NODE* node) {
  if (node->type != nullptr && node->type->is_signed())
    i_write_sint(node->icon_svalue());
  else
    i_write_uint(node->icon_uvalue());
}

void I_FILE::if_write_expr_fcon(BASE_NODE* node) {
  i_write_string(node->fcon_value(), 0);
}

void I_FILE::if_write_expr_lcon(BASE_NODE* node) {
  i_write_string(node->lcon_value(), 0);
}

void I_FILE::if_write_expr_field(BASE_NODE* node) {
  i_write_i8(node->field_kind());
  i_write_uint(node->field_mval()->number);
  i_write_typeref(node->field_csu());
}

void I_FILE::if_write_expr_switch(BASE_NODE* node) {
  i_write_uint(node->case_count());
}

void I_FILE::if_write_expr_call(BASE_NODE* node) {
  i_write_uint(node->call_num_vargs());
  i_write_uint(node->eh_entry_id());
}

void I_FILE::if_write_expr_ucall(BASE_NODE* node) {
  i_write_uint(node->eh_entry_id());
}

void I_FILE::if_write_expr_skip(BASE_NODE* node) {
  i_write_uint(node->skip_count());
}

void I_FILE::if_write_expr_vreg(BASE_NODE* node) {
  i_write_sint(node->vreg_id());
}

void I_FILE::if_write_expr_ddnode(BASE_NODE* node) {
  i_write_uint(node->ddnode_id());
  i_write_uint(node->ddnode_locale());
  i_write_i8(node->ddnode_flags());
}

void I_FILE::if_write_expr_icall(BASE_NODE* node) {
  i_write_string(node->icall_name(), 0);
}

void I_FILE::if_write_expr_pval(BASE_NODE* node) {
  i_write_uint(node->get_edge_profile_value());
}
