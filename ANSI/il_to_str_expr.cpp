// Texts for constants and expressions, as the source language writes them.
// What has no spelling there stands in angle brackets.

#include "il_to_str.h"

#include "const_ints.h"
#include "host_envir.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "mem_manage.h"
#include "stack_limit.h"
#include "target.h"
#include "types.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

void add(an_il_to_str_control* control, const char* text) {
  f_add_string_to_text_buffer(control->buffer, text);
}

void add_number(an_il_to_str_control* control, uint64_t value, bool is_signed) {
  char digits[24];
  if (is_signed)
    snprintf(digits, sizeof digits, "%" PRId64, static_cast<int64_t>(value));
  else
    snprintf(digits, sizeof digits, "%" PRIu64, value);
  add(control, digits);
}

void add_type_in_parens(const a_type* type, an_il_to_str_control* control) {
  add(control, "(");
  form_type(type, control);
  add(control, ")");
}

// --- Integers and characters.

void add_character(uint64_t character, char quote, an_il_to_str_control* control) {
  static const char escaped[] = "\a\b\t\n\v\f\r\\";
  static const char letters[] = "abtnvfr\\";
  char text[24];
  const char* place =
      character == 0 || character > 0x7f ? nullptr : strchr(escaped, static_cast<char>(character));
  if (place != nullptr)
    snprintf(text, sizeof text, "\\%c", letters[place - escaped]);
  else if (character == static_cast<unsigned char>(quote))
    snprintf(text, sizeof text, "\\%c", quote);
  else if (character >= 0x20 && character < 0x7f)
    snprintf(text, sizeof text, "%c", static_cast<char>(character));
  else if (character < 0x100)
    snprintf(text, sizeof text, "\\%03o", static_cast<unsigned>(character));
  else
    snprintf(text, sizeof text, "\\x%" PRIx64, character);
  add(control, text);
}

const char* prefix_of_char_kind(unsigned char_kind) {
  static const char* const prefixes[] = {"", "L", "u", "U"};
  return prefixes[char_kind];
}

bool is_enum(const a_type* type) {
  return type->kind == tk_integer && type->variant.integer.is_enum;
}

bool is_bool(const a_type* type) {
  return type->kind == tk_integer && type->variant.integer.is_bool;
}

// The enumerator that has the value; null when the enum names none.
const a_constant* enumerator_with_value(const a_type* enum_type, uint64_t value) {
  const a_constant* enumerator = first_enumerator_of_enum(enum_type);
  while (enumerator != nullptr && enumerator->value.int_value != value)
    enumerator = enumerator->next;
  return enumerator;
}

// The named constant that the value shows as; null for none.
const a_constant* named_value(const a_constant* constant, const a_type* type) {
  if (constant->source_corresp.name != nullptr)
    return constant;
  return is_enum(type) ? enumerator_with_value(type, constant->value.int_value) : nullptr;
}

void form_character(const a_constant* constant, an_il_to_str_control* control) {
  const uint64_t value = constant->value.int_value;
  const uint64_t mask = constant->string_char_kind == sck_ordinary ? 0xff : 0xffffffff;
  add(control, prefix_of_char_kind(constant->string_char_kind));
  add(control, "'");
  add_character(value & mask, '\'', control);
  add(control, "'");
}

void form_integer(const a_constant* constant, an_il_to_str_control* control) {
  const uint64_t value = constant->value.int_value;
  const a_type* type = skip_typerefs(constant->type);
  const a_constant* enumerator = named_value(constant, type);
  if (enumerator != nullptr) {
    form_entity_name(&enumerator->source_corresp, iek_constant, control);
  } else if (is_bool(type) && value <= 1 && control->cplusplus_spelling) {
    add(control, value == 0 ? "false" : "true");
  } else if (type->kind == tk_nullptr ||
             (type->kind == tk_pointer && value == 0 && control->cplusplus_spelling)) {
    add(control, "nullptr");
  } else if (constant->is_character_literal) {
    form_character(constant, control);
  } else {
    if (is_enum(type) || (type->kind == tk_pointer && value != 0))
      add_type_in_parens(constant->type, control);
    add_number(control, value, type->kind == tk_integer && int_constant_is_signed(constant));
  }
}

