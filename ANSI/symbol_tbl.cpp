#include "symbol_tbl.h"

#include "error.h"
#include "il.h"
#include "il_alloc.h"
#include "il_constants.h"
#include "mem_manage.h"
#include "mode_words.h"
#include "scope_stk.h"
#include "trans_unit.h"
#include "types.h"

#include <cstring>

#include <sys/mman.h>

a_symbol* symbol_for_namespace_std;
a_symbol* symbol_for_namespace_abi;
a_symbol* symbol_for_make_integer_seq;
a_symbol* symbol_for_std_initializer_list;
a_type* builtin_va_list_type;
a_type* type_underlying_va_list;
a_symbol* symbols_with_no_scope;
a_boolean file_scope_symbols_are_on_inactive_list;
a_symbol_header* conversion_header_list;
uint32_t decl_seq_counter;
int32_t file_scope_number;
a_symbol_locator locator_for_curr_id;

int32_t next_scope_number;

const a_symbol_locator cleared_locator = {};

const char* const symbol_kind_names[num_symbol_kinds] = {
    "keyword",
    "macro",
    "constant",
    "type",
    "class or struct",
    "union",
    "enum",
    "variable",
    "field",
    "static data member",
    "member function",
    "routine",
    "label",
    "undefined",
    "extern variable",
    "extern routine",
    "projection",
    "overloaded function",
    "parameter",
    "class template",
    "function template",
    "variable template",
    "namespace",
    "namespace projection",
};

a_name_space name_space_for_symbol_kind[num_symbol_kinds];

namespace {

constexpr uint32_t symbol_table_size = 16381; // a prime
constexpr int num_opname_kinds = 64;
constexpr int32_t trans_unit_table_increment = 16384;

alignas(4096) a_symbol_header* symbol_table[symbol_table_size];
bool symbol_table_is_empty = true; // saves the clearing of untouched memory
a_symbol_header* opname_symbol_table[num_opname_kinds];
a_symbol_header* error_header;

// The unit of each scope number.
a_translation_unit** trans_unit_for_scope;
int32_t size_of_trans_unit_for_scope;

} // namespace

// ---- Interning ----

uint32_t hash_of_symbol_text(const char* text, size_t length) {
  if (length >= symbol_hash_short_length)
    return hash_of_long_symbol(text, length);
  uint32_t hash = 0;
  for (size_t i = 0; i < length; ++i)
    hash = symbol_hash_step(hash, text[i]);
  return hash;
}

static a_symbol_header* make_symbol_header(const char* text, size_t length, uint32_t hash) {
  a_symbol_header* header = alloc_front_end_record<a_symbol_header>();
  // The spelling outlives every translation unit.
  char* identifier = static_cast<char*>(alloc_primary_file_scope_il(length + 1));
  memcpy(identifier, text, length);
  identifier[length] = '\0';
  header->identifier = identifier;
  header->length = length;
  header->hash = hash;
  return header;
}

a_symbol_header* find_symbol_header_hashed(const char* text, size_t length, uint32_t hash) {
  a_symbol_header** bucket = &symbol_table[hash % symbol_table_size];
  for (a_symbol_header** link = bucket; *link != nullptr; link = &(*link)->next_in_bucket) {
    a_symbol_header* header = *link;
    if (header->hash != hash || header->length != length ||
        memcmp(header->identifier, text, length) != 0)
      continue;
    if (link != bucket) {
      // A name that was used will soon be used again.
      *link = header->next_in_bucket;
      header->next_in_bucket = *bucket;
      *bucket = header;
    }
    return header;
  }
  a_symbol_header* header = make_symbol_header(text, length, hash);
  header->next_in_bucket = *bucket;
  *bucket = header;
  symbol_table_is_empty = false;
  return header;
}

a_symbol_header* find_symbol_header(const char* text, size_t length, a_symbol_locator* locator) {
  if (length == 0)
    length = strlen(text);
  a_symbol_header* header =
      find_symbol_header_hashed(text, length, hash_of_symbol_text(text, length));
  locator->header = header;
  return header;
}

a_symbol* find_symbol(const char* text, size_t length, a_symbol_locator* locator) {
  return find_symbol_header(text, length, locator)->first_symbol;
}

a_symbol_header* error_symbol_header() {
  if (error_header == nullptr) {
    static const char error_name[] = "<error>";
    const size_t length = sizeof error_name - 1;
    error_header =
        find_symbol_header_hashed(error_name, length, hash_of_symbol_text(error_name, length));
  }
  return error_header;
}

a_symbol_header* opname_symbol_header(int opname_kind) {
  return opname_symbol_table[opname_kind];
}

void set_opname_symbol_header(int opname_kind, a_symbol_header* header) {
  opname_symbol_table[opname_kind] = header;
  header->is_operator_name = true;
}

// ---- Locators ----

void clear_locator(a_symbol_locator* locator, const a_source_position* position) {
  *locator = cleared_locator;
  locator->position = *position;
}

void set_to_error_locator(a_symbol_locator* locator) {
  if (locator->header == nullptr)
    locator->header = error_symbol_header();
  locator->is_error_locator = true;
  locator->symbol = nullptr;
}

void make_locator_for_symbol(a_symbol* symbol, a_symbol_locator* locator) {
  clear_locator(locator, &symbol->position);
  locator->header = symbol->header;
  locator->symbol = symbol;
}

