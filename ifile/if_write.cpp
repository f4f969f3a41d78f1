#include "if_write.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "if_write_util.h"
#include "krt_util.h"

namespace {

// The name table grows by this many slots.
constexpr uint32_t file_step = 20;

} // namespace

I_FILE* if_create(FILE* output, TYPE_PKG* type_pkg, const char* trans_unit_name) {
  return new I_FILE(output, type_pkg, trans_unit_name);
}

I_FILE::I_FILE(FILE* output, TYPE_PKG* types, const char* unit_name)
    : trans_unit_name(unit_name), stream(output), type_pkg(types) {
  set_up_buffer();
  if_write_magic();
}

I_FILE::~I_FILE() {
  for (uint32_t file = 1; file <= file_count; file++)
    free(file_names[file]);
  free(file_names);
  free(buffer);
}

// -- Closing ------------------------------------------------------------------

bool I_FILE::if_close(bool keep_all_types, bool abandon) {
  if (writing && !abandon)
    finish_sections(keep_all_types);
  if (writing)
    if_flush();
  if (fclose(stream) != 0)
    note_failure();
  bool had_failure = failed;
  int reason = failure_errno;
  delete this;

  if (had_failure || abandon)
    if_remove_output_file();
  else
    if_set_output_name(nullptr);
  errno = reason;
  return had_failure;
}

// Writes what follows the last section of code or data, then the final header.
void I_FILE::finish_sections(bool keep_all_types) {
  i_write_eof();
  if_write_all_options();
  if_write_all_types(keep_all_types);
  if_write_all_files();
  if_write_all_globals();
  if (global_offset > UINT32_MAX) { // the header can't tell where it is
    errno = EFBIG;
    note_failure();
  }
  if_seek(0);
  if_write_magic();
}

// Keeps the reason of the first failure.
void I_FILE::note_failure() {
  if (!failed)
    failure_errno = errno;
  failed = true;
}

long I_FILE::if_tell() {
  return written_length + static_cast<long>(record_start);
}

void I_FILE::if_seek(long offset) {
  write_finished_records();
  if (fseek(stream, offset + base_offset, SEEK_SET) != 0)
    note_failure();
  written_length = offset;
}

void I_FILE::if_flush() {
  write_finished_records();
  if (fflush(stream) != 0)
    note_failure();
}

bool I_FILE::if_has_room_for(uint64_t nodes) {
  constexpr uint64_t shortest_node = 4; // tag, length, opcode, type
  if (nodes <= (UINT32_MAX - std::min<uint64_t>(if_tell(), UINT32_MAX)) / shortest_node)
    return true;
  errno = EFBIG;
  note_failure();
  return false;
}

// -- Tables -------------------------------------------------------------------

unsigned I_FILE::i_get_file_id(const char* name) const {
  // Positions of one file come in runs.
  if (last_file != 0 && strcmp(file_names[last_file], name) == 0)
    return last_file;
  for (uint32_t file = 1; file <= file_count; file++) {
    if (file_names[file] == name || strcmp(file_names[file], name) == 0) {
      last_file = file;
      return file;
    }
  }
  return 0;
}

const char* I_FILE::i_get_file_name(unsigned file) const {
  return file == 0 || file > file_count ? nullptr : file_names[file];
}

unsigned I_FILE::i_enter_file_name(const char* name) {
  unsigned file = i_get_file_id(name);
  if (file != 0)
    return file;
  if (file_count + 1 >= file_capacity) {
    size_t slots = file_capacity + file_step;
    char** grown = static_cast<char**>(realloc(file_names, slots * sizeof(char*)));
    if (grown == nullptr)
      if_stop(">> ICODE Buffer size exceeded and realloc failed");
    file_names = grown;
    file_capacity += file_step;
  }
  char* copy = strdup(name);
  if (copy == nullptr)
    if_stop(">> ICODE Buffer size exceeded and realloc failed");
  file_names[++file_count] = copy;
  last_file = file_count;
  return file_count;
}

void I_FILE::if_enter_global(I_SYMTAB* symbol) {
  if (const PSN* psn = symbol->sym_psn())
    i_enter_file_name(psn->file != nullptr ? psn->file : if_no_file);
  symbol->set_level(0);
  symbol->id = static_cast<int32_t>(globals.size());
  globals.push_back(symbol);
}

void I_FILE::if_enter_local(I_SYMTAB* symbol) {
  symbol->set_level(level);
  symbol->id = static_cast<int32_t>(locals.size());
  locals.push_back(symbol);
}

void I_FILE::if_enter_option_set(const OPTION_SET& set) {
  option_sets.push_back(set);
}

void I_FILE::if_enter_option_set(unsigned set_id, int count, char** strings) {
  OPTION_SET set;
  set.id = set_id;
  for (int i = 0; i < count; i++)
    set.strings.emplace_back(strings[i] != nullptr ? strings[i] : "");
  option_sets.push_back(std::move(set));
}

