#include "if_symbol.h"

#include <utility>

SYMTAB::~SYMTAB() {
  while (pragmas != nullptr)
    delete std::exchange(pragmas, pragmas->next);
}

void SYMTAB::add_pragma(uint8_t kind, std::vector<std::string> strings) {
  PRAGMA* pragma = new PRAGMA(kind, std::move(strings));
  pragma->next = pragmas;
  pragmas = pragma;
  prag_num++;
}

const PRAGMA* SYMTAB::find_pragma(uint8_t kind) const {
  const PRAGMA* pragma = pragmas;
  while (pragma != nullptr && pragma->kind != kind)
    pragma = pragma->next;
  return pragma;
}

void SYMTAB::set_psn(const PSN& position) {
  psn = position;
  if (psn->file == nullptr)
    psn->file = if_no_file;
}

const char* SYMTAB::sym_name() const {
  return name.c_str();
}

uint32_t SYMTAB::sym_size() const {
  return size;
}

int32_t SYMTAB::sym_value() const {
  return value;
}

int SYMTAB::sym_class() const {
  return storage_class;
}

int SYMTAB::sym_cqual() const {
  return cqual;
}

TYPE* SYMTAB::sym_type() const {
  return type;
}

TYPE* SYMTAB::sym_cpp_type() const {
  return cpp_type;
}

uint32_t SYMTAB::sym_align() const {
  return align;
}

const PSN* SYMTAB::sym_psn() const {
  return psn ? &*psn : nullptr;
}

const PRAGMA* SYMTAB::sym_pragma() const {
  return pragmas;
}

int SYMTAB::sym_prag_num() const {
  return prag_num;
}

unsigned long SYMTAB::sym_location() const {
  return location;
}

uint32_t SYMTAB::sym_option_set() const {
  return option_set;
}

int SYMTAB::sym_level() const {
  return level;
}

void SYMTAB::set_level(int new_level) {
  level = new_level;
}

void SYMTAB::set_location(unsigned long offset) {
  location = offset;
}
