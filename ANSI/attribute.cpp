// The tables of attributes, and lists of attributes.

#include "attribute_int.h"

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "mem_manage.h"
#include "mode_words.h"

a_boolean gnu_abi_tag_attribute_seen;

static constexpr an_attribute_row attribute_rows[] = {
#define ATTRIBUTE(name, arguments, forms, kind) {name, arguments, forms, kind},
#include "attribute.def"
#undef ATTRIBUTE
};

const an_attribute_kind_row attribute_kind_rows[num_attribute_kinds] = {
#define ATTRIBUTE_KIND(number, name, applies_to, action) {applies_to, action},
#include "attribute_kinds.def"
#undef ATTRIBUTE_KIND
};

// ---- Finding a row ----

static constexpr size_t num_buckets = 86;
static constexpr int no_row = -1;

// The rows by the hash of their name, in the order of the table.
static int first_row_of_bucket[num_buckets];
static int next_row_of_bucket[std::size(attribute_rows)];

static size_t bucket_of_name(const char* name, size_t length) {
  uint32_t hash = 0;
  for (size_t i = 0; i < length; ++i)
    hash = hash * 31 + static_cast<unsigned char>(name[i]);
  return hash % num_buckets;
}

static bool spelling_matches(char spelling, uint8_t form) {
  switch (spelling) {
  case 'c':
    return form == af_std;
  case 'g':
    return form == af_gnu;
  case 'l':
    return form == af_gnu && clang_mode;
  default:
    return form == af_declspec;
  }
}

static bool language_matches(char language) {
  return language == 'x' || (language == 'c') == (in_C_mode() != 0);
}

// The version that ranges behind the letter of a spelling or of a standard are
// measured against; 0, which no range holds, for a compiler that isn't emulated.
static unsigned long version_of_letter(char letter) {
  switch (letter) {
  case 'c':
  case 'S':
    return static_cast<unsigned long>(std_version);
  case 'g':
  case 'G':
    return static_cast<unsigned long>(gnu_version);
  case 'l':
  case 'C':
    return static_cast<unsigned long>(clang_version);
  default:
    return 0;
  }
}

// `low-high`, either of which may be missing, at *text, which moves behind it.
static bool range_holds(const char** text, unsigned long version) {
  char* end;
  const char* at = *text;
  unsigned long low = strtoul(at, &end, 10);
  at = end + 1; // the hyphen
  bool has_high = *at >= '0' && *at <= '9';
  unsigned long high = strtoul(at, &end, 10);
  *text = has_high ? end : at;
  return version != 0 && version >= low && (!has_high || version <= high);
}

// `(range|letter(range)...)`; any of the ranges will do.
static bool any_range_holds(const char** text, char spelling) {
  const char* at = *text + 1;
  bool holds = range_holds(&at, version_of_letter(spelling));
  while (*at == '|') {
    char letter = at[1];
    at += 3; // with the parenthesis
    holds |= range_holds(&at, version_of_letter(letter));
    ++at;
  }
  *text = at + 1;
  return holds;
}

static bool namespace_matches(const char* wanted, uint8_t form, const char* namespace_name) {
  if (*wanted != '[')
    return form != af_std || namespace_name == nullptr;
  size_t length = strcspn(++wanted, "]");
  return namespace_name != nullptr && strlen(namespace_name) == length &&
         memcmp(namespace_name, wanted, length) == 0;
}

static bool row_is_enabled(const an_attribute_row* row, uint8_t form, const char* namespace_name) {
  const char* at = row->forms;
  if (*at == '1')
    ++at;
  char spelling = *at++;
  char language = *at++;
  if (!spelling_matches(spelling, form) || !language_matches(language))
    return false;
  if (*at == '(' && !any_range_holds(&at, spelling))
    return false;
  return namespace_matches(at, form, namespace_name);
}