void form_string(const a_constant* constant, an_il_to_str_control* control) {
  const a_string_value& string = constant->value.string;
  const uint64_t char_size = static_cast<uint64_t>(character_size[constant->string_char_kind]);
  add(control, prefix_of_char_kind(constant->string_char_kind));
  add(control, "\"");
  // The terminator doesn't show.
  for (uint64_t i = 0; i + char_size < string.length; i += char_size)
    add_character(extract_character_from_string(string.text + i, static_cast<int>(char_size)), '"',
                  control);
  add(control, "\"");
}

// --- Floating point.

constexpr int32_t exponent_of_zero = -32767;
constexpr int32_t exponent_of_infinity = 32767;

// What lies beyond the host's widest type has no digits that matter here.
long double host_value(const a_float_value& value) {
  if (value.exponent == exponent_of_zero)
    return 0;
  long double result = 0;
  for (int i = 5; i >= 0; --i)
    result = (result + value.mantissa[i]) / 65536;
  return ldexpl(result, value.exponent);
}

void form_float(const a_float_value& value, a_float_kind kind, an_il_to_str_control* control) {
  if (value.sign != 0)
    add(control, "-");
  if (value.exponent == exponent_of_infinity) {
    add(control, value.mantissa[0] == 0 ? "infinity" : "nan");
    return;
  }
  char text[64];
  snprintf(text, sizeof text, "%.*Lg", kind == fk_float ? 9 : 17, host_value(value));
  add(control, text);
  if (strpbrk(text, ".e") == nullptr)
    add(control, ".0");
}

a_float_kind float_kind_of(const a_constant* constant) {
  const a_type* type = skip_typerefs(constant->type);
  return type->kind == tk_float || type->kind == tk_imaginary || type->kind == tk_complex
             ? static_cast<a_float_kind>(type->variant.float_kind)
             : fk_double;
}

void form_complex(const a_constant* constant, an_il_to_str_control* control) {
  const a_complex_value* value = constant->value.complex_value;
  const a_float_kind kind = float_kind_of(constant);
  add(control, "(");
  form_float(value->real, kind, control);
  add(control, value->imaginary.sign != 0 ? "" : "+");
  form_float(value->imaginary, kind, control);
  add(control, "i)");
}

// --- Addresses.

void form_member_name(const a_field* field, an_il_to_str_control* control) {
  const char* name = field->source_corresp.name;
  add(control, name == nullptr || field->source_corresp.is_unnamed ? "<unnamed>" : name);
}

void form_subobject_path(const a_subobject_path* path, an_il_to_str_control* control) {
  for (; path != nullptr; path = path->next) {
    if (path->kind == iek_field) {
      add(control, ".");
      form_member_name(path->step.field, control);
    } else if (path->kind == iek_type) {
      add(control, "[");
      add_number(control, path->index, false);
      add(control, "]");
    }
  }
}

void form_address_base(const an_address_value& address, an_il_to_str_control* control) {
  switch (address.base_kind) {
  case abk_routine:
    add(control, "&");
    form_entity_name(&address.base.routine->source_corresp, iek_routine, control);
    break;
  case abk_variable:
    add(control, "&");
    form_entity_name(&address.base.variable->source_corresp, iek_variable, control);
    break;
  case abk_constant:
    form_constant(address.base.constant, control);
    break;
  case abk_temporary:
    add(control, "&");
    add_type_in_parens(address.base.constant->type, control);
    form_constant(address.base.constant, control);
    break;
  case abk_uuid:
    add(control, "__uuidof");
    add_type_in_parens(address.base.type, control);
    break;
  case abk_typeid:
    add(control, "typeid");
    add_type_in_parens(address.base.type, control);
    break;
  case abk_label:
    add(control, "&&");
    form_entity_name(&address.base.label->source_corresp, iek_label, control);
    break;
  }
}

// The offset is in bytes.
void form_address(const an_address_value& address, an_il_to_str_control* control) {
  form_address_base(address, control);
  form_subobject_path(address.subobject_path, control);
  if (address.subobject_path != nullptr || address.offset == 0)
    return;
  add(control, address.offset > 0 ? "+" : "");
  add_number(control, static_cast<uint64_t>(address.offset), true);
}

