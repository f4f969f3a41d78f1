// The writer of the intermediate file. The file is a sequence of records, each
// a tag byte, the length of the body as LEB128 and the body, in sections that
// end with a bare byte 255. I_FILE owns the stream, the byte encoders, the
// tables of files, option sets, globals and locals, and the order of all that.

#ifndef IF_WRITE_H
#define IF_WRITE_H

#include <cstdint>
#include <cstdio>
#include <list>
#include <string>
#include <vector>

#include "if_nodes.h"
#include "if_symbol.h"
#include "if_tags.h"
#include "if_util.h"

class TYPE;
class TYPE_PKG;
struct fkADECL;
struct fkBCLASS;
struct fkETOR;
struct fkFFRIEND;
struct fkMDATA;
struct fkMFUNC;
struct fkPARAM;
struct fkSDATA;
struct fkTYPE_ELEM;

class I_FILE {
public:
  // Takes over the stream and writes a provisional header.
  I_FILE(FILE* output, TYPE_PKG* types, const char* unit_name);
  I_FILE(const I_FILE&) = delete;
  I_FILE& operator=(const I_FILE&) = delete;

  // Finishes the file: writes the sections of options, types, files and globals
  // and the final header, unless `abandon`; closes the stream and destroys the
  // object. `keep_all_types` also writes named types that nothing refers to.
  // True on failure; errno then tells the reason, or is 0 when it is unknown.
  // A file that failed or was abandoned is removed (if_set_output_name).
  bool if_close(bool keep_all_types, bool abandon);

  long if_tell();
  void if_seek(long offset);
  void if_flush();
  // Whether so many more nodes may fit into a file whose size the header can
  // tell. If not, the file has failed, and nothing of them need be written.
  bool if_has_room_for(uint64_t nodes);

  // The id of a file name, entering it when it is new. Ids start at 1.
  unsigned i_enter_file_name(const char* name);
  unsigned i_get_file_id(const char* name) const;   // 0: not entered
  const char* i_get_file_name(unsigned file) const; // null: no such id

  void if_enter_global(I_SYMTAB* symbol);
  void if_enter_local(I_SYMTAB* symbol);
  void if_enter_option_set(const OPTION_SET& set);
  void if_enter_option_set(unsigned set_id, int count, char** strings); // null strings are empty

  // Sets bits of the header's flags word.
  void if_set_flags(uint32_t bits);

  // The nesting level: 0 outside functions, 1 in parameters, 2 in the body,
  // and 1 more for each open block.
  int if_level() const {
    return level;
  }

  // Functions and blocks. Their level follows these records.
  void if_write_begin_func(I_SYMTAB* symbol, const PSN* psn); // also sets the symbol's location
  void if_write_end_func(const PSN* psn);
  void if_write_begin_block(const PSN* psn);
  void if_write_end_block(const PSN* psn);
  void if_write_end_args(const PSN* psn);
  void if_write_end_locals(const PSN* psn);
  // A position under one of the tags 1 to 6, with the tag's effect on the level.
  void if_write_control(int tag, const PSN* psn);

  void if_write_magic();
  void if_write_symbol(I_SYMTAB* symbol); // and its pragmas
  void if_write_assembly(const char* text, const PSN* psn);
  void if_write_label(unsigned label);
  void if_write_comment(const char* text);
  void if_write_func_info(int info);
  void if_write_pragma(const PRAGMA* pragma);
  void if_write_init(I_SYMTAB* symbol); // also sets the symbol's location
  void if_write_source(const char* file_name);
  void if_write_all_options();
  void if_write_all_files();
  void if_write_all_globals();

  // Loop, dependence, memory bank and exception tables.
  void if_write_loop(unsigned id, unsigned first_label, unsigned last_label, unsigned min,
                     unsigned max, int loop_flags);
  void if_write_inloop(unsigned loop_id, const I_SYMTAB* symbol, int loop_flags);
  void if_write_ldspec_induct(unsigned id, unsigned base, long step, TYPE* type,
                              const I_SYMTAB* symbol);
  void if_write_ldspec_rand(unsigned id, unsigned base, unsigned extent, TYPE* type,
                            const I_SYMTAB* symbol);
  void if_write_ldspec_region(unsigned id, unsigned region);
  void if_write_mbank(unsigned id, unsigned bank, unsigned banks, unsigned offset, unsigned size);
  void if_write_dep_edge(unsigned id, unsigned from, unsigned to);
  void if_write_dep_vector(unsigned id, int kind, int count, const DD_ENTRY* entries);
  void if_write_eht_hdr(unsigned count);
  void if_write_eht_entry(const EHT_ENTRY& entry);
  void if_write_eht_catch_entry(const I_CATCH_ENTRY* catches, unsigned count);
  void if_write_func_eht(const EHT_ENTRY* entries, unsigned count);

  // Expressions: the record that announces an expression, with its tree when
  // the node isn't null; and a node with its siblings and their operands.
  void if_write_expr(BASE_NODE* node, const PSN* psn);
  void if_write_expr_node(BASE_NODE* node);