void make_unnamed_locator(a_symbol_locator* locator, const a_source_position* position) {
  clear_locator(locator, position);
  locator->header = error_symbol_header();
  locator->is_unnamed = true;
}

// ---- Making symbols ----

void set_symbol_kind(a_symbol* symbol, a_symbol_kind kind) {
  symbol->kind = kind;
  symbol->variant.entry = nullptr;
  symbol->supplement.entry = nullptr;
  symbol->extra.word = 0;
  switch (kind) {
  case symk_class_or_struct:
  case symk_union: {
    a_class_symbol_supplement* info = alloc_front_end_record<a_class_symbol_supplement>();
    info->scope_number = -1;
    symbol->supplement.class_info = info;
    break;
  }
  case symk_enum: {
    an_enum_symbol_supplement* info = alloc_front_end_record<an_enum_symbol_supplement>();
    info->scope_number = -1;
    symbol->supplement.enum_info = info;
    break;
  }
  case symk_projection:
    symbol->variant.projection = alloc_front_end_record<a_projection_descr>();
    break;
  default:
    break;
  }
}

// The class in which a bad qualified name would be sought.
static a_type* class_of_qualifier(a_type* qualifier) {
  a_type* type = skip_typerefs(qualifier);
  if (type->kind == tk_template_param) {
    a_template_param_type_supplement* supplement =
        type->variant.template_param.template_param_supplement;
    if (supplement != nullptr && supplement->proxy_class != nullptr)
      return supplement->proxy_class;
  }
  return type;
}

static a_symbol* alloc_symbol(a_symbol_kind kind, a_symbol_header* header,
                              const a_source_position* position) {
  a_symbol* symbol = alloc_front_end_record<a_symbol>();
  symbol->header = header;
  symbol->position = *position;
  symbol->scope_number = -1;
  symbol->decl_seq = decl_seq_counter++;
  set_symbol_kind(symbol, kind);
  return symbol;
}

a_symbol* make_symbol(a_symbol_kind kind, a_symbol_locator* locator) {
  if (locator->header == nullptr)
    locator->header = error_symbol_header();
  a_symbol* symbol = alloc_symbol(kind, locator->header, &locator->position);
  // Unnamed entities all share the header of bad names; a lookup of that name
  // must find none of them.
  symbol->not_in_lookup = locator->is_error_locator || locator->is_unnamed;
  if (locator->is_error_locator && locator->qualifier.entry != nullptr) {
    if (locator->is_class_qualified) {
      symbol->parent.class_type = class_of_qualifier(locator->qualifier.class_type);
      symbol->is_class_member = true;
    } else if (!locator->is_enum_qualified) {
      symbol->parent.namespace_entry = locator->qualifier.namespace_entry;
      symbol->is_namespace_member = true;
    }
  }
  locator->symbol = symbol;
  locator->is_qualified = false;
  return symbol;
}

// ---- The lists and tables of scopes ----

static uint64_t initial_size_of_scope_table(a_scope_kind kind) {
  switch (kind) {
  case sk_file:
  case sk_namespace:
  case sk_namespace_extension:
    return 100;
  case sk_class:
    return 30;
  case sk_class_reactivation:
    return 5;
  default:
    return 0; // no table
  }
}

static void add_to_symbol_list(a_symbol* symbol, a_scope_pointers_block* block) {
  symbol->next_in_scope = nullptr;
  symbol->prev_in_scope = block->last_symbol;
  if (block->last_symbol != nullptr)
    block->last_symbol->next_in_scope = symbol;
  else
    block->first_symbol = symbol;
  block->last_symbol = symbol;
}

static void add_to_scope_table(a_symbol* symbol, a_scope_pointers_block* block, a_scope_kind kind) {
  if (block->symbols == nullptr) {
    uint64_t size = initial_size_of_scope_table(kind);
    if (size == 0)
      return;
    block->symbols = alloc_hash_table(front_end_region, size, fpi_hash_symbol_header_lookup_entry,
                                      fpi_compare_symbol_header_lookup_entry);
  }
  a_hash_table_entry* entry = hash_find(block->symbols, symbol->header, true);
  symbol->next_in_table_list = nullptr;
  if (entry->last != nullptr)
    entry->last->next_in_table_list = symbol;
  else
    entry->first = symbol;
  entry->last = symbol;
}

static void file_with_no_scope(a_symbol* symbol) {
  symbol->scope_number = -1;
  symbol->prev_in_scope = nullptr;
  symbol->next_in_scope = symbols_with_no_scope;
  if (symbols_with_no_scope != nullptr)
    symbols_with_no_scope->prev_in_scope = symbol;
  symbols_with_no_scope = symbol;
}

a_class_symbol_supplement* class_symbol_supplement_of(const a_type* class_type) {
  const a_symbol* symbol = skip_typerefs(class_type)->source_corresp.symbol;
  const bool is_class =
      symbol != nullptr && (symbol->kind == symk_class_or_struct || symbol->kind == symk_union);
  return is_class ? symbol->supplement.class_info : nullptr;
}

void add_symbol_to_table_of_class(a_symbol* symbol, a_type* class_type) {
  a_class_symbol_supplement* info = class_symbol_supplement_of(class_type);
  if (info == nullptr || info->pointers_block == nullptr)
    return;
  symbol->scope_number = info->scope_number;
  add_to_scope_table(symbol, info->pointers_block, sk_class);
}