void form_ptr_to_member(const a_ptr_to_member_value& value, an_il_to_str_control* control) {
  if (value.member.field == nullptr) {
    add(control, "nullptr");
    return;
  }
  add(control, "&");
  if (value.is_routine)
    form_entity_name(&value.member.routine->source_corresp, iek_routine, control);
  else
    form_entity_name(&value.member.field->source_corresp, iek_field, control);
}

// --- Aggregates.

void form_designator(const a_designator_value& value, an_il_to_str_control* control) {
  if (!value.is_field) {
    add(control, "[");
    form_constant(value.designated.index, control);
    add(control, "]");
    return;
  }
  add(control, ".");
  if (value.is_text_or_index)
    add(control, value.designated.field_name);
  else
    form_member_name(value.designated.field, control);
}

void form_aggregate(const an_aggregate_value& aggregate, an_il_to_str_control* control) {
  add(control, "{");
  for (const a_constant* e = aggregate.first; e != nullptr; e = e->next) {
    form_constant(e, control);
    if (e->next == nullptr)
      break;
    if (e->kind != con_designator)
      add(control, ", ");
    else if (e->next->kind != con_designator)
      add(control, " = ");
  }
  add(control, "}");
}

void form_repeat(const a_repeat_value& repeat, an_il_to_str_control* control) {
  form_constant(repeat.element, control);
  add(control, " <");
  add_number(control, repeat.count, false);
  add(control, " times>");
}

// The initial value of a temporary or of an element.
void form_dynamic_init(const a_dynamic_init* init, an_il_to_str_control* control) {
  switch (init->kind) {
  case dik_constant:
  case dik_nonconstant_aggregate:
    form_constant(init->variant.constant, control);
    break;
  case dik_expr:
  case dik_class_expr:
    form_expression(init->variant.expr, control);
    break;
  default:
    add(control, "<initializer>");
  }
}

// --- Values that wait for template arguments.

void form_operand_of_sizeof(const char* keyword, const a_template_param_value& value,
                            an_il_to_str_control* control) {
  add(control, keyword);
  if (value.param_expr.expr == nullptr) {
    add_type_in_parens(value.param_data.type, control);
    return;
  }
  add(control, "(");
  form_expression(value.param_expr.expr, control);
  add(control, ")");
}

void form_template_param(const a_constant* constant, an_il_to_str_control* control) {
  const a_template_param_value& value = constant->value.template_param;
  switch (value.param_kind) {
  case tpck_invalid:
    add(control, "<expression>");
    break;
  case tpck_expression:
    form_expression(value.param_data.expr, control);
    break;
  case tpck_param_ref:
  case tpck_proxy_nontype:
    form_entity_name(&constant->source_corresp, iek_constant, control);
    break;
  case tpck_cast:
    add_type_in_parens(constant->type, control);
    form_constant(value.param_data.constant, control);
    break;
  case tpck_implicit_cast:
    form_constant(value.param_data.constant, control);
    break;
  case tpck_unknown_function:
    form_constant(value.param_data.constant, control);
    if (value.param_expr.template_args != nullptr)
      form_template_args(value.param_expr.template_args, control);
    break;
  case tpck_sizeof:
    form_operand_of_sizeof("sizeof", value, control);
    break;
  case tpck_alignof:
    form_operand_of_sizeof("alignof", value, control);
    break;
  case tpck_uuidof:
    form_operand_of_sizeof("__uuidof", value, control);
    break;
  case tpck_typeid:
    form_operand_of_sizeof("typeid", value, control);
    break;
  case tpck_noexcept:
    form_operand_of_sizeof("noexcept", value, control);
    break;
  case tpck_type:
    form_type(value.param_data.type, control);
    break;
  }
}

// --- Expressions. The pieces still to be written stand on a stack of their
// own, since operands nest as deep as a source line is long.

// A text, a type or an expression. An expression that binds less than the
// minimum gets parentheses.
struct a_piece {
  const char* text;
  const a_type* type;
  const an_expr_node* expr;
  an_operator_precedence minimum;
};