void I_FILE::if_set_flags(uint32_t bits) {
  flags |= bits;
}

// -- The header and the tables' sections --------------------------------------

void I_FILE::if_write_magic() {
  i_write_string(if_magic, 0);
  i_write_i16(version);
  i_write_i16(icode_cpu_id);
  for (int64_t offset : {option_offset, init_offset, type_offset, file_offset, global_offset})
    i_write_i32(static_cast<int>(offset));
  i_write_string(trans_unit_name.c_str(), 0);
  if (version >= -83)
    i_write_i32(static_cast<int>(flags));
  i_flush(iftag_magic);
}

// The number of strings and the strings.
void I_FILE::write_strings(const std::vector<std::string>& strings) {
  i_write_uint(strings.size());
  for (const std::string& text : strings)
    i_write_string(text.c_str(), 0);
}

void I_FILE::if_write_all_options() {
  if (option_sets.empty())
    return;
  option_offset = if_tell();
  for (const OPTION_SET& set : option_sets) {
    i_write_uint(set.id);
    write_strings(set.strings);
    i_flush(iftag_option_set);
  }
  i_write_eof();
}

void I_FILE::if_write_source(const char* file_name) {
  i_write_string(file_name, 0);
  i_flush(iftag_file_name);
}

void I_FILE::if_write_all_files() {
  if (file_count == 0)
    return;
  file_offset = if_tell();
  for (uint32_t file = 1; file <= file_count; file++)
    if_write_source(file_names[file]);
  i_write_eof();
}

void I_FILE::if_write_all_globals() {
  global_offset = if_tell();
  for (I_SYMTAB* symbol : globals)
    if_write_symbol(symbol);
  i_write_eof();
}

// -- Functions and blocks -----------------------------------------------------

// Follows the nesting level over one of the tags 1 to 6.
void I_FILE::follow_level(int tag) {
  switch (tag) {
  case iftag_begin_func:
    level = 1;
    break;
  case iftag_end_args:
    level = 2;
    break;
  case iftag_begin_block:
    level++;
    break;
  case iftag_end_block:
    level--;
    break;
  case iftag_end_func:
    level = 0;
    break;
  default:
    break;
  }
}

void I_FILE::if_write_control(int tag, const PSN* psn) {
  i_write_psn(psn);
  i_flush(tag);
  follow_level(tag);
}

void I_FILE::if_write_begin_func(I_SYMTAB* symbol, const PSN* psn) {
  symbol->set_location(if_tell());
  i_write_psn(psn);
  i_write_uint(static_cast<uint32_t>(symbol->id));
  i_flush(iftag_begin_func);
  follow_level(iftag_begin_func);
  locals.clear();
}

void I_FILE::if_write_end_func(const PSN* psn) {
  if_write_control(iftag_end_func, psn);
}

void I_FILE::if_write_begin_block(const PSN* psn) {
  if_write_control(iftag_begin_block, psn);
}

void I_FILE::if_write_end_block(const PSN* psn) {
  if_write_control(iftag_end_block, psn);
}

void I_FILE::if_write_end_args(const PSN* psn) {
  if_write_control(iftag_end_args, psn);
}

void I_FILE::if_write_end_locals(const PSN* psn) {
  if_write_control(iftag_end_locals, psn);
}

// -- Symbols, pragmas, initialisers and texts ---------------------------------

void I_FILE::if_write_symbol(I_SYMTAB* symbol) {
  i_write_string(symbol->sym_name(), 0);
  i_write_uint(symbol->sym_size());
  // Sign-extended, so that a negative value takes ten bytes.
  i_write_uint(static_cast<unsigned long>(static_cast<long>(symbol->sym_value())));
  i_write_i8(symbol->sym_class());
  i_write_i16(symbol->sym_cqual());
  i_write_typeref(symbol->sym_type());
  i_write_typeref(symbol->sym_cpp_type());
  i_write_uint(symbol->sym_align());
  i_write_i8(symbol->sym_prag_num());
  i_write_uint(symbol->sym_location());
  i_write_uint(symbol->sym_option_set());
  i_write_psn(symbol->sym_psn());
  i_write_i8(symbol->definition_state);
  i_flush(iftag_symbol);
  for (const PRAGMA* pragma = symbol->sym_pragma(); pragma != nullptr; pragma = pragma->next)
    if_write_pragma(pragma);
}

void I_FILE::if_write_pragma(const PRAGMA* pragma) {
  i_write_uint(pragma->kind);
  write_strings(pragma->strings);
  i_flush(iftag_pragma);
}

void I_FILE::if_write_init(I_SYMTAB* symbol) {
  if (init_offset == 0) {
    i_write_eof();
    init_offset = if_tell();
  }
  symbol->set_location(if_tell());
  i_write_uint(static_cast<uint32_t>(symbol->id));
  i_flush(iftag_init);
}