an_enum_symbol_supplement* enum_symbol_supplement_of(const a_type* enum_type) {
  const a_symbol* symbol = skip_typerefs(enum_type)->source_corresp.symbol;
  return symbol != nullptr && symbol->kind == symk_enum ? symbol->supplement.enum_info : nullptr;
}

// The scope number and pointers block of the class or namespace that is the
// symbol's parent; null when the parent has no lists (any more).
static a_scope_pointers_block* block_of_parent(a_symbol* symbol, a_scope_kind* kind) {
  if (symbol->is_class_member) {
    *kind = sk_class;
    a_class_symbol_supplement* info = class_symbol_supplement_of(symbol->parent.class_type);
    if (info == nullptr)
      return nullptr;
    symbol->scope_number = info->scope_number;
    return info->pointers_block;
  }
  *kind = sk_namespace;
  a_namespace* owner = f_skip_namespace_aliases(symbol->parent.namespace_entry);
  if (owner->variant.scope != nullptr)
    symbol->scope_number = owner->variant.scope->scope_number;
  return owner->pointers_block;
}

// A member may bear the name of its class only as a constructor or as the
// class's own name, both of which are entered by other ways, and as a field, which
// is judged when the class is complete.
static bool conflicts_with_class_name(const a_symbol* symbol, const a_scope_stack_entry* entry) {
  if (!in_cplusplus_mode() || (entry->kind != sk_class && entry->kind != sk_class_reactivation))
    return false;
  if (symbol->not_in_lookup || symbol->is_injected_class_name || entry->assoc_type == nullptr ||
      (symbol->kind == symk_field && !symbol->is_anonymous_union_member))
    return false;
  const a_symbol* class_symbol = entry->assoc_type->source_corresp.symbol;
  return class_symbol != nullptr && class_symbol->header == symbol->header;
}

static void report_class_name_conflict(const a_symbol* symbol) {
  bool is_function = symbol->kind == symk_routine || symbol->kind == symk_member_function ||
                     symbol->kind == symk_overloaded_function;
  pos_error(is_function ? ec_class_and_member_function_name_conflict
                        : ec_class_and_member_name_conflict,
            &symbol->position);
}

void add_symbol_to_scope_list(a_symbol* symbol, int depth, bool* refused) {
  a_scope_pointers_block* block = nullptr;
  a_scope_kind kind = sk_block;
  if (depth >= 0) {
    a_scope_stack_entry* entry = &scope_stack[depth];
    symbol->scope_number = entry->number;
    if (conflicts_with_class_name(symbol, entry)) {
      report_class_name_conflict(symbol);
      symbol->not_in_lookup = true;
      if (refused != nullptr)
        *refused = true;
    }
    block = pointers_block_of_entry(entry);
    kind = entry->kind;
  } else if (symbol->is_class_member || symbol->is_namespace_member) {
    block = block_of_parent(symbol, &kind);
  }
  if (symbol->not_in_lookup)
    return;
  if (block == nullptr) {
    file_with_no_scope(symbol);
    return;
  }
  add_to_symbol_list(symbol, block);
  add_to_scope_table(symbol, block, kind);
}

// ---- The name chains ----

// Whether the number is that of an open scope inside the one at `depth`.
static bool is_number_of_inner_scope(int32_t scope_number, int depth) {
  if (scope_number < 0)
    return false;
  for (int d = depth_scope_stack; d > depth; --d) {
    if (scope_stack[d].number == scope_number)
      return true;
  }
  return false;
}

static bool is_tag(const a_symbol* symbol) {
  return is_tag_symbol_kind(fundamental_symbol_of(const_cast<a_symbol*>(symbol))->kind);
}

// Whether `other`, already on the chain, stands before a new symbol of the
// scope at `depth`: keywords and macros lead the chain, inner scopes follow
// and, in C++, a tag stands behind the other names declared in its own scope.
static bool stands_in_front(const a_symbol* other, const a_symbol* symbol, int depth) {
  if (other->kind == symk_keyword || other->kind == symk_macro)
    return true;
  if (depth < depth_scope_stack && is_number_of_inner_scope(other->scope_number, depth))
    return true;
  return in_cplusplus_mode() && other->scope_number == symbol->scope_number && is_tag(symbol) &&
         !is_tag(other) && other->kind != symk_undefined;
}

static void insert_on_chain(a_symbol* symbol, a_symbol** chain, int depth) {
  a_symbol** link = chain;
  while (*link != nullptr && stands_in_front(*link, symbol, depth))
    link = &(*link)->next_homonym;
  symbol->next_homonym = *link;
  *link = symbol;
}

static a_symbol** chain_of_symbol(const a_symbol* symbol) {
  a_symbol_header* header = symbol->header;
  if (symbol->hidden_from_ordinary_entry)
    return &header->first_pending_symbol;
  return symbol->is_inactive ? &header->first_inactive_symbol : &header->first_symbol;
}

// The link of the chain that leads to the symbol; null when it is on none.
static a_symbol** link_to_symbol(const a_symbol* symbol) {
  a_symbol** link = chain_of_symbol(symbol);
  while (*link != nullptr && *link != symbol)
    link = &(*link)->next_homonym;
  return *link == nullptr ? nullptr : link;
}

void add_symbol_to_inactive_list(a_symbol* symbol) {
  symbol->is_inactive = true;
  symbol->next_homonym = symbol->header->first_inactive_symbol;
  symbol->header->first_inactive_symbol = symbol;
}