a_piece text_piece(const char* text) {
  return {text, nullptr, nullptr, prec_none};
}

a_piece type_piece(const a_type* type) {
  return {nullptr, type, nullptr, prec_none};
}

a_piece expr_piece(const an_expr_node* expr, an_operator_precedence minimum) {
  return {nullptr, nullptr, expr, minimum};
}

typedef std::vector<a_piece> a_piece_list;

void add_list_pieces(const an_expr_node* list, a_piece_list& pieces) {
  for (const an_expr_node* node = list; node != nullptr; node = node->next) {
    if (node != list)
      pieces.push_back(text_piece(", "));
    pieces.push_back(expr_piece(node, prec_assignment));
  }
}

// The operator and the operands of an operation, dependent or not; eok_last
// for any other node.
an_expr_operator_kind operator_of(const an_expr_node* node, const an_expr_node** operands) {
  *operands = nullptr;
  if (node->kind == expr_operation) {
    *operands = node->variant.operation.operands;
    return node->variant.operation.op;
  }
  if (node->kind == expr_dependent_op) {
    *operands = node->variant.dependent_op.operands;
    return node->variant.dependent_op.op;
  }
  return eok_last;
}

bool selects_unnamed_member(const an_expr_node* object) {
  const an_expr_node* member = object->next;
  return member != nullptr && member->kind == expr_field &&
         member->variant.field.ptr->source_corresp.is_unnamed;
}

// The operand that stands in the source for a node that was added.
const an_expr_node* operand_shown_instead(const an_expr_node* node) {
  if (node->kind == expr_with_lifetime)
    return node->variant.with_lifetime.expr;
  if (node->kind == expr_typed_expr)
    return node->variant.typed_expr.expr;
  const an_expr_node* operands;
  const an_expr_operator_kind op = operator_of(node, &operands);
  const an_operator_form form = description_of_operator(op).form;
  const bool is_implicit = node->kind == expr_operation && node->variant.operation.is_implicit;
  if (form == of_transparent || (is_implicit && (form == of_prefix || form == of_cast)))
    return operands;
  return form == of_select && selects_unnamed_member(operands) ? operands : nullptr;
}

const an_expr_node* shown_node(const an_expr_node* node) {
  while (const an_expr_node* operand = operand_shown_instead(node))
    node = operand;
  return node;
}

bool is_negative_number(const a_constant* constant) {
  switch (constant->kind) {
  case con_integer:
    return constant->source_corresp.name == nullptr && !constant->is_character_literal &&
           type_kind(constant->type) == tk_integer && int_constant_is_signed(constant) &&
           static_cast<int64_t>(constant->value.int_value) < 0;
  case con_float:
  case con_imaginary:
    return constant->value.float_value.sign != 0;
  default:
    return false;
  }
}

an_operator_precedence precedence_of_constant(const a_constant* constant) {
  if (constant->kind == con_address)
    return constant->value.address.offset != 0 ? prec_additive : prec_unary;
  if (constant->kind == con_address_difference)
    return prec_additive;
  return constant->kind == con_ptr_to_member || is_negative_number(constant) ? prec_unary
                                                                             : prec_primary;
}

// Of a node that shows.
an_operator_precedence precedence_of_node(const an_expr_node* node) {
  switch (node->kind) {
  case expr_operation:
  case expr_dependent_op: {
    const an_expr_node* operands;
    return description_of_operator(operator_of(node, &operands)).precedence;
  }
  case expr_constant:
    return precedence_of_constant(node->variant.constant.ptr);
  case expr_throw:
    return prec_assignment;
  case expr_new_delete:
  case expr_sizeof_like:
  case expr_alignof_like:
    return prec_unary;
  default:
    return prec_primary;
  }
}

// The character with which the node's text begins, where it is an operator.
char first_operator_character(const an_expr_node* node) {
  node = shown_node(node);
  const an_expr_node* operands;
  const an_operator_description& description =
      description_of_operator(operator_of(node, &operands));
  if (description.form == of_prefix)
    return description.text[0];
  if (node->kind != expr_constant)
    return '\0';
  const a_constant* constant = node->variant.constant.ptr;
  if (is_negative_number(constant))
    return '-';
  return constant->kind == con_address ? '&' : '\0';
}