const an_attribute_row* find_attribute_row(const char* name, size_t length, uint8_t form,
                                           const char* namespace_name) {
  int number = first_row_of_bucket[bucket_of_name(name, length)];
  for (; number != no_row; number = next_row_of_bucket[number]) {
    const an_attribute_row* row = &attribute_rows[number];
    if (strlen(row->name) == length && memcmp(row->name, name, length) == 0 &&
        row_is_enabled(row, form, namespace_name))
      return row;
  }
  return nullptr;
}

const char* bare_attribute_name(const char* name, size_t* length) {
  constexpr size_t longest_bare_name = 100;
  if (*length < 5 || *length > longest_bare_name + 4 || memcmp(name, "__", 2) != 0 ||
      memcmp(name + *length - 2, "__", 2) != 0)
    return name;
  *length -= 4;
  return name + 2;
}

bool gnu_attribute_is_supported(const char* name) {
  size_t length = strlen(name);
  name = bare_attribute_name(name, &length);
  return find_attribute_row(name, length, af_gnu, nullptr) != nullptr;
}

static void enter_rows() {
  for (int& first : first_row_of_bucket)
    first = no_row;
  for (int number = static_cast<int>(std::size(attribute_rows)) - 1; number >= 0; --number) {
    const char* name = attribute_rows[number].name;
    size_t bucket = bucket_of_name(name, strlen(name));
    next_row_of_bucket[number] = first_row_of_bucket[bucket];
    first_row_of_bucket[bucket] = number;
  }
}

// ---- Messages ----

const char* attribute_display_name(const an_attribute* attribute) {
  static std::string name;
  name = attribute->name == nullptr ? "" : attribute->name;
  if (attribute->namespace_name != nullptr)
    name = std::string(attribute->namespace_name) + "::" + name;
  return name.c_str();
}

void attribute_diagnostic(an_error_severity severity, an_error_code code,
                          const an_attribute* attribute) {
  pos_st_diagnostic(severity, code, &attribute->position, attribute_display_name(attribute));
}

void drop_attribute(an_error_severity severity, an_error_code code, an_attribute* attribute) {
  attribute_diagnostic(severity, code, attribute);
  attribute->kind = attrk_dropped;
}

void bad_attribute_argument(an_attribute* attribute) {
  drop_attribute(es_error, ec_invalid_argument_to_attribute, attribute);
}

void report_bad_attribute_target(an_error_severity severity, an_attribute* attribute) {
  if (attribute->form == af_alignas)
    pos_diagnostic(severity, ec_wrong_entity_for_alignas, &attribute->position);
  else
    attribute_diagnostic(severity, ec_wrong_entity_for_attribute, attribute);
  attribute->kind = attrk_dropped;
}

// ---- Arguments ----

static const an_attribute_arg* argument_at(const an_attribute* attribute, int index) {
  const an_attribute_arg* arg = attribute->arguments;
  while (arg != nullptr && index-- > 0)
    arg = arg->next;
  return arg;
}

bool integer_argument(const an_attribute* attribute, int index, int64_t* value) {
  const an_attribute_arg* arg = argument_at(attribute, index);
  if (arg == nullptr || arg->arg_kind != aak_constant || arg->value.constant == nullptr ||
      arg->value.constant->kind != con_integer)
    return false;
  *value = static_cast<int64_t>(arg->value.constant->value.int_value);
  return true;
}

const char* text_argument(const an_attribute* attribute, int index) {
  const an_attribute_arg* arg = argument_at(attribute, index);
  bool is_text = arg != nullptr && (arg->arg_kind == aak_string || arg->arg_kind == aak_name);
  return is_text ? arg->value.text : nullptr;
}

// ---- Lists ----

a_source_correspondence* source_corresp_of_entity(void* entity, an_il_entry_kind kind) {
  switch (kind) {
  case iek_constant:
    return &static_cast<a_constant*>(entity)->source_corresp;
  case iek_type:
    return &static_cast<a_type*>(entity)->source_corresp;
  case iek_variable:
    return &static_cast<a_variable*>(entity)->source_corresp;
  case iek_field:
    return &static_cast<a_field*>(entity)->source_corresp;
  case iek_routine:
    return &static_cast<a_routine*>(entity)->source_corresp;
  case iek_label:
    return &static_cast<a_label*>(entity)->source_corresp;
  case iek_namespace:
    return &static_cast<a_namespace*>(entity)->source_corresp;
  default:
    return nullptr;
  }
}