void remove_symbol_from_inactive_list(a_symbol* symbol) {
  if (symbol->is_inactive)
    unlink_symbol_from_symbol_table(symbol);
}

// Whether symbols that join the scope now are found by its table and the
// inactive chain alone: it was closed once already.
static bool scope_is_reopened(a_scope_stack_entry* entry) {
  return (entry->kind == sk_file || entry->kind == sk_namespace_extension) &&
         pointers_block_of_entry(entry)->closed_once;
}

static void enter_on_name_chain(a_symbol* symbol, int depth) {
  if (symbol->not_in_lookup)
    return;
  if (symbol->hidden_from_ordinary_entry) {
    symbol->next_homonym = symbol->header->first_pending_symbol;
    symbol->header->first_pending_symbol = symbol;
    return;
  }
  if (depth < 0 && (symbol->is_class_member || symbol->is_namespace_member ||
                    file_scope_symbols_are_on_inactive_list)) {
    add_symbol_to_inactive_list(symbol);
    return;
  }
  if (depth >= 0 && scope_is_reopened(&scope_stack[depth])) {
    symbol->is_inactive = true;
    insert_on_chain(symbol, &symbol->header->first_inactive_symbol, depth);
    return;
  }
  insert_on_chain(symbol, &symbol->header->first_symbol, depth);
}

// ---- What a declaration hides ----

static const a_variable* variable_of_symbol(const a_symbol* symbol) {
  return symbol->kind == symk_variable ? symbol->variant.variable : nullptr;
}

static bool is_parameter_symbol(const a_symbol* symbol) {
  const a_variable* variable = variable_of_symbol(symbol);
  return variable != nullptr && variable->is_parameter;
}

static bool is_handler_parameter_symbol(const a_symbol* symbol) {
  const a_variable* variable = variable_of_symbol(symbol);
  return variable != nullptr && variable->is_handler_parameter;
}

// The next symbol on the chain with which the new one shares a name space.
static a_symbol* next_in_name_space(const a_symbol* symbol) {
  const a_name_space name_space = name_space_for_symbol_kind[symbol->kind];
  a_symbol* other = symbol->next_homonym;
  while (other != nullptr && name_space_for_symbol_kind[other->kind] != name_space)
    other = other->next_homonym;
  return other;
}

// A name that the construct round a block declares may not be declared again
// in the outermost scope of the block (C++ 3.3.3, 6.4, 6.5.3, 15.3). In C that
// block is a scope of its own (C99 6.8.5), and only parameters are protected.
static void check_redeclaration_in_outermost_block(const a_symbol* symbol, const a_symbol* hidden,
                                                   const a_scope_stack_entry* block,
                                                   const a_scope_stack_entry* outer) {
  const a_source_position* position = &symbol->position;
  const char* name = symbol->header->identifier;
  if (in_cplusplus_mode() && use_new_for_init_scoping) {
    if (outer->kind == sk_condition)
      pos_st_error(ec_redeclaration_of_condition_decl_name, position, name);
    else if (outer->is_range_for)
      pos_st_error(ec_redeclaration_of_range_iterator, position, name);
    else if (outer->in_for_init)
      pos_st_error(ec_redeclaration_of_for_init_decl_name, position, name);
  }
  if (is_handler_parameter_symbol(hidden))
    pos_st_error(ec_decl_hides_catch_parameter, position, name);
  else if (is_parameter_symbol(hidden) && block->is_function_try_handler)
    pos_st_error(ec_handler_redeclares_parameter, position, name);
  else if (is_parameter_symbol(hidden) && outer->kind == sk_function)
    pos_st_warning(ec_decl_hides_function_parameter, position, name);
}

// Members of an anonymous union are members of the class around it too.
static void check_anonymous_union_member(a_symbol* symbol, const a_symbol* hidden, bool* refused) {
  if (gcc_mode) {
    pos_sy_warning(ec_hidden_anonymous_union_field, &symbol->position, hidden);
    symbol->is_hidden_union_member = true;
  } else {
    pos_st_error(ec_id_already_declared, &symbol->position, symbol->header->identifier);
    *refused = true;
  }
}

static bool is_pointer_typedef(const a_symbol* symbol) {
  return symbol->kind == symk_type && symbol->variant.type != nullptr &&
         is_pointer_type(symbol->variant.type);
}

static void check_hiding(a_symbol* symbol, int depth, bool* refused) {
  const a_symbol* hidden = next_in_name_space(symbol);
  if (hidden == nullptr)
    return;
  const a_scope_stack_entry* entry = &scope_stack[depth];
  if (hidden->is_template_param) {
    const char* name = symbol->header->identifier;
    if (cfront_2_1_mode || cfront_3_0_mode)
      pos_st_warning(ec_decl_hides_template_parameter, &symbol->position, name);
    else
      pos_st_error(ec_redeclaration_of_template_param_name, &symbol->position, name);
    return;
  }
  if (hidden->scope_number == symbol->scope_number) {
    if (symbol->is_anonymous_union_member || hidden->is_anonymous_union_member)
      check_anonymous_union_member(symbol, hidden, refused);
    else if (gnu_mode && gnu_version < 40600 && is_tag_symbol_kind(symbol->kind) &&
             is_pointer_typedef(hidden))
      pos_sy_error(ec_bad_type_name_redeclaration, &symbol->position, hidden);
    return;
  }
  if (entry->kind == sk_block && entry->parent_depth >= 0) {
    const a_scope_stack_entry* outer = &scope_stack[entry->parent_depth];
    if (hidden->scope_number == outer->number)
      check_redeclaration_in_outermost_block(symbol, hidden, entry, outer);
  }
}