const char* name_of_cast(const an_expr_node* cast) {
  if (cast->kind != expr_operation)
    return nullptr;
  if (cast->variant.operation.checked_cast)
    return "dynamic_cast<";
  if (cast->variant.operation.is_reinterpret_cast)
    return "reinterpret_cast<";
  if (cast->variant.operation.is_static_cast)
    return "static_cast<";
  return cast->variant.operation.is_const_cast ? "const_cast<" : nullptr;
}

void add_cast_pieces(const an_expr_node* cast, const an_expr_node* operand, a_piece_list& pieces) {
  const char* name = name_of_cast(cast);
  const bool is_functional =
      cast->kind == expr_operation && cast->variant.operation.is_functional_cast;
  if (name != nullptr || is_functional) {
    pieces.insert(pieces.end(), {text_piece(name != nullptr ? name : ""), type_piece(cast->type),
                                 text_piece(name != nullptr ? ">(" : "("),
                                 expr_piece(operand, prec_none), text_piece(")")});
    return;
  }
  pieces.insert(pieces.end(), {text_piece("("), type_piece(cast->type), text_piece(")"),
                               expr_piece(operand, prec_unary)});
}

void add_member_call_pieces(const char* text, const an_expr_node* object, a_piece_list& pieces) {
  const bool through_ptr_to_member = text[strlen(text) - 1] == '*';
  const an_expr_node* function = object->next;
  pieces.insert(pieces.end(),
                {text_piece(through_ptr_to_member ? "(" : ""), expr_piece(object, prec_postfix),
                 text_piece(text), expr_piece(function, prec_unary),
                 text_piece(through_ptr_to_member ? ")(" : "(")});
  add_list_pieces(function == nullptr ? nullptr : function->next, pieces);
  pieces.push_back(text_piece(")"));
}

void add_infix_pieces(const an_operator_description& description, const an_expr_node* left,
                      a_piece_list& pieces) {
  const an_operator_precedence level = description.precedence;
  const an_operator_precedence tighter = static_cast<an_operator_precedence>(level + 1);
  const bool is_assignment = description.form == of_assign;
  pieces.push_back(expr_piece(left, is_assignment ? prec_unary : level));
  if (level != prec_comma && level != prec_ptr_to_member)
    pieces.push_back(text_piece(" "));
  pieces.push_back(text_piece(description.text));
  if (level != prec_ptr_to_member)
    pieces.push_back(text_piece(" "));
  pieces.push_back(expr_piece(left->next, is_assignment ? level : tighter));
}

void add_question_pieces(const an_operator_description& description, const an_expr_node* condition,
                         a_piece_list& pieces) {
  const an_expr_node* last = condition->next;
  pieces.push_back(expr_piece(condition, prec_logical_or));
  if (description.form == of_binary_question) {
    pieces.push_back(text_piece(" ?: "));
  } else {
    pieces.insert(pieces.end(),
                  {text_piece(" ? "), expr_piece(last, prec_none), text_piece(" : ")});
    last = last == nullptr ? nullptr : last->next;
  }
  pieces.push_back(expr_piece(last, prec_question));
}

