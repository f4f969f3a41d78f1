// Symbols of the intermediate file: the interface that the writer sees, and
// the symbol that the generator makes.

#ifndef IF_SYMBOL_H
#define IF_SYMBOL_H

#include <cstdint>
#include <optional>
#include <string>

#include "if_util.h"

class TYPE;

// A symbol as the writer of the file sees it.
class I_SYMTAB {
public:
  virtual const char* sym_name() const = 0;
  virtual uint32_t sym_size() const = 0; // bits
  virtual int32_t sym_value() const = 0;
  virtual int sym_class() const = 0; // an_if_symbol_class
  virtual int sym_cqual() const = 0; // qualifier bits
  virtual TYPE* sym_type() const = 0;
  virtual TYPE* sym_cpp_type() const = 0; // as written in the source, or null
  virtual uint32_t sym_align() const = 0; // bits
  virtual const PSN* sym_psn() const = 0; // null: no position
  virtual const PRAGMA* sym_pragma() const = 0;
  virtual int sym_prag_num() const = 0;
  virtual unsigned long sym_location() const = 0;
  virtual uint32_t sym_option_set() const = 0;
  virtual int sym_level() const = 0;
  virtual void set_level(int new_level) = 0;
  virtual void set_location(unsigned long offset) = 0;
  virtual ~I_SYMTAB() = default;

  // The index in the table of globals or of a function's locals; -1 until the
  // symbol is entered.
  int32_t id = -1;
  uint8_t definition_state = 0;

  bool is_entered() const {
    return id != -1;
  }
};

// A symbol made by the generator.
class SYMTAB final : public I_SYMTAB {
public:
  std::string name;
  uint32_t size = 0;
  int32_t value = 0;
  int storage_class = 0; // an_if_symbol_class
  int cqual = 0;
  TYPE* type = nullptr;
  TYPE* cpp_type = nullptr;
  uint32_t align = 0;
  std::optional<PSN> psn;
  PRAGMA* pragmas = nullptr; // newest first
  int prag_num = 0;
  unsigned long location = 0;
  uint32_t option_set = 0;
  int level = 0;

  SYMTAB() = default;
  SYMTAB(const SYMTAB&) = delete;
  SYMTAB& operator=(const SYMTAB&) = delete;
  ~SYMTAB() override;

  // Puts a pragma at the head of the list.
  void add_pragma(uint8_t kind, std::vector<std::string> strings = {});
  // The newest pragma of a kind, or null.
  const PRAGMA* find_pragma(uint8_t kind) const;
  // Copies a position into the symbol; an unknown file becomes "NO_FILE".
  void set_psn(const PSN& position);

  const char* sym_name() const override;
  uint32_t sym_size() const override;
  int32_t sym_value() const override;
  int sym_class() const override;
  int sym_cqual() const override;
  TYPE* sym_type() const override;
  TYPE* sym_cpp_type() const override;
  uint32_t sym_align() const override;
  const PSN* sym_psn() const override;
  const PRAGMA* sym_pragma() const override;
  int sym_prag_num() const override;
  unsigned long sym_location() const override;
  uint32_t sym_option_set() const override;
  int sym_level() const override;
  void set_level(int new_level) override;
  void set_location(unsigned long offset) override;
};

#endif
