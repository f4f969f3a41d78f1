// For tests of the intermediate file: an output file that is written through
// I_FILE and comes back as bytes.

#ifndef IF_SAMPLE_H
#define IF_SAMPLE_H

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include "if_write.h"
#include "ifread.h"
#include "type_pkg.h"

class SampleFile {
public:
  SampleFile() {
    int descriptor = mkstemp(path);
    writer = if_create(fdopen(descriptor, "w+b"), &types, "sample.c");
  }
  ~SampleFile() {
    if (writer != nullptr)
      writer->if_close(false, true);
    unlink(path);
  }

  // A new symbol, owned by the file.
  SYMTAB* symbol(const char* name, TYPE* type, int storage_class) {
    SYMTAB* made = symbols.emplace_back(std::make_unique<SYMTAB>()).get();
    made->name = name;
    made->type = type;
    made->storage_class = storage_class;
    made->size = static_cast<uint32_t>(type->size);
    made->align = type->align;
    return made;
  }
  SYMTAB* global(const char* name, TYPE* type, int storage_class = ifsc_global) {
    SYMTAB* made = symbol(name, type, storage_class);
    writer->if_enter_global(made);
    return made;
  }
  SYMTAB* local(const char* name, TYPE* type, int storage_class = ifsc_auto) {
    SYMTAB* made = symbol(name, type, storage_class);
    writer->if_enter_local(made);
    writer->if_write_symbol(made);
    return made;
  }

  void node(uint32_t opcode, TYPE* type, uint64_t value = 0) {
    NODE made(opcode, type);
    made.value.integer = value;
    writer->if_write_expr_node(&made);
  }
  void name(SYMTAB* named) {
    NODE made(ifop_NAME, named->type);
    made.value.symbol = named;
    writer->if_write_expr_node(&made);
  }
  void text_node(uint32_t opcode, TYPE* type, const char* text, uint32_t length = 0) {
    NODE made(opcode, type);
    made.value.text = text;
    made.length = length;
    writer->if_write_expr_node(&made);
  }
  void field(TYPE* type, TYPE* csu, fkMDATA* member) {
    NODE made(ifop_FIELD, type);
    FIELD_REF reference{csu, member};
    made.value.field = &reference;
    writer->if_write_expr_node(&made);
  }

  // Closes the file and gives its bytes.
  std::string bytes(bool keep_all_types = false) {
    writer->if_close(keep_all_types, false);
    writer = nullptr;
    std::string content;
    an_if_error error;
    if_load_bytes(path, &content, &error);
    return content;
  }

  TYPE_PKG types;
  I_FILE* writer;

private:
  char path[32] = "/tmp/if_sample_XXXXXX";
  std::vector<std::unique_ptr<SYMTAB>> symbols;
};

#endif