void add_operation_pieces(const an_expr_node* node, a_piece_list& pieces) {
  const an_expr_node* first;
  const an_operator_description& description = description_of_operator(operator_of(node, &first));
  if (first == nullptr) {
    pieces.push_back(text_piece("<expression>"));
    return;
  }
  switch (description.form) {
  case of_none:
    pieces.push_back(text_piece("<expression>"));
    break;
  case of_prefix: {
    // "-(-a)", not "--a".
    const bool would_merge = first_operator_character(first) == description.text[0];
    pieces.push_back(text_piece(description.text));
    pieces.push_back(expr_piece(first, would_merge ? prec_postfix : prec_unary));
    break;
  }
  case of_postfix:
    pieces.push_back(expr_piece(first, prec_postfix));
    pieces.push_back(text_piece(description.text));
    break;
  case of_infix:
  case of_assign:
    add_infix_pieces(description, first, pieces);
    break;
  case of_cast:
    add_cast_pieces(node, first, pieces);
    break;
  case of_transparent:
    pieces.push_back(expr_piece(first, prec_none));
    break;
  case of_parens:
    pieces.insert(pieces.end(), {text_piece("("), expr_piece(first, prec_none), text_piece(")")});
    break;
  case of_select:
    pieces.insert(pieces.end(), {expr_piece(first, prec_postfix), text_piece(description.text),
                                 expr_piece(first->next, prec_postfix)});
    break;
  case of_subscript:
    pieces.insert(pieces.end(), {expr_piece(first, prec_postfix), text_piece("["),
                                 expr_piece(first->next, prec_none), text_piece("]")});
    break;
  case of_question:
  case of_binary_question:
    add_question_pieces(description, first, pieces);
    break;
  case of_call:
    pieces.push_back(expr_piece(first, prec_postfix));
    pieces.push_back(text_piece("("));
    add_list_pieces(first->next, pieces);
    pieces.push_back(text_piece(")"));
    break;
  case of_member_call:
    add_member_call_pieces(description.text, first, pieces);
    break;
  }
}

void add_new_delete_pieces(const a_new_delete_supplement* supplement, a_piece_list& pieces) {
  if (supplement->is_global)
    pieces.push_back(text_piece("::"));
  if (!supplement->is_new) {
    pieces.push_back(text_piece(supplement->is_array ? "delete[] " : "delete "));
    pieces.push_back(expr_piece(supplement->arg_list, prec_unary));
    return;
  }
  pieces.push_back(text_piece("new "));
  if (supplement->placement_expr != nullptr) {
    pieces.push_back(text_piece("("));
    add_list_pieces(supplement->placement_expr, pieces);
    pieces.push_back(text_piece(") "));
  }
  pieces.push_back(type_piece(supplement->type));
}

void add_sizeof_pieces(const char* keyword, const an_expr_node* node, a_piece_list& pieces) {
  pieces.push_back(text_piece(keyword));
  if (node->variant.sizeof_like.is_type)
    pieces.push_back(type_piece(node->variant.sizeof_like.operand.type));
  else
    pieces.push_back(expr_piece(node->variant.sizeof_like.operand.expr, prec_none));
  pieces.push_back(text_piece(")"));
}

void add_bracketed_list_pieces(const char* open, const an_expr_node* list, const char* close,
                               a_piece_list& pieces) {
  pieces.push_back(text_piece(open));
  add_list_pieces(list, pieces);
  pieces.push_back(text_piece(close));
}

// The parts of nodes that have expressions in them.
void add_pieces_of_node(const an_expr_node* node, an_il_to_str_control* control,
                        a_piece_list& pieces) {
  switch (node->kind) {
  case expr_operation:
  case expr_dependent_op:
    add_operation_pieces(node, pieces);
    break;
  case expr_new_delete:
    add_new_delete_pieces(node->variant.new_delete, pieces);
    break;
  case expr_condition:
    pieces.push_back(expr_piece(node->variant.condition->value_expr, prec_none));
    break;
  case expr_sizeof_like:
    add_sizeof_pieces("sizeof(", node, pieces);
    break;
  case expr_alignof_like:
    add_sizeof_pieces(control->cplusplus_spelling ? "alignof(" : "_Alignof(", node, pieces);
    break;
  case expr_typeid_like:
    add_sizeof_pieces("typeid(", node, pieces);
    break;
  case expr_braced_list:
    add_bracketed_list_pieces("{", node->variant.braced_list, "}", pieces);
    break;
  case expr_with_list:
    pieces.push_back(expr_piece(node->variant.with_list.expr, prec_postfix));
    add_bracketed_list_pieces("(", node->variant.with_list.list, ")", pieces);
    break;
  case expr_call_like:
    add_bracketed_list_pieces("(", node->variant.call_like.list, ")", pieces);
    break;
  default:
    break;
  }
}

