#include "target.h"

#include "cfe.h"
#include "error.h"
#include "il_entities.h"
#include "mode_words.h"
#include "symbol_tbl.h"
#include "types.h"

#include <algorithm>
#include <cctype>
#include <cinttypes>
#include <cstdlib>
#include <cstring>
#include <string>

#define TARG(name, type, value, form) type name = value;
#define TARG_SETTING(name, value) int name = value;
#include "target.def"
#undef TARG
#undef TARG_SETTING

const char* auxiliary_info_dir_name = "lib";
int targ_sizeof_wchar_t;
int targ_sizeof_char16_t;
int targ_sizeof_char32_t;
int character_size[4];
int targ_sizeof_largest_integer;
int plain_char_int_kind;
a_boolean string_literals_shared;
int targ_intmax_kind;
int targ_uintmax_kind;
a_boolean always_fold_calls_to_builtin_constant_p;

namespace {

const char* const integer_kind_names[] = {
    "ik_char",           "ik_signed_char", "ik_unsigned_char",     "ik_short",
    "ik_unsigned_short", "ik_int",         "ik_unsigned_int",      "ik_long",
    "ik_unsigned_long",  "ik_long_long",   "ik_unsigned_long_long"};
const char* const float_kind_names[] = {"fk_float", "fk_double", "fk_long_double"};
const char* const mode_names[] = {"tmk_none", "tmk_QI", "tmk_HI", "tmk_SI", "tmk_DI"};

const char* const visibility_names[] = {nullptr,  "default",  "protected",
                                        "hidden", "internal", "extern"};

// An alignment is listed as its bits over those of a byte.
std::string value_as_text(int64_t value, a_targ_form form) {
  std::string digits = std::to_string(value);
  switch (form) {
  case tf_alignment:
    return "(" + std::to_string(value * targ_char_bit) + "/" + std::to_string(targ_char_bit) + ")";
  case tf_int_kind:
    return std::string("((an_integer_kind)") + integer_kind_names[value] + ")";
  case tf_float_kind:
    return std::string("((a_float_kind)") + float_kind_names[value] + ")";
  case tf_mode:
    return std::string("((a_type_mode_kind)") + mode_names[value] + ")";
  case tf_value:
    break;
  }
  return digits;
}

void dump_value(const char* configuration, const char* name, int64_t value, a_targ_form form) {
  std::string macro(name);
  for (char& c : macro)
    c = static_cast<char>(toupper(static_cast<unsigned char>(c)));
  fprintf(f_error, "#define %s_%s %s\n", macro.c_str(), configuration,
          value_as_text(value, form).c_str());
}

} // namespace

int size_of_integer_kind(int kind) {
  uint64_t size;
  get_integer_size_and_alignment(kind, &size, nullptr, nullptr);
  return static_cast<int>(size);
}

int find_target_configuration(const char*) {
  return -1;
}

void set_target_configuration(int) {
#define TARG(name, type, value, form) name = value;
#define TARG_WORD(name, value) name = value;
#define TARG_SETTING(name, value)
#include "target.def"
#undef TARG
#undef TARG_SETTING
  auxiliary_info_dir_name = "lib";
}

