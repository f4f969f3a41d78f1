#include <charconv>

#include "ifread_int.h"

// -- Symbols -------------------------------------------------------------------

void an_if_reader::read_symbol(const an_if_record& record, an_if_symbol* symbol) {
  a_field_cursor cursor(record);
  symbol->offset = record.offset;
  symbol->name = cursor.string();
  symbol->size = cursor.uint();
  symbol->value = static_cast<int64_t>(cursor.uint());
  symbol->storage_class = cursor.i8();
  symbol->qualifier_bits = cursor.i16();
  symbol->type = optional_type(cursor);
  symbol->source_type = optional_type(cursor);
  symbol->align = cursor.uint();
  pragmas_to_come = cursor.i8();
  pragmas_of_symbol = &symbol->pragmas;
  symbol->location = cursor.uint();
  symbol->option_set = cursor.uint32();
  symbol->position = psn(cursor);
  symbol->definition_state = cursor.i8();
  cursor.finish();
}

void an_if_reader::take_pragma(const an_if_record& record, std::vector<an_if_pragma>* pragmas) {
  a_field_cursor cursor(record);
  an_if_pragma pragma;
  pragma.kind = cursor.uint32();
  cursor.strings(&pragma.strings);
  cursor.finish();
  pragmas->push_back(std::move(pragma));
}

void an_if_reader::read_globals() {
  for (const an_if_record& record : file.sections[ifs_globals].records) {
    if (pragmas_to_come != 0) {
      if (record.tag != iftag_pragma)
        if_fail(record.offset, "a pragma of the symbol before is missing");
      take_pragma(record, pragmas_of_symbol);
      --pragmas_to_come;
      continue;
    }
    if (record.tag != iftag_symbol)
      if_fail(record.offset, "not a symbol");
    an_if_symbol& symbol = file.globals.emplace_back();
    symbol.id = static_cast<uint32_t>(file.globals.size() - 1);
    read_symbol(record, &symbol);
  }
  if (pragmas_to_come != 0)
    if_fail(file.globals.back().offset, "a pragma of the symbol is missing");
}

const an_if_symbol* an_if_reader::global(uint32_t id, uint64_t offset) const {
  if (id >= file.globals.size())
    if_fail(offset, "there is no global symbol " + std::to_string(id));
  return &file.globals[id];
}

const an_if_symbol* an_if_reader::named_symbol(uint32_t level_of_symbol, uint32_t id,
                                               uint64_t offset) const {
  if (level_of_symbol == 0)
    return global(id, offset);
  if (function == nullptr || id >= function->locals.size())
    if_fail(offset, "there is no local symbol " + std::to_string(id));
  const an_if_symbol* symbol = &function->locals[id];
  if (symbol->level != level_of_symbol)
    if_fail(offset, "local symbol " + std::to_string(id) + " has level " +
                        std::to_string(symbol->level) + ", not " + std::to_string(level_of_symbol));
  return symbol;
}

// -- The body ------------------------------------------------------------------

void an_if_reader::read_body() {
  size_t node_count = 0;
  for (auto number : {ifs_body, ifs_initializers}) {
    for (const an_if_record& record : file.sections[number].records)
      node_count += record.tag == iftag_expr_node;
  }
  file.nodes.reserve(node_count); // so that pointers to nodes stay good
  for (const an_if_record& record : file.sections[ifs_body].records) {
    if (pragmas_to_come != 0) {
      if (record.tag != iftag_pragma)
        if_fail(record.offset, "a pragma of the symbol before is missing");
      take_pragma(record, pragmas_of_symbol);
      --pragmas_to_come;
    } else if (record.tag == iftag_expr_node) {
      read_node(record);
    } else {
      end_tree();
      in_expression = false;
      read_statement(record);
    }
  }
  end_tree();
  in_expression = false;
  if (pragmas_to_come != 0)
    if_fail(function->locals.back().offset, "a pragma of the symbol is missing");
  if (function != nullptr)
    if_fail(function->offset, "the function has no end");
}

void an_if_reader::read_statement(const an_if_record& record) {
  if (record.tag == iftag_begin_func)
    return begin_function(record);
  if (record.tag == iftag_end_func)
    return end_function(record);
  an_if_statement statement;
  statement.tag = record.tag;
  statement.offset = record.offset;
  a_field_cursor cursor(record);
  std::vector<an_if_statement>& list = function != nullptr ? function->statements : file.body;
  switch (record.tag) {
  case iftag_begin_block:
  case iftag_end_block:
  case iftag_end_args:
  case iftag_end_locals:
    statement.position = psn(cursor);
    cursor.finish();
    follow_level(record);
    break;
  case iftag_expr:
    statement.position = psn(cursor);
    cursor.finish();
    begin_tree(&list);
    break;
  case iftag_label:
    statement.label = cursor.uint32();
    cursor.finish();
    if (function == nullptr)
      if_fail(record.offset, "a label outside of functions");
    if (!function->labels.emplace(statement.label, list.size()).second)
      if_fail(record.offset, "label " + std::to_string(statement.label) + " is defined twice");
    break;
  case iftag_symbol:
    add_local(record, &statement);
    break;
  case iftag_pragma: {
    std::vector<an_if_pragma> pragma;
    take_pragma(record, &pragma);
    statement.pragma = std::move(pragma[0]);
    break;
  }
  case iftag_assembly:
    statement.text = cursor.string();
    statement.position = psn(cursor);
    cursor.finish();
    break;
  case iftag_comment:
  case iftag_file_name:
    statement.text = cursor.string();
    cursor.finish();
    break;
  case iftag_magic:
  case iftag_type:
  case iftag_option_set:
  case iftag_init:
    if_fail(record.offset,
            std::string("a record of the kind ") + if_tag_name(record.tag) + " in the body");
  default:
    if_decode_whole_record(record, &statement.fields);
    break;
  }
  list.push_back(std::move(statement));
}