an_attribute** get_attribute_link(void* entity, an_il_entry_kind kind) {
  switch (kind) {
  case iek_param_type:
    return &static_cast<a_param_type*>(entity)->attributes;
  case iek_statement:
    return &static_cast<a_statement*>(entity)->attributes;
  case iek_using_decl:
    return &static_cast<a_using_decl*>(entity)->attributes;
  case iek_base_class:
    return &static_cast<a_base_class*>(entity)->attributes;
  default: {
    a_source_correspondence* corresp = source_corresp_of_entity(entity, kind);
    return corresp == nullptr ? nullptr : &corresp->attributes;
  }
  }
}

an_attribute** f_last_attribute_link(an_attribute** link) {
  while (*link != nullptr)
    link = &(*link)->next;
  return link;
}

void append_attributes(an_attribute** list, an_attribute* more) {
  *f_last_attribute_link(list) = more;
}

an_attribute* find_attribute_of_kind(an_attribute* list, an_attribute_kind kind) {
  while (list != nullptr && list->kind != kind)
    list = list->next;
  return list;
}

// The arguments are never changed, so that copies share them.
an_attribute* copy_of_attributes_list(const an_attribute* list) {
  an_attribute* copies = nullptr;
  an_attribute** link = &copies;
  for (; list != nullptr; list = list->next) {
    *link = alloc_attribute();
    **link = *list;
    (*link)->next = nullptr;
    link = &(*link)->next;
  }
  return copies;
}

static bool same_argument(const an_attribute_arg* a, const an_attribute_arg* b) {
  if (a->arg_kind != b->arg_kind)
    return false;
  switch (a->arg_kind) {
  case aak_string:
  case aak_name:
    return strcmp(a->value.text, b->value.text) == 0;
  case aak_constant:
    return eq_constants(a->value.constant, b->value.constant);
  case aak_expression:
    return compare_expressions(a->value.expr, b->value.expr, 0);
  default:
    return a->value.generic == b->value.generic;
  }
}

static bool same_arguments(const an_attribute_arg* a, const an_attribute_arg* b) {
  for (; a != nullptr && b != nullptr; a = a->next, b = b->next)
    if (!same_argument(a, b))
      return false;
  return a == b;
}

static bool list_has_equal(const an_attribute* list, const an_attribute* attribute) {
  for (; list != nullptr; list = list->next)
    if (list->kind == attribute->kind && same_arguments(list->arguments, attribute->arguments))
      return true;
  return false;
}

an_attribute* composite_attributes(an_attribute* a, an_attribute* b) {
  an_attribute* result = copy_of_attributes_list(a);
  for (; b != nullptr; b = b->next) {
    if (b->kind == attrk_dropped || list_has_equal(a, b))
      continue;
    an_attribute* copy = alloc_attribute();
    *copy = *b;
    copy->next = nullptr;
    append_attributes(&result, copy);
  }
  return result;
}

static bool list_covers(const an_attribute* list, const an_attribute* other) {
  for (; other != nullptr; other = other->next)
    if (other->kind > attrk_using_prefix && !list_has_equal(list, other))
      return false;
  return true;
}

bool equivalent_attributes(const an_attribute* a, const an_attribute* b) {
  return list_covers(a, b) && list_covers(b, a);
}

an_attribute* get_param_variable_attr_copies(const a_param_type* param_type) {
  return copy_of_attributes_list(param_type->attributes);
}

// ---- Initialisation ----

void attribute_one_time_init() {
  enter_rows();
  register_attribute_variables();
  register_alias_variables();
}

void attribute_init() {
  gnu_abi_tag_attribute_seen = 0;
  attribute_trans_unit_init();
}

void attribute_trans_unit_init() {
  reset_attribute_reading();
  reset_alias_fixups();
}