// ---- Entering symbols ----

void add_symbol_to_symbol_table(a_symbol* symbol, int depth, bool* in_out_flag) {
  const bool check = in_out_flag != nullptr && *in_out_flag;
  bool refused = false;
  add_symbol_to_scope_list(symbol, depth, &refused);
  enter_on_name_chain(symbol, depth);
  if (check && depth >= 0 && !symbol->not_in_lookup && !symbol->hidden_from_ordinary_entry)
    check_hiding(symbol, depth, &refused);
  if (in_out_flag != nullptr)
    *in_out_flag = refused;
}

a_symbol* enter_symbol(a_symbol_kind kind, a_symbol_locator* locator, int depth,
                       bool* in_out_flag) {
  a_symbol* symbol = make_symbol(kind, locator);
  add_symbol_to_symbol_table(symbol, depth, in_out_flag);
  return symbol;
}

a_symbol* full_enter_symbol(const char* text, size_t length, a_symbol_kind kind,
                            const a_source_position* position, int depth) {
  a_symbol_locator locator;
  clear_locator(&locator, position);
  find_symbol_header(text, length, &locator);
  return enter_symbol(kind, &locator, depth, nullptr);
}

static a_symbol* enter_at_front_of_chain(a_symbol_kind kind, a_symbol_header* header,
                                         const a_source_position* position) {
  a_symbol* symbol = alloc_symbol(kind, header, position);
  symbol->next_homonym = header->first_symbol;
  header->first_symbol = symbol;
  return symbol;
}

void enter_keyword(uint32_t token_kind, const char* text) {
  a_symbol_locator locator = cleared_locator;
  a_symbol_header* header = find_symbol_header(text, 0, &locator);
  a_symbol* symbol = header->first_symbol;
  while (symbol != nullptr && symbol->kind != symk_keyword)
    symbol = symbol->next_homonym;
  if (symbol == nullptr)
    symbol = enter_at_front_of_chain(symk_keyword, header, &null_source_position);
  symbol->variant.token_kind = token_kind;
  header->is_keyword = true;
}

a_symbol* enter_macro_symbol(a_symbol_header* header, a_macro_def* macro,
                             const a_source_position* position) {
  a_symbol* symbol = enter_at_front_of_chain(symk_macro, header, position);
  symbol->variant.macro = macro;
  header->is_macro = true;
  return symbol;
}

void remove_macro_symbol(a_symbol* symbol) {
  unlink_symbol_from_symbol_table(symbol);
  symbol->header->is_macro = false;
}

a_symbol* enter_extern_symbol(a_symbol_kind kind, a_symbol_locator* locator) {
  a_symbol* symbol = make_symbol(kind, locator);
  add_symbol_to_symbol_table(symbol, -1, nullptr);
  return symbol;
}

a_symbol* enter_local_symbol(a_symbol_kind kind, a_symbol_locator* locator, bool* in_out_flag) {
  return enter_symbol(kind, locator, depth_scope_stack, in_out_flag);
}

// ---- Overload sets ----

// Puts `replacement` in the place of `symbol` on its chain.
static void replace_on_chain(a_symbol* symbol, a_symbol* replacement) {
  a_symbol** link = link_to_symbol(symbol);
  if (link == nullptr)
    return;
  replacement->is_inactive = symbol->is_inactive;
  replacement->hidden_from_ordinary_entry = symbol->hidden_from_ordinary_entry;
  replacement->next_homonym = symbol->next_homonym;
  *link = replacement;
}

static a_scope_pointers_block* block_of_symbol(a_symbol* symbol, bool* has_no_scope) {
  *has_no_scope = false;
  int depth = scope_depth_of_number(symbol->scope_number);
  if (depth >= 0)
    return pointers_block_of_entry(&scope_stack[depth]);
  if (symbol->is_class_member || symbol->is_namespace_member) {
    a_scope_kind kind;
    return block_of_parent(symbol, &kind);
  }
  *has_no_scope = symbol->scope_number < 0;
  return nullptr;
}

// Puts `replacement` in the place of a symbol on its scope's list; null takes
// the symbol off.
static void replace_on_scope_list(a_symbol* symbol, a_symbol* replacement,
                                  a_scope_pointers_block* block) {
  a_symbol* next = replacement != nullptr ? replacement : symbol->next_in_scope;
  a_symbol* previous = replacement != nullptr ? replacement : symbol->prev_in_scope;
  if (symbol->prev_in_scope != nullptr)
    symbol->prev_in_scope->next_in_scope = next;
  else if (block != nullptr && block->first_symbol == symbol)
    block->first_symbol = next;
  else if (symbols_with_no_scope == symbol)
    symbols_with_no_scope = next;
  if (symbol->next_in_scope != nullptr)
    symbol->next_in_scope->prev_in_scope = previous;
  else if (block != nullptr && block->last_symbol == symbol)
    block->last_symbol = previous;
  if (replacement != nullptr) {
    replacement->next_in_scope = symbol->next_in_scope;
    replacement->prev_in_scope = symbol->prev_in_scope;
  }
  symbol->next_in_scope = nullptr;
  symbol->prev_in_scope = nullptr;
}