void an_if_reader::begin_function(const an_if_record& record) {
  if (function != nullptr)
    if_fail(record.offset, "a function within a function");
  a_field_cursor cursor(record);
  function = &file.functions.emplace_back();
  function->offset = record.offset;
  function->begin = psn(cursor);
  uint64_t symbol_offset = cursor.offset();
  function->symbol = global(cursor.uint32(), symbol_offset);
  cursor.finish();
  an_if_symbol& symbol = file.globals[function->symbol->id];
  if (symbol.location != record.offset)
    if_fail(symbol.offset, "the symbol's function is at " + std::to_string(record.offset) +
                               ", not at " + std::to_string(symbol.location));
  symbol.function = function;
  level = 1;
  an_if_statement statement;
  statement.tag = record.tag;
  statement.offset = record.offset;
  statement.position = function->begin;
  statement.function = function;
  file.body.push_back(std::move(statement));
}

void an_if_reader::end_function(const an_if_record& record) {
  if (function == nullptr)
    if_fail(record.offset, "the end of a function outside of functions");
  if (level != 2)
    if_fail(record.offset, level == 1 ? "the function's parameters have no end"
                                      : "the function ends within a block");
  a_field_cursor cursor(record);
  function->end = psn(cursor);
  cursor.finish();
  check_labels(*function);
  function = nullptr;
  level = 0;
}

void an_if_reader::follow_level(const an_if_record& record) {
  if (function == nullptr)
    if_fail(record.offset, "a block outside of functions");
  switch (record.tag) {
  case iftag_end_args:
    if (level != 1)
      if_fail(record.offset, "the end of parameters that aren't open");
    level = 2;
    function->parameter_count = function->locals.size();
    break;
  case iftag_begin_block:
    if (level < 2)
      if_fail(record.offset, "a block among parameters");
    ++level;
    break;
  case iftag_end_block:
    if (level < 3)
      if_fail(record.offset, "the end of a block that isn't open");
    --level;
    break;
  default:
    break;
  }
}

void an_if_reader::add_local(const an_if_record& record, an_if_statement* statement) {
  if (function == nullptr)
    if_fail(record.offset, "a local symbol outside of functions");
  an_if_symbol& symbol = function->locals.emplace_back();
  symbol.level = level;
  symbol.id = static_cast<uint32_t>(function->locals.size() - 1);
  read_symbol(record, &symbol);
  statement->symbol = &symbol;
}

// Labels may be used before they are defined, but each must be.
void an_if_reader::check_labels(const an_if_function& done) const {
  for (const an_if_statement& statement : done.statements) {
    if (statement.expr == nullptr)
      continue;
    for (const an_if_node* node = statement.expr; node != statement.expr + statement.expr->span;
         ++node) {
      if (node->opcode == ifop_LABEL &&
          done.labels.find(static_cast<uint32_t>(node->integer)) == done.labels.end())
        if_fail(node->offset, "label " + std::to_string(node->integer) + " is not defined");
    }
  }
}

// -- Initialisers --------------------------------------------------------------

// Each consists of its announcement, the values and the ENDINIT node.
void an_if_reader::read_initializers() {
  an_if_initializer* open = nullptr;
  for (const an_if_record& record : file.sections[ifs_initializers].records) {
    if (record.tag == iftag_init) {
      if (open != nullptr)
        if_fail(record.offset, "the initializer before has no end");
      a_field_cursor cursor(record);
      uint64_t symbol_offset = cursor.offset();
      const an_if_symbol* symbol = global(cursor.uint32(), symbol_offset);
      cursor.finish();
      if (symbol->location != record.offset)
        if_fail(symbol->offset, "the symbol's initializer is at " + std::to_string(record.offset) +
                                    ", not at " + std::to_string(symbol->location));
      open = &file.initializers.emplace_back();
      open->symbol = symbol;
      open->offset = record.offset;
      file.globals[symbol->id].initializer = open;
      continue;
    }
    if (record.tag != iftag_expr_node || open == nullptr)
      if_fail(record.offset, "not an initializer");
    if (open_nodes.empty())
      begin_tree(nullptr);
    size_t root = tree_start;
    read_node(record);
    if (!open_nodes.empty())
      continue;
    if (file.nodes[root].opcode == ifop_ENDINIT)
      open = nullptr;
    else
      open->values.push_back(&file.nodes[root]);
  }
  end_tree();
  if (open != nullptr)
    if_fail(open->offset, "the initializer has no end");
}

