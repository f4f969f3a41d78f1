// Calls of functions like printf and scanf: the arguments against the format
// string (C99 7.19.6.1, 7.19.6.2), where that is a literal.

#include <cstring>
#include <string>

#include "error.h"
#include "expr_int.h"
#include "folding.h"
#include "il.h"
#include "mode_words.h"
#include "overload.h"
#include "types.h"

namespace {

enum a_length : uint8_t { len_none, len_hh, len_h, len_l, len_ll, len_j, len_z, len_t, len_L };

enum an_operand_class : uint8_t { oc_integer, oc_float, oc_char, oc_string, oc_pointer, oc_count };

struct a_conversion {
  char letter;
  an_operand_class operand;
  bool is_minimal; // one of those that the least support of printf knows
};

// One conversion specification; a suppressed one has no operand.
struct a_directive {
  const a_conversion* conversion; // null for `%%`
  a_length length;
  int num_stars; // widths and precisions that are arguments
  bool is_suppressed;
  std::string modifiers; // all between the `%` and the letter
};

// A format that is being read, and the arguments it has not used yet.
struct a_format_check {
  const char* p;
  const char* end;
  bool is_scanf;
  bool is_over; // after a message that makes the rest meaningless
  an_expr_node* format;
  an_expr_node* next;
  const a_source_position* call_end;
};

} // namespace

static const a_conversion conversions[] = {
    {'d', oc_integer, true}, {'i', oc_integer, true}, {'u', oc_integer, false},
    {'o', oc_integer, true}, {'x', oc_integer, true}, {'X', oc_integer, false},
    {'f', oc_float, false},  {'F', oc_float, false},  {'e', oc_float, false},
    {'E', oc_float, false},  {'g', oc_float, false},  {'G', oc_float, false},
    {'a', oc_float, false},  {'A', oc_float, false},  {'c', oc_char, true},
    {'s', oc_string, true},  {'[', oc_string, false}, {'p', oc_pointer, false},
    {'n', oc_count, false}};

static const struct {
  const char* text;
  a_length length;
} lengths[] = {{"hh", len_hh}, {"h", len_h}, {"ll", len_ll}, {"l", len_l},
               {"j", len_j},   {"z", len_z}, {"t", len_t},   {"L", len_L}};

// ---- Messages ----

static void format_warning(a_format_check* check, an_error_code code,
                           const a_source_position* position) {
  expr_pos_warning(code, position);
  check->is_over = true;
}

static void report_mismatch(const an_expr_node* argument) {
  if (expr_diagnostic_should_be_issued(es_warning, ec_printf_arg_mismatch, &argument->position))
    pos_ty_warning(ec_printf_arg_mismatch, &argument->position, argument->type);
}

static void report_lack_of_support(const a_format_check* check, an_error_code code,
                                   const std::string& text) {
  if (expr_diagnostic_should_be_issued(es_warning, code, &check->format->position))
    pos_st_warning(code, &check->format->position, text.c_str());
}

// ---- Reading the format ----

static void skip_digits_or_star(a_format_check* check, a_directive* directive) {
  if (check->p < check->end && *check->p == '*') {
    ++check->p;
    ++directive->num_stars;
    return;
  }
  while (check->p < check->end && *check->p >= '0' && *check->p <= '9')
    ++check->p;
}

static void scan_length(a_format_check* check, a_directive* directive) {
  for (const auto& row : lengths) {
    size_t size = strlen(row.text);
    if (static_cast<size_t>(check->end - check->p) >= size &&
        memcmp(check->p, row.text, size) == 0) {
      check->p += size;
      directive->length = row.length;
      return;
    }
  }
}

// Behind the `[`: the set of characters, whose first may be a `]`.
static bool skip_scan_set(a_format_check* check) {
  if (check->p < check->end && *check->p == '^')
    ++check->p;
  if (check->p < check->end && *check->p == ']')
    ++check->p;
  while (check->p < check->end && *check->p != ']')
    ++check->p;
  return check->p++ < check->end;
}

static void scan_modifiers(a_format_check* check, a_directive* directive) {
  const char* start = check->p;
  if (check->is_scanf) {
    skip_digits_or_star(check, directive);
    directive->is_suppressed = directive->num_stars != 0;
    directive->num_stars = 0;
    skip_digits_or_star(check, directive);
  } else {
    while (check->p < check->end && strchr("-+ #0", *check->p))
      ++check->p;
    skip_digits_or_star(check, directive);
    if (check->p < check->end && *check->p == '.') {
      ++check->p;
      skip_digits_or_star(check, directive);
    }
  }
  scan_length(check, directive);
  directive->modifiers.assign(start, check->p);
}

static const a_conversion* find_conversion(char letter, bool is_scanf) {
  for (const a_conversion& row : conversions)
    if (row.letter == letter && (is_scanf || letter != '['))
      return &row;
  return nullptr;
}

// Behind the `%`. False after a message for what is no conversion.
static bool scan_directive(a_format_check* check, a_directive* directive) {
  scan_modifiers(check, directive);
  if (check->p < check->end) {
    char letter = *check->p++;
    directive->conversion = find_conversion(letter, check->is_scanf);
    bool is_percent = letter == '%' && directive->modifiers.empty();
    if (is_percent || (directive->conversion && (letter != '[' || skip_scan_set(check))))
      return true;
  }
  format_warning(check, ec_bad_printf_format_string, &check->format->position);
  return false;
}