// The same in the table of the scope.
static void replace_in_table(a_symbol* symbol, a_symbol* replacement,
                             a_scope_pointers_block* block) {
  if (block == nullptr || block->symbols == nullptr)
    return;
  a_hash_table_entry* entry = hash_find(block->symbols, symbol->header, false);
  if (entry == nullptr)
    return;
  a_symbol* previous = nullptr;
  a_symbol* found = entry->first;
  while (found != nullptr && found != symbol) {
    previous = found;
    found = found->next_in_table_list;
  }
  if (found == nullptr)
    return;
  a_symbol* next = symbol->next_in_table_list;
  if (replacement != nullptr) {
    replacement->next_in_table_list = next;
    next = replacement;
  }
  (previous == nullptr ? entry->first : previous->next_in_table_list) = next;
  if (entry->last == symbol)
    entry->last = replacement != nullptr ? replacement : previous;
  symbol->next_in_table_list = nullptr;
}

static void replace_everywhere(a_symbol* symbol, a_symbol* replacement) {
  bool has_no_scope;
  a_scope_pointers_block* block = block_of_symbol(symbol, &has_no_scope);
  replace_on_chain(symbol, replacement);
  if (block != nullptr || has_no_scope)
    replace_on_scope_list(symbol, replacement, block);
  replace_in_table(symbol, replacement, block);
}

static a_symbol* make_overload_set(a_symbol* first) {
  a_symbol* set = alloc_symbol(symk_overloaded_function, first->header, &first->position);
  set->scope_number = first->scope_number;
  set->decl_seq = first->decl_seq;
  set->parent = first->parent;
  set->is_class_member = first->is_class_member;
  set->is_namespace_member = first->is_namespace_member;
  replace_everywhere(first, set);
  set->variant.overload_list = first;
  first->next_homonym = nullptr;
  first->supplement.overload_set = set;
  return set;
}

a_symbol* add_symbol_to_overload_list(a_symbol* old_symbol, a_symbol* new_symbol) {
  a_symbol* set =
      old_symbol->kind == symk_overloaded_function ? old_symbol : make_overload_set(old_symbol);
  a_symbol** link = &set->variant.overload_list;
  while (*link != nullptr)
    link = &(*link)->next_homonym;
  *link = new_symbol;
  new_symbol->next_homonym = nullptr;
  new_symbol->supplement.overload_set = set;
  new_symbol->scope_number = set->scope_number;
  new_symbol->parent = set->parent;
  new_symbol->is_class_member = set->is_class_member;
  new_symbol->is_namespace_member = set->is_namespace_member;
  return set;
}

a_symbol* enter_overloaded_symbol(a_symbol_kind kind, a_symbol* old_symbol,
                                  a_symbol_locator* locator, int depth) {
  if (old_symbol == nullptr)
    return enter_symbol(kind, locator, depth, nullptr);
  a_symbol* symbol = make_symbol(kind, locator);
  if (!symbol->not_in_lookup)
    add_symbol_to_overload_list(old_symbol, symbol);
  return symbol;
}

void remove_symbol_from_overload_set(a_symbol* symbol, a_symbol* set) {
  a_symbol** link = &set->variant.overload_list;
  while (*link != nullptr && *link != symbol)
    link = &(*link)->next_homonym;
  if (*link == nullptr)
    return;
  *link = symbol->next_homonym;
  symbol->next_homonym = nullptr;
  symbol->supplement.overload_set = nullptr;
  a_symbol* rest = set->variant.overload_list;
  if (rest != nullptr && rest->next_homonym == nullptr) {
    rest->supplement.overload_set = nullptr;
    replace_everywhere(set, rest);
  }
}

a_symbol* make_overload_set_of(const std::vector<a_symbol*>& functions) {
  a_symbol* first = functions.front();
  a_symbol* set = alloc_symbol(symk_overloaded_function, first->header, &first->position);
  set->decl_seq = first->decl_seq;
  set->not_in_lookup = true;
  a_symbol** link = &set->variant.overload_list;
  for (a_symbol* function : functions) {
    a_symbol* projection =
        alloc_symbol(symk_namespace_projection, function->header, &function->position);
    projection->variant.projected_symbol = function;
    projection->supplement.overload_set = set;
    projection->decl_seq = function->decl_seq;
    projection->not_in_lookup = true;
    *link = projection;
    link = &projection->next_homonym;
  }
  return set;
}

bool overload_set_contains_template(const a_symbol* set) {
  for (const a_symbol* s = set->variant.overload_list; s != nullptr; s = s->next_homonym) {
    if (fundamental_symbol_of(const_cast<a_symbol*>(s))->kind == symk_function_template)
      return true;
  }
  return false;
}

// ---- Leaving and coming back ----

void unlink_symbol_from_symbol_table(a_symbol* symbol) {
  a_symbol** link = link_to_symbol(symbol);
  if (link == nullptr)
    return;
  *link = symbol->next_homonym;
  symbol->next_homonym = nullptr;
  symbol->is_inactive = false;
}

void remove_symbol_from_lookup_table(a_symbol* symbol, a_scope_pointers_block* block) {
  replace_in_table(symbol, nullptr, block);
}

static a_symbol* overload_set_of(const a_symbol* symbol) {
  switch (symbol->kind) {
  case symk_member_function:
  case symk_routine:
  case symk_function_template:
  case symk_projection:
  case symk_namespace_projection:
    return symbol->supplement.overload_set;
  default:
    return nullptr;
  }
}