void dump_legacy_config_as_target_config(const char* name) {
  fprintf(f_error, "/* Target configuration: %s */\n", name);
  fputs("/* Each value is the default of the processor; edit and add to the build's settings. */\n",
        f_error);
  fprintf(f_error, "#define TARGET_CONFIGURATION_1 %s\n", name);
#define TARG(variable, type, value, form)                                                          \
  dump_value(name, #variable, static_cast<int64_t>(value), form);
#define TARG_WORD(variable, value) dump_value(name, #variable, value, tf_value);
#define TARG_SETTING(variable, value)
#include "target.def"
#undef TARG
#undef TARG_SETTING
}

int string_to_symbol_visibility(const char* text) {
  for (int value = 1; value <= 5; value++)
    if (strcmp(text, visibility_names[value]) == 0)
      return value;
  return 0;
}

const char* symbol_visibility_to_string(int value) {
  return value >= 1 && value <= 5 ? visibility_names[value] : nullptr;
}

int canonical_symbol_visibility(uint32_t modifiers, int, bool is_defined, int) {
  constexpr int extern_visibility = 5;
  int result = modifiers & 1 ? extern_visibility : modifiers & 2 ? targ_sym_export_visibility : 0;
  if (result == 0 && !is_defined && import_undef)
    result = extern_visibility;
  return result == 0 ? targ_sym_default_visibility : result;
}

int modifier_to_symbol_visibility(uint32_t) {
  return 0;
}

bool targ_dest_of_ptr_cast_big_enough(const a_type*, const a_type*) {
  return true;
}

void reset_internal_type_sizes() {
  // A byte has 8 bits in every mode of this family.
}

a_type* get_default_va_list_type() {
  if (type_underlying_va_list != nullptr)
    return type_underlying_va_list;
  return make_pointer_type(gnu_mode ? integer_type(plain_char_int_kind) : void_type());
}

void validate_target_argument(const a_source_position* position) {
  pos_warning(ec_unrecognized_target_attribute, position);
}

// The registers that a declaration may name, and which of them change behind
// the program's back.
struct a_global_register {
  const char* name;
  bool is_volatile;
};
static const a_global_register global_registers[] = {
    {"__SP", false}, {"__R30", true}, {"__R31", true}};

static const a_global_register* find_global_register(const char* name) {
  for (const a_global_register& reg : global_registers)
    if (strcmp(name, reg.name) == 0)
      return &reg;
  return nullptr;
}

bool is_global_register_name(const char* name) {
  return find_global_register(name) != nullptr;
}

bool TRG_is_greg_name(const a_variable*, const a_symbol* symbol) {
  return is_global_register_name(symbol->header->identifier);
}

a_type* type_of_global_register(const char* name, a_type* type) {
  const a_global_register* reg = find_global_register(name);
  return reg != nullptr && reg->is_volatile ? make_qualified_type(type, tq_volatile) : type;
}

bool TRG_is_greg_type(a_variable* variable, const a_symbol* symbol) {
  variable->type = type_of_global_register(symbol->header->identifier, variable->type);
  return (is_integral_type(variable->type) || is_pointer_type(variable->type)) &&
         variable->storage_kind != sc_static && variable->storage_kind != sc_auto;
}

bool TRG_legal_membank(int) {
  return true;
}

int TRG_adjust_membank(int bank) {
  return bank;
}

int TRG_top_aryaln(int) {
  return targ_top_aryaln;
}

const char* TRG_fname_transform(const char* name) {
  return name;
}

int TRG_parse_versions(const char* text) {
  return static_cast<int>(strtol(text, nullptr, 10));
}

void TRG_check_cmd_options() {
  // This processor honours them all, the packing pragmas too.
}

void target_early_init() {
  set_target_configuration(-1);
#define TARG(name, type, value, form)
#define TARG_SETTING(name, value) name = value;
#include "target.def"
#undef TARG
#undef TARG_SETTING
  targ_top_structaln = targ_minimum_struct_alignment;
  distinct_template_signatures = 1;
  make_all_functions_unprototyped = 0;
  pass_stdarg_references_to_generated_code = 0;
}

void target_one_time_init() {
  targ_sizeof_wchar_t = size_of_integer_kind(targ_wchar_t_int_kind);
  targ_sizeof_char16_t = size_of_integer_kind(targ_char16_t_int_kind);
  targ_sizeof_char32_t = size_of_integer_kind(targ_char32_t_int_kind);
  character_size[0] = 1;
  character_size[1] = targ_sizeof_wchar_t;
  character_size[2] = targ_sizeof_char16_t;
  character_size[3] = targ_sizeof_char32_t;
  targ_sizeof_largest_integer = targ_sizeof_long_long;
}

void target_init() {
  if (C_dialect == cd_k_and_r)
    plain_char_int_kind = targ_has_signed_chars ? ik_signed_char : ik_unsigned_char;
  else
    plain_char_int_kind = 0;
  string_literals_shared = C_dialect != cd_k_and_r;
  targ_intmax_kind = ik_long_long;
  targ_uintmax_kind = ik_unsigned_long_long;
  if (targ_max_class_object_size == 0)
    targ_max_class_object_size = targ_size_t_max;
  uint64_t delta_max =
      (uint64_t{1} << (size_of_integer_kind(targ_delta_int_kind) * targ_char_bit - 1)) - 1;
  targ_max_base_class_offset = std::min({targ_max_base_class_offset, delta_max, targ_size_t_max});
  always_fold_calls_to_builtin_constant_p = 1;
}