void I_FILE::if_write_assembly(const char* text, const PSN* psn) {
  i_write_string(text, 0);
  i_write_psn(psn);
  i_flush(iftag_assembly);
}

void I_FILE::if_write_label(unsigned label) {
  i_write_uint(label);
  i_flush(iftag_label);
}

void I_FILE::if_write_comment(const char* text) {
  i_write_string(text, 0);
  i_flush(iftag_comment);
}

void I_FILE::if_write_func_info(int info) {
  i_write_i8(info);
  i_flush(iftag_func_info);
}

// -- Loop, dependence and memory bank tables ----------------------------------

void I_FILE::if_write_loop(unsigned id, unsigned first_label, unsigned last_label, unsigned min,
                           unsigned max, int loop_flags) {
  for (unsigned field : {id, first_label, last_label, min, max})
    i_write_uint(field);
  i_write_i16(loop_flags);
  i_flush(iftag_loop);
}

void I_FILE::if_write_inloop(unsigned loop_id, const I_SYMTAB* symbol, int loop_flags) {
  i_write_uint(loop_id);
  i_write_sint(symbol != nullptr ? symbol->sym_level() : -1);
  i_write_sint(symbol != nullptr ? symbol->id : -1);
  i_write_i8(loop_flags);
  i_flush(iftag_inloop);
}

// Level and id of a symbol that may be missing.
void I_FILE::write_ldspec_symbol(const I_SYMTAB* symbol) {
  i_write_sint(symbol != nullptr ? symbol->sym_level() : -1);
  i_write_uint(symbol != nullptr ? static_cast<uint32_t>(symbol->id) : 0);
}

void I_FILE::if_write_ldspec_induct(unsigned id, unsigned base, long step, TYPE* type,
                                    const I_SYMTAB* symbol) {
  i_write_uint(id);
  i_write_i8(0);
  i_write_uint(base);
  i_write_sint(step);
  i_write_typeref(type);
  write_ldspec_symbol(symbol);
  i_flush(iftag_ldspec);
}

void I_FILE::if_write_ldspec_rand(unsigned id, unsigned base, unsigned extent, TYPE* type,
                                  const I_SYMTAB* symbol) {
  i_write_uint(id);
  i_write_i8(1);
  i_write_uint(base);
  i_write_uint(extent);
  i_write_typeref(type);
  write_ldspec_symbol(symbol);
  i_flush(iftag_ldspec);
}

void I_FILE::if_write_ldspec_region(unsigned id, unsigned region) {
  i_write_uint(id);
  i_write_i8(2);
  i_write_uint(region);
  i_flush(iftag_ldspec);
}

void I_FILE::if_write_mbank(unsigned id, unsigned bank, unsigned banks, unsigned offset,
                            unsigned size) {
  for (unsigned field : {id, bank, banks, offset, size})
    i_write_uint(field);
  i_flush(iftag_mbank);
}

void I_FILE::if_write_dep_edge(unsigned id, unsigned from, unsigned to) {
  for (unsigned field : {id, from, to})
    i_write_uint(field);
  i_flush(iftag_dep_edge);
}

void I_FILE::if_write_dep_vector(unsigned id, int kind, int count, const DD_ENTRY* entries) {
  i_write_uint(id);
  i_write_i8(kind);
  i_write_i8(count);
  for (int i = 0; i < count; i++) {
    i_write_i8(entries[i].direction);
    i_write_i8(entries[i].distance);
  }
  i_flush(iftag_dep_vector);
}

// -- Exception tables ---------------------------------------------------------

void I_FILE::if_write_eht_hdr(unsigned count) {
  i_write_uint(count);
  i_flush(iftag_eht_hdr);
}

void I_FILE::if_write_eht_entry(const EHT_ENTRY& entry) {
  for (uint32_t field : {entry.id, entry.kind, entry.parent, entry.count})
    i_write_uint(field);
  i_flush(iftag_eht_entry);
}

void I_FILE::if_write_eht_catch_entry(const I_CATCH_ENTRY* catches, unsigned count) {
  for (unsigned i = 0; i < count; i++) {
    i_write_string(catches[i].name, 0);
    i_write_uint(catches[i].value);
    i_write_bool(catches[i].flag);
  }
  i_flush(iftag_eht_catch_entry);
}

void I_FILE::if_write_func_eht(const EHT_ENTRY* entries, unsigned count) {
  if_write_eht_hdr(count);
  for (unsigned i = 0; i < count; i++) {
    if_write_eht_entry(entries[i]);
    if (entries[i].kind == eht_catch)
      if_write_eht_catch_entry(entries[i].u.catches, entries[i].count);
    else if (entries[i].kind == eht_cleanup)
      if_write_expr(entries[i].u.expr, nullptr);
  }
}