// The option tells how much of printf the program will have.
static void check_support(const a_format_check* check, const a_directive* directive) {
  const bool is_minimal_support = printf_support == 2;
  const a_conversion* conversion = directive->conversion;
  bool is_known = conversion->is_minimal ||
                  (!is_minimal_support && (printf_support != 0 || conversion->operand != oc_float));
  if (!is_known)
    report_lack_of_support(check, ec_printf_support_disallowed_conversion,
                           std::string("%") + conversion->letter);
  else if (is_minimal_support && !directive->modifiers.empty())
    report_lack_of_support(check, ec_printf_support_disallowed_modifier, directive->modifiers);
}

// ---- Types ----

static int integer_kind_of_length(a_length length, bool is_scanf) {
  switch (length) {
  case len_hh:
    return is_scanf ? ik_signed_char : ik_int;
  case len_h:
    return is_scanf ? ik_short : ik_int;
  case len_l:
    return ik_long;
  case len_ll:
  case len_j:
  case len_L:
    return ik_long_long;
  case len_z:
    return skip_typerefs(size_t_type())->variant.integer.int_kind;
  case len_t:
    return skip_typerefs(ptrdiff_t_type())->variant.integer.int_kind;
  default:
    return ik_int;
  }
}

// Signed or not, an argument of the right width has the value that is meant.
static bool is_integer_of_kind(const a_type* type, int kind) {
  return is_integral_or_enum_type(type) &&
         unsigned_int_kind_of(skip_typerefs(type)->variant.integer.int_kind) ==
             unsigned_int_kind_of(kind);
}

static bool is_float_of_kind(const a_type* type, int kind) {
  return is_floating_type(type) && skip_typerefs(type)->variant.float_kind == kind;
}

static bool is_text_of_length(const a_type* type, a_length length) {
  return length == len_l
             ? is_integer_of_kind(type, skip_typerefs(wchar_t_type())->variant.integer.int_kind)
             : is_character_type(type);
}

static bool matches_printf(const a_type* type, const a_directive* directive) {
  const a_type* target = is_pointer_type(type) ? type_pointed_to(type) : nullptr;
  switch (directive->conversion->operand) {
  case oc_integer:
    return is_integer_of_kind(type, integer_kind_of_length(directive->length, false));
  case oc_float:
    return is_float_of_kind(type, directive->length == len_L ? fk_long_double : fk_double);
  case oc_char:
    return directive->length == len_l ? is_integral_or_enum_type(type)
                                      : is_integer_of_kind(type, ik_int);
  case oc_string:
    return target && is_text_of_length(target, directive->length);
  case oc_count:
    return target && is_integer_of_kind(target, integer_kind_of_length(directive->length, true));
  default:
    return target != nullptr;
  }
}

static int scanned_float_kind(a_length length) {
  if (length == len_none)
    return fk_float;
  return length == len_L ? fk_long_double : fk_double;
}

static bool matches_scanf(const a_type* type, const a_directive* directive) {
  if (!is_pointer_type(type))
    return false;
  const a_type* target = type_pointed_to(type);
  switch (directive->conversion->operand) {
  case oc_float:
    return is_float_of_kind(target, scanned_float_kind(directive->length));
  case oc_char:
  case oc_string:
    return is_text_of_length(target, directive->length);
  case oc_pointer:
    return is_pointer_type(target);
  default:
    return is_integer_of_kind(target, integer_kind_of_length(directive->length, true));
  }
}

// ---- Arguments ----

// The argument for a conversion; null after a message when there is none.
static const an_expr_node* take_argument(a_format_check* check) {
  const an_expr_node* argument = check->next;
  if (argument)
    check->next = argument->next;
  else
    format_warning(check, ec_too_few_printf_args, check->call_end);
  return argument;
}

static void check_directive(a_format_check* check, const a_directive* directive) {
  for (int i = 0; i < directive->num_stars && !check->is_over; ++i) {
    const an_expr_node* count = take_argument(check);
    if (count && !is_integer_of_kind(count->type, ik_int))
      report_mismatch(count);
  }
  if (check->is_over || directive->is_suppressed)
    return;
  const an_expr_node* argument = take_argument(check);
  if (argument && !(check->is_scanf ? matches_scanf(argument->type, directive)
                                    : matches_printf(argument->type, directive)))
    report_mismatch(argument);
}

static void check_arguments_of_format(a_format_check* check) {
  while (!check->is_over && check->p < check->end) {
    if (*check->p++ != '%')
      continue;
    a_directive directive = {};
    if (!scan_directive(check, &directive) || !directive.conversion)
      continue;
    if (!check->is_scanf)
      check_support(check, &directive);
    check_directive(check, &directive);
  }
  if (!check->is_over && check->next)
    format_warning(check, ec_too_many_printf_args, &check->next->position);
}

void check_format_arguments(const a_type* function_type, an_expr_node* arguments,
                            const a_source_position* call_end) {
  const a_routine_type_supplement& supplement =
      *skip_typerefs(function_type)->variant.routine.routine_supplement;
  if (!supplement.is_printf_like && !supplement.is_scanf_like)
    return;
  const a_param_type* param = param_types_of(function_type);
  const a_constant* literal;
  an_expr_node* format = arguments;
  for (; format && param && param->next; param = param->next)
    format = format->next;
  if (!format || !param || !expr_is_pointer_to_string_literal(format, &literal) ||
      literal->string_char_kind != sck_ordinary)
    return;
  const char* text = literal->value.string.text;
  a_format_check check = {text,
                          text + strnlen(text, literal->value.string.length),
                          supplement.is_scanf_like != 0,
                          false,
                          format,
                          format->next,
                          call_end};
  check_arguments_of_format(&check);
}