// -- Expression trees ----------------------------------------------------------

void an_if_reader::begin_tree(std::vector<an_if_statement>* list) {
  in_expression = true;
  tree_list = list;
  tree_start = file.nodes.size();
}

void an_if_reader::end_tree() {
  if (!open_nodes.empty())
    if_fail(file.nodes[open_nodes.back().index].offset, "the operator lacks operands");
}

void an_if_reader::read_node(const an_if_record& record) {
  if (!in_expression)
    if_fail(record.offset, "an expression node outside of expressions");
  if (open_nodes.empty() && file.nodes.size() != tree_start)
    if_fail(record.offset, "a second tree in an expression");
  a_field_cursor cursor(record);
  an_if_node node;
  node.offset = record.offset;
  node.opcode = cursor.i8();
  if (if_opcode_name(node.opcode) == nullptr)
    if_fail(record.offset, "unknown opcode " + std::to_string(node.opcode));
  const an_if_opcode_row& row = if_opcode_row(node.opcode);
  // The generator writes the count of a SKIP into the node, and no operand.
  node.operand_count = node.opcode == ifop_SKIP ? 0 : row.operand_count;
  node.type = optional_type(cursor);
  read_operand(cursor, &node, row.form);
  cursor.finish();
  file.nodes.push_back(node);
  if (file.nodes.size() == tree_start + 1 && tree_list != nullptr)
    tree_list->back().expr = &file.nodes.back();
  count_node(&file.nodes.back());
}

// Opens the node when it has operands; otherwise it completes its parent, and
// that perhaps its own.
void an_if_reader::count_node(an_if_node* node) {
  size_t index = static_cast<size_t>(node - file.nodes.data());
  if (node->operand_count != 0) {
    open_nodes.push_back({index, node->operand_count});
    return;
  }
  while (!open_nodes.empty() && --open_nodes.back().missing == 0) {
    size_t done = open_nodes.back().index;
    file.nodes[done].span = static_cast<uint32_t>(file.nodes.size() - done);
    open_nodes.pop_back();
  }
}

// The value of decimal text, as the bits of a signed or an unsigned number.
static uint64_t decimal_value(std::string_view text, uint64_t offset) {
  uint64_t value = 0;
  int64_t negative = 0;
  const char* end = text.data() + text.size();
  auto result = std::from_chars(text.data(), end, value);
  if (!text.empty() && text[0] == '-') {
    result = std::from_chars(text.data(), end, negative);
    value = static_cast<uint64_t>(negative);
  }
  if (text.empty() || result.ec != std::errc() || result.ptr != end)
    if_fail(offset, "not a decimal number of 64 bits");
  return value;
}

void an_if_reader::read_operand(a_field_cursor& cursor, an_if_node* node, an_if_form form) {
  uint64_t start = cursor.offset();
  switch (form) {
  case iff_none:
    break;
  case iff_name: {
    uint32_t symbol_level = cursor.uint32();
    node->symbol = named_symbol(symbol_level, cursor.uint32(), start);
    break;
  }
  case iff_scon:
    node->text = cursor.counted_string();
    break;
  case iff_icon:
    node->integer = node->type != nullptr && node->type->is_signed()
                        ? static_cast<uint64_t>(cursor.sint())
                        : cursor.uint();
    break;
  case iff_fcon:
  case iff_icall:
    node->text = cursor.string();
    break;
  case iff_lcon:
    node->text = cursor.string();
    node->integer = decimal_value(node->text, start);
    break;
  case iff_field:
    read_field_reference(cursor, node);
    break;
  case iff_call:
    node->integer = cursor.uint32();
    node->eh_entry = cursor.uint32();
    break;
  case iff_ucall:
    node->eh_entry = cursor.uint32();
    break;
  case iff_vreg:
    node->integer = static_cast<uint64_t>(cursor.sint());
    break;
  case iff_ddnode:
    node->integer = cursor.uint32();
    cursor.uint32();
    cursor.i8();
    break;
  case iff_label:
  case iff_switch:
  case iff_skip:
  case iff_pval:
    node->integer = cursor.uint32();
    break;
  }
}

void an_if_reader::read_field_reference(a_field_cursor& cursor, an_if_node* node) {
  uint64_t start = cursor.offset();
  if (cursor.i8() != 1)
    if_fail(start, "unknown kind of member");
  uint32_t number = cursor.uint32();
  node->member_csu = required_type(cursor);
  const an_if_type* csu = node->member_csu->stripped();
  if (number == 0 || number > csu->members.size())
    if_fail(start, if_type_text(csu) + " has no data member " + std::to_string(number));
  node->member = &csu->members[number - 1];
}