// Writes the nodes that have no expressions in them; nothing for the others.
void form_simple_node(const an_expr_node* node, an_il_to_str_control* control) {
  switch (node->kind) {
  case expr_error:
    add(control, "<error>");
    break;
  case expr_constant:
    form_constant(node->variant.constant.ptr, control);
    break;
  case expr_variable:
  case expr_vla_dealloc:
    form_entity_name(&node->variant.variable.ptr->source_corresp, iek_variable, control);
    break;
  case expr_field:
    form_member_name(node->variant.field.ptr, control);
    break;
  case expr_routine:
    form_entity_name(&node->variant.routine.ptr->source_corresp, iek_routine, control);
    break;
  case expr_temp_init:
  case expr_reuse_value:
    form_dynamic_init(node->variant.dynamic_init, control);
    break;
  case expr_lambda:
    add(control, "<lambda>");
    break;
  case expr_throw: {
    const a_throw_supplement* supplement = node->variant.throw_info;
    add(control, "throw");
    if (supplement != nullptr && supplement->dynamic_init != nullptr) {
      add(control, " ");
      form_dynamic_init(supplement->dynamic_init, control);
    }
    break;
  }
  case expr_statement:
    add(control, "({...})");
    break;
  case expr_forward_params:
    add(control, "...");
    break;
  case expr_type_only:
    if (node->variant.type_only.ptr == nullptr)
      add(control, "<default>");
    else
      form_type(node->variant.type_only.ptr, control);
    break;
  case expr_param_ref:
    if (node->variant.param_ref.number == 0) {
      add(control, "this");
      break;
    }
    add(control, "<parameter ");
    add_number(control, node->variant.param_ref.number, false);
    add(control, ">");
    break;
  case expr_dependent_other:
    add(control, "<expression>");
    break;
  default:
    break;
  }
}

// Writes the beginning of a node, and leaves the rest on the stack.
void start_node(const a_piece& piece, an_il_to_str_control* control, a_piece_list& stack) {
  const an_expr_node* node = shown_node(piece.expr);
  const bool in_parens = precedence_of_node(node) < piece.minimum;
  a_piece_list pieces;
  if (in_parens)
    add(control, "(");
  form_simple_node(node, control);
  add_pieces_of_node(node, control, pieces);
  if (in_parens)
    pieces.push_back(text_piece(")"));
  stack.insert(stack.end(), pieces.rbegin(), pieces.rend());
}

} // namespace

void form_constant(const a_constant* constant, an_il_to_str_control* control) {
  check_stack_limit();
  switch (constant->kind) {
  case con_error:
    add(control, "<error-constant>");
    break;
  case con_integer:
    form_integer(constant, control);
    break;
  case con_string:
    form_string(constant, control);
    break;
  case con_float:
    form_float(constant->value.float_value, float_kind_of(constant), control);
    break;
  case con_imaginary:
    form_float(constant->value.float_value, float_kind_of(constant), control);
    add(control, "i");
    break;
  case con_complex:
    form_complex(constant, control);
    break;
  case con_address:
    form_address(constant->value.address, control);
    break;
  case con_ptr_to_member:
    form_ptr_to_member(constant->value.ptr_to_member, control);
    break;
  case con_address_difference:
    form_constant(constant->value.address_difference.minuend, control);
    add(control, " - ");
    form_constant(constant->value.address_difference.subtrahend, control);
    break;
  case con_dynamic_init:
    form_dynamic_init(constant->value.dynamic_init, control);
    break;
  case con_aggregate:
    form_aggregate(constant->value.aggregate, control);
    break;
  case con_repeat:
    form_repeat(constant->value.repeat, control);
    break;
  case con_template_param:
    form_template_param(constant, control);
    break;
  case con_designator:
    form_designator(constant->value.designator, control);
    break;
  }
}

void form_expression(const an_expr_node* expr, an_il_to_str_control* control) {
  check_stack_limit();
  a_piece_list stack = {expr_piece(expr, prec_none)};
  while (!stack.empty()) {
    const a_piece piece = stack.back();
    stack.pop_back();
    if (piece.text != nullptr)
      add(control, piece.text);
    else if (piece.type != nullptr)
      form_type(piece.type, control);
    else if (piece.expr != nullptr)
      start_node(piece, control, stack);
  }
}