  // Types (if_type.cpp).
  void if_write_all_types(bool keep_all);
  void if_write_type(TYPE* type);
  void if_reference_type(TYPE* type);
  void if_mark_global_types();
  void write_all_csu_types();
  void write_csu_type_lists(TYPE* type);
  void write_type_tree();
  void write_listof_params(TYPE* owner, fkPARAM* list);
  void write_listof_etors(TYPE* owner, fkETOR* list);
  void write_listof_bclasses(TYPE* owner, fkBCLASS* list);
  void write_listof_adecls(TYPE* owner, fkADECL* list);
  void write_listof_ffriends(TYPE* owner, fkFFRIEND* list);
  void write_listof_cfriends(TYPE* owner, fkTYPE_ELEM* list);
  void write_listof_ntypes(TYPE* owner, fkTYPE_ELEM* list);
  void write_listof_mdata(TYPE* owner, fkMDATA* list);
  void write_listof_sdata(TYPE* owner, fkSDATA* list);
  void write_listof_mfuncs(TYPE* owner, fkMFUNC* list);

  // Encoders: each appends a field to the record under construction.
  void i_write_i8(int value);
  void i_write_bool(bool value);
  void i_write_i16(int value); // a value outside -32768 .. 65535 stops the tool
  void i_write_i32(int value);
  void i_write_uint(unsigned long value);
  void i_write_sint(long value);
  // Up to and with the terminating NUL; a `count` above 0 writes exactly that
  // many bytes, without a NUL. A null text is an empty one.
  void i_write_string(const char* text, unsigned long count);
  void i_write_typeref(TYPE* type); // also marks the type as referenced
  void i_write_psn(const PSN* psn);
  // Ends the record: writes tag, length and body to the stream.
  void i_flush(int tag);
  // Ends a section.
  void i_write_eof();

private:
  ~I_FILE();

  // Types (if_type.cpp).
  void write_type_record(TYPE* type);
  void write_csu_fields(TYPE* type);
  template <class Node, class Write>
  void write_type_list(TYPE* owner, int list_id, int element_code, Node* list, Write write_fields);

  // Operand forms of expression nodes (if_nodes.cpp).
  void if_write_expr_name(BASE_NODE* node);
  void if_write_expr_field(BASE_NODE* node);
  void if_write_expr_icon(BASE_NODE* node);
  void if_write_expr_lcon(BASE_NODE* node);
  void if_write_expr_fcon(BASE_NODE* node);
  void if_write_expr_scon(BASE_NODE* node);
  void if_write_expr_label(BASE_NODE* node);
  void if_write_expr_vreg(BASE_NODE* node);
  void if_write_expr_skip(BASE_NODE* node);
  void if_write_expr_switch(BASE_NODE* node);
  void if_write_expr_ddnode(BASE_NODE* node);
  void if_write_expr_icall(BASE_NODE* node);
  void if_write_expr_call(BASE_NODE* node);
  void if_write_expr_ucall(BASE_NODE* node);
  void if_write_expr_pval(BASE_NODE* node);
  void write_expr_operand(BASE_NODE* node);

  void set_up_buffer();
  void grow_buffer();
  void make_room(size_t count);
  void append(const void* bytes, size_t count);
  void append_byte(unsigned char byte);
  void begin_record();
  void write_finished_records();
  void write_strings(const std::vector<std::string>& strings);
  void write_ldspec_symbol(const I_SYMTAB* symbol);
  void follow_level(int tag);
  void finish_sections(bool keep_all_types);
  void note_failure();

  std::string trans_unit_name;
  FILE* stream;
  long base_offset = 0; // where the file starts in the stream
  bool writing = true;
  int32_t version = if_version;
  // Where the sections start; 0: absent.
  int64_t option_offset = 0;
  int64_t init_offset = 0;
  int64_t type_offset = 0;
  int64_t file_offset = 0;
  int64_t global_offset = 0;
  std::list<OPTION_SET> option_sets;
  TYPE_PKG* type_pkg;
  char** file_names = nullptr; // index 0 is unused
  uint32_t file_count = 0;
  uint32_t file_capacity = 0;
  uint32_t flags = 0;
  int32_t level = 0;
  std::vector<I_SYMTAB*> locals;
  std::vector<I_SYMTAB*> globals;
  // Finished records that the stream hasn't got yet, and behind them, from
  // record_start on, the record under construction.
  char* buffer = nullptr;
  size_t buffer_capacity = 0;
  char* buffer_end = nullptr;
  size_t record_start = 0;

  long written_length = 0;        // what the stream has got, from base_offset on
  mutable uint32_t last_file = 0; // the file of the latest look-up
  // Whether an operation on the stream failed, and errno of the first failure.
  bool failed = false;
  int failure_errno = 0;
};

// Makes the writer of a file that has just been opened.
I_FILE* if_create(FILE* output, TYPE_PKG* type_pkg, const char* trans_unit_name);

#endif