void remove_symbol(a_symbol* symbol) {
  if (a_symbol* set = overload_set_of(symbol)) {
    remove_symbol_from_overload_set(symbol, set);
    return;
  }
  bool has_no_scope;
  a_scope_pointers_block* block = block_of_symbol(symbol, &has_no_scope);
  unlink_symbol_from_symbol_table(symbol);
  if (symbol->not_in_lookup)
    return;
  if (block != nullptr || has_no_scope)
    replace_on_scope_list(symbol, nullptr, block);
  if (block != nullptr)
    remove_symbol_from_lookup_table(symbol, block);
}

void reenter_symbol(a_symbol* symbol, int depth, bool on_scope_list) {
  if (on_scope_list)
    add_symbol_to_scope_list(symbol, depth, nullptr);
  enter_on_name_chain(symbol, depth);
}

void reenter_block_scope_symbol(a_symbol* symbol) {
  enter_on_name_chain(symbol, depth_scope_stack);
}

a_symbol* enter_copy_of_symbol(const a_symbol* symbol, int depth) {
  a_symbol* copy = alloc_front_end_record<a_symbol>();
  *copy = *symbol;
  copy->next_homonym = nullptr;
  copy->next_in_scope = nullptr;
  copy->prev_in_scope = nullptr;
  copy->next_in_table_list = nullptr;
  copy->is_inactive = false;
  copy->decl_seq = decl_seq_counter++;
  add_symbol_to_symbol_table(copy, depth, nullptr);
  return copy;
}

// ---- Symbols and entities ----

a_symbol* fundamental_symbol_of(a_symbol* symbol) {
  for (;;) {
    if (symbol->kind == symk_projection &&
        symbol->variant.projection->fundamental_symbol != nullptr)
      symbol = symbol->variant.projection->fundamental_symbol;
    else if (symbol->kind == symk_namespace_projection)
      symbol = symbol->variant.projected_symbol;
    else
      return symbol;
  }
}

static an_il_entry_kind il_entry_kind_of_symbol(a_symbol_kind kind) {
  switch (kind) {
  case symk_macro:
    return iek_macro;
  case symk_constant:
    return iek_constant;
  case symk_type:
  case symk_class_or_struct:
  case symk_union:
  case symk_enum:
    return iek_type;
  case symk_variable:
  case symk_static_data_member:
    return iek_variable;
  case symk_field:
    return iek_field;
  case symk_member_function:
  case symk_routine:
    return iek_routine;
  case symk_label:
    return iek_label;
  case symk_class_template:
  case symk_function_template:
  case symk_variable_template:
    return iek_template;
  case symk_namespace:
    return iek_namespace;
  default:
    return iek_none;
  }
}

void* il_entry_for_symbol(const a_symbol* symbol, an_il_entry_kind* kind) {
  *kind = il_entry_kind_of_symbol(symbol->kind);
  switch (*kind) {
  case iek_none:
    return nullptr;
  case iek_macro:
  case iek_template:
    // These entries hang from the front end's own record of the symbol.
    return symbol->extra.il_entry;
  default:
    return symbol->variant.entry;
  }
}

a_source_correspondence* source_corresp_entry_for_symbol(const a_symbol* symbol) {
  an_il_entry_kind kind;
  void* entry = il_entry_for_symbol(symbol, &kind);
  return entry == nullptr ? nullptr : source_corresp_for_il_entry(entry, kind);
}

void set_source_corresp_with_scope_depth(a_source_correspondence* corresp, a_symbol* symbol,
                                         int depth) {
  set_source_corresp(corresp, symbol);
  if (depth < 0)
    return;
  an_il_entry_kind kind;
  il_entry_for_symbol(symbol, &kind);
  a_scope* scope = ensure_il_scope_exists(&scope_stack[depth]);
  if (kind != iek_none && scope != nullptr)
    set_parent_scope(corresp, kind, scope);
  if (scope_stack[depth].kind == sk_class && scope_stack[depth].assoc_type != nullptr) {
    set_class_membership(symbol, corresp, scope_stack[depth].assoc_type);
    corresp->access = scope_stack[depth].member_access;
    return;
  }
  a_namespace* owner = scope_stack[depth].namespace_entry;
  // What an unknown member's qualifier named stays the parent of its symbol.
  if (owner != nullptr && symbol->scope_number == scope_stack[depth].number &&
      !symbol->is_class_member) {
    symbol->parent.namespace_entry = owner;
    symbol->is_namespace_member = true;
  }
}

void set_class_membership(a_symbol* symbol, a_source_correspondence* corresp, a_type* class_type) {
  symbol->parent.class_type = class_type;
  symbol->is_class_member = true;
  if (corresp == nullptr)
    return;
  an_il_entry_kind kind;
  il_entry_for_symbol(symbol, &kind);
  a_class_type_supplement* supplement = class_supplement_of(class_type);
  if (kind != iek_none && supplement != nullptr && supplement->scope != nullptr)
    set_parent_scope(corresp, kind, supplement->scope);
  corresp->is_class_member = true;
}

void set_namespace_membership(a_symbol* symbol, a_source_correspondence* corresp,
                              a_namespace* namespace_entry) {
  symbol->parent.namespace_entry = namespace_entry;
  symbol->is_namespace_member = true;
  if (corresp == nullptr)
    return;
  an_il_entry_kind kind;
  il_entry_for_symbol(symbol, &kind);
  a_scope* scope = scope_of_namespace(namespace_entry);
  if (kind != iek_none && scope != nullptr)
    set_parent_scope(corresp, kind, scope);
}

// ---- Scope numbers and units ----

void set_trans_unit_for_scope(int32_t scope_number, a_translation_unit* unit) {
  if (scope_number >= size_of_trans_unit_for_scope) {
    int32_t new_size = scope_number - scope_number % trans_unit_table_increment;
    // The last steps of the number space are shorter.
    new_size = new_size > INT32_MAX - trans_unit_table_increment
                   ? INT32_MAX
                   : new_size + trans_unit_table_increment;
    const uint64_t old_bytes = uint64_t(size_of_trans_unit_for_scope) * sizeof(void*);
    const uint64_t new_bytes = uint64_t(new_size) * sizeof(void*);
    char* bytes =
        grow_zeroed_buffer(reinterpret_cast<char*>(trans_unit_for_scope), old_bytes, new_bytes);
    trans_unit_for_scope = reinterpret_cast<a_translation_unit**>(bytes);
    size_of_trans_unit_for_scope = new_size;
  }
  trans_unit_for_scope[scope_number] = unit;
}

int32_t take_next_scope_number() {
  if (next_scope_number == INT32_MAX)
    catastrophe(ec_program_too_large);
  int32_t number = next_scope_number++;
  set_trans_unit_for_scope(number, curr_translation_unit);
  return number;
}

a_translation_unit* trans_unit_for_symbol(const a_symbol* symbol) {
  int32_t number = symbol->scope_number;
  if (number < 0 || number >= size_of_trans_unit_for_scope)
    return curr_translation_unit;
  return trans_unit_for_scope[number];
}

bool symbol_is_from_trans_unit(const a_symbol* symbol, const a_translation_unit* unit) {
  return trans_unit_for_symbol(symbol) == unit;
}

uint32_t f_get_effective_decl_seq() {
  if (depth_innermost_instantiation_scope >= 0) {
    const uint32_t limit = scope_stack[depth_innermost_instantiation_scope].decl_seq_limit;
    if (limit != 0)
      return limit;
  }
  return decl_seq_counter;
}

// ---- Initialisation ----

static void set_name_spaces() {
  for (a_name_space& name_space : name_space_for_symbol_kind)
    name_space = ns_ordinary;
  const a_name_space tag = in_cplusplus_mode() ? ns_ordinary : ns_tag;
  const a_name_space member = in_cplusplus_mode() ? ns_ordinary : ns_member;
  name_space_for_symbol_kind[symk_keyword] = ns_keyword;
  name_space_for_symbol_kind[symk_macro] = ns_macro;
  name_space_for_symbol_kind[symk_class_or_struct] = tag;
  name_space_for_symbol_kind[symk_union] = tag;
  name_space_for_symbol_kind[symk_enum] = tag;
  name_space_for_symbol_kind[symk_field] = member;
  name_space_for_symbol_kind[symk_static_data_member] = member;
  name_space_for_symbol_kind[symk_member_function] = member;
  name_space_for_symbol_kind[symk_label] = ns_label;
  name_space_for_symbol_kind[symk_extern_variable] = ns_block_extern;
  name_space_for_symbol_kind[symk_extern_routine] = ns_block_extern;
}

template <typename T> static void register_per_unit(T& variable) {
  f_register_trans_unit_variable(&variable, sizeof variable, 0);
}

void symbol_tbl_one_time_init() {
  set_name_spaces();
  trans_unit_for_scope = nullptr;
  size_of_trans_unit_for_scope = 0;
  register_per_unit(symbol_for_namespace_std);
  register_per_unit(symbol_for_namespace_abi);
  register_per_unit(symbol_for_make_integer_seq);
  register_per_unit(symbol_for_std_initializer_list);
  register_per_unit(builtin_va_list_type);
  register_per_unit(type_underlying_va_list);
  register_per_unit(symbols_with_no_scope);
  register_per_unit(file_scope_symbols_are_on_inactive_list);
  register_per_unit(conversion_header_list);
  register_per_unit(decl_seq_counter);
  register_per_unit(file_scope_number);
  register_per_unit(locator_for_curr_id);
}

void symbol_tbl_init() {
  if (!symbol_table_is_empty)
    memset(symbol_table, 0, sizeof symbol_table);
  else // the keywords touch every page: one call is cheaper than all those faults
    madvise(symbol_table, sizeof symbol_table, MADV_POPULATE_WRITE);
  symbol_table_is_empty = true;
  memset(opname_symbol_table, 0, sizeof opname_symbol_table);
  error_header = nullptr;
  next_scope_number = 1;
  file_scope_number = 0;
  set_trans_unit_for_scope(0, curr_translation_unit);
}

void symbol_tbl_trans_unit_init() {
  symbol_for_namespace_std = nullptr;
  symbol_for_namespace_abi = nullptr;
  symbol_for_make_integer_seq = nullptr;
  symbol_for_std_initializer_list = nullptr;
  builtin_va_list_type = nullptr;
  type_underlying_va_list = nullptr;
  symbols_with_no_scope = nullptr;
  file_scope_symbols_are_on_inactive_list = false;
  conversion_header_list = nullptr;
  decl_seq_counter = 1;
  locator_for_curr_id = cleared_locator;
  if (is_primary_translation_unit) {
    file_scope_number = 0;
    set_trans_unit_for_scope(0, curr_translation_unit);
  } else {
    file_scope_number = take_next_scope_number();
  }
}
