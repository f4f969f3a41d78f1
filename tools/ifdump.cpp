// ifdump: prints an intermediate file as text, one record a line.

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "ifread.h"

namespace {

// -- Pieces of lines -----------------------------------------------------------

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (char c : text) {
    unsigned char byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (c == '\n') {
      result += "\\n";
    } else if (c == '\t') {
      result += "\\t";
    } else if (byte < 0x20 || byte >= 0x7F) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02X", byte);
      result += escape;
    } else {
      result += c;
    }
  }
  return result + '"';
}

std::string quoted_list(const std::vector<std::string_view>& strings) {
  std::string result;
  for (std::string_view text : strings)
    result += " " + quoted(text);
  return result;
}

std::string name_or_number(const char* name, unsigned number) {
  return name != nullptr ? name : std::to_string(number);
}

const char* access_name(unsigned access) {
  static const char* const names[] = {"public", "protected", "private"};
  return access < 3 ? names[access] : "unknown-access";
}

// Prints the contents of a file that was read.
class a_dumper {
public:
  a_dumper(const an_if_file& source, bool flat) : file(source), trees_are_flat(flat) {}
  void dump();

private:
  __attribute__((format(printf, 2, 3))) void line(const char* format, ...) const;
  std::string psn(const an_if_position& position) const;
  std::string pragma(const an_if_pragma& pragma) const;

  void dump_body();
  void dump_function(const an_if_function& function);
  void dump_statement(const an_if_statement& statement);
  void dump_other(const an_if_statement& statement) const;
  void dump_initializers();
  void dump_types() const;
  void dump_type(const an_if_type& type) const;
  void dump_lists(const an_if_type& type) const;
  std::string type_details(const an_if_type& type) const;
  void dump_symbol(const an_if_symbol& symbol) const;

  std::string symbol_name(const an_if_symbol& symbol) const;
  std::string node_text(const an_if_node& node) const;
  std::string flat_tree(const an_if_node* root) const;
  void dump_tree(const std::string& head, const an_if_node* root);
  void dump_nodes(const an_if_node* root, int outer_indent);

  const an_if_file& file;
  bool trees_are_flat;
  int indent = 0;
  // How many locals of the current function have a name.
  std::map<std::string_view, unsigned> locals_of_name;
};

void a_dumper::line(const char* format, ...) const {
  std::printf("%*s", indent * 2, "");
  va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);
  va_end(arguments);
  std::putchar('\n');
}

// "FILE:LINE:COLUMN", or "-" for no position.
std::string a_dumper::psn(const an_if_position& position) const {
  if (!position.known())
    return "-";
  return std::string(file.file_name(position)) + ":" + std::to_string(position.line) + ":" +
         std::to_string(position.column);
}

std::string a_dumper::pragma(const an_if_pragma& pragma) const {
  return "pragma " + name_or_number(if_pragma_name(pragma.kind), pragma.kind) +
         quoted_list(pragma.strings);
}

// -- Expressions ---------------------------------------------------------------

// Locals are marked by "%", and by their number where a name is used twice.
std::string a_dumper::symbol_name(const an_if_symbol& symbol) const {
  std::string name(symbol.name);
  if (symbol.level == 0)
    return name;
  auto entry = locals_of_name.find(symbol.name);
  if (entry != locals_of_name.end() && entry->second > 1)
    name += "#" + std::to_string(symbol.id);
  return "%" + name;
}

// A node without its operands and parentheses.
std::string a_dumper::node_text(const an_if_node& node) const {
  std::string text = std::string(if_opcode_name(node.opcode)) + ":" + if_type_text(node.type);
  auto number = [&] { return " " + std::to_string(node.integer); };
  auto eh_entry = [&] {
    return node.eh_entry != 0 ? " eh=" + std::to_string(node.eh_entry) : std::string();
  };
  switch (node.opcode) {
  case ifop_NAME:
    return text + " " + symbol_name(*node.symbol);
  case ifop_ICON:
    if (node.type != nullptr && node.type->is_signed())
      return text + " " + std::to_string(static_cast<int64_t>(node.integer));
    return text + number();
  case ifop_VREG:
    return text + " " + std::to_string(static_cast<int64_t>(node.integer));
  case ifop_LCON:
  case ifop_FCON:
    return text + " " + std::string(node.text);
  case ifop_SCON:
  case ifop_ICALL:
  case ifop_UICALL:
  case ifop_MCALL:
  case ifop_UMCALL:
    return text + " " + quoted(node.text);
  case ifop_FIELD:
    return text + " " + std::string(node.member_csu->stripped()->name) +
           "::" + std::string(node.member->name);
  case ifop_CALL:
    return text + (node.integer != 0 ? " vargs=" + std::to_string(node.integer) : "") + eh_entry();
  case ifop_UCALL:
    return text + eh_entry();
  case ifop_LABEL:
  case ifop_SWITCH:
  case ifop_SKIP:
  case ifop_DDNODE:
  case ifop_EPVAL:
    return text + number();
  default:
    return text;
  }
}

// A tree as nested parentheses. The nodes stand in prefix order, so it is
// enough to remember where the open operators end.
std::string a_dumper::flat_tree(const an_if_node* root) const {
  std::string text;
  std::vector<const an_if_node*> ends;
  for (const an_if_node* node = root; node != root + root->span; ++node) {
    while (!ends.empty() && ends.back() == node) {
      text += ")";
      ends.pop_back();
    }
    text += std::string(text.empty() ? "(" : " (") + node_text(*node);
    ends.push_back(node + node->span);
  }
  return text + std::string(ends.size(), ')');
}

// A tree as one node a line, each operand a step further in than its operator.
// Past the deepest indentation the depth is told by its number.
void a_dumper::dump_nodes(const an_if_node* root, int outer_indent) {
  constexpr size_t deepest = 60;
  int saved_indent = indent;
  std::vector<const an_if_node*> ends;
  for (const an_if_node* node = root; node != root + root->span; ++node) {
    while (!ends.empty() && ends.back() == node)
      ends.pop_back();
    size_t depth = ends.size();
    indent = outer_indent + static_cast<int>(std::min(depth, deepest));
    std::string number = depth > deepest ? "[" + std::to_string(depth) + "] " : "";
    line("%s%s", number.c_str(), node_text(*node).c_str());
    ends.push_back(node + node->span);
  }
  indent = saved_indent;
}

// A record that holds a tree, or none.
void a_dumper::dump_tree(const std::string& head, const an_if_node* root) {
  if (root == nullptr || trees_are_flat) {
    std::string text = root == nullptr ? "" : flat_tree(root);
    line("%s%s%s", head.c_str(), head.empty() || text.empty() ? "" : " ", text.c_str());
    return;
  }
  if (!head.empty())
    line("%s", head.c_str());
  dump_nodes(root, indent + (head.empty() ? 0 : 1));
}

// -- Symbols -------------------------------------------------------------------

void a_dumper::dump_symbol(const an_if_symbol& symbol) const {
  std::string text =
      "symbol " + symbol_name(symbol) + " class " +
      name_or_number(if_symbol_class_name(symbol.storage_class), symbol.storage_class) + " type " +
      if_type_text(symbol.type);
  if (symbol.source_type != nullptr)
    text += " source " + if_type_text(symbol.source_type);
  text += " size " + std::to_string(symbol.size) + " align " + std::to_string(symbol.align) +
          " value " + std::to_string(symbol.value);
  char bits[16];
  std::snprintf(bits, sizeof bits, "0x%04x", symbol.qualifier_bits);
  line("%s qualifiers %s level %u id %u options %u state %u at %s", text.c_str(), bits,
       symbol.level, symbol.id, symbol.option_set, symbol.definition_state,
       psn(symbol.position).c_str());
  for (const an_if_pragma& owned : symbol.pragmas)
    line("  %s", pragma(owned).c_str());
}

// -- The body ------------------------------------------------------------------

std::string field_text(const an_if_field& field) {
  switch (field.letter) {
  case 'z':
  case 'c':
    return quoted(field.text);
  case 's':
  case 'h':
    return std::to_string(static_cast<int64_t>(field.number));
  case 'p':
    return std::to_string(field.position.file) + ":" + std::to_string(field.position.line) + ":" +
           std::to_string(field.position.column);
  default:
    return std::to_string(field.number);
  }
}

void a_dumper::dump_other(const an_if_statement& statement) const {
  std::string text = name_or_number(if_tag_name(statement.tag), statement.tag);
  for (const an_if_field& field : statement.fields)
    text += " " + field_text(field);
  line("%s", text.c_str());
}

void a_dumper::dump_statement(const an_if_statement& statement) {
  const char* name = if_tag_name(statement.tag);
  switch (statement.tag) {
  case iftag_begin_func:
    dump_function(*statement.function);
    break;
  case iftag_begin_block:
    line("%s at %s", name, psn(statement.position).c_str());
    ++indent;
    break;
  case iftag_end_block:
    --indent;
    line("%s at %s", name, psn(statement.position).c_str());
    break;
  case iftag_end_args:
  case iftag_end_locals:
    line("%s at %s", name, psn(statement.position).c_str());
    break;
  case iftag_expr:
    dump_tree(std::string(name) + " at " + psn(statement.position), statement.expr);
    break;
  case iftag_label:
    line("%s %u", name, statement.label);
    break;
  case iftag_symbol:
    dump_symbol(*statement.symbol);
    break;
  case iftag_pragma:
    line("%s", pragma(statement.pragma).c_str());
    break;
  case iftag_assembly:
    line("%s %s at %s", name, quoted(statement.text).c_str(), psn(statement.position).c_str());
    break;
  case iftag_comment:
  case iftag_file_name:
    line("%s %s", name, quoted(statement.text).c_str());
    break;
  default:
    dump_other(statement);
    break;
  }
}

void a_dumper::dump_function(const an_if_function& function) {
  for (const an_if_symbol& local : function.locals)
    ++locals_of_name[local.name];
  line("begin_func %s at %s", std::string(function.symbol->name).c_str(),
       psn(function.begin).c_str());
  ++indent;
  for (const an_if_statement& statement : function.statements)
    dump_statement(statement);
  --indent;
  line("end_func at %s", psn(function.end).c_str());
  locals_of_name.clear();
}

void a_dumper::dump_body() {
  for (const an_if_statement& statement : file.body)
    dump_statement(statement);
}

void a_dumper::dump_initializers() {
  for (const an_if_initializer& initializer : file.initializers) {
    line("init %s", std::string(initializer.symbol->name).c_str());
    ++indent;
    for (const an_if_node* value : initializer.values)
      dump_tree("", value);
    --indent;
  }
}

// -- Types ---------------------------------------------------------------------

std::string flag_text(bool flag, const char* name) {
  return flag ? std::string(" ") + name : std::string();
}

// What only the type's kind has.
std::string a_dumper::type_details(const an_if_type& type) const {
  switch (type.kind) {
  case iftk_integral:
    return flag_text(type.explicit_sign, "explicit_sign") + flag_text(type.is_bool, "is_bool") +
           flag_text(type.boolean_int, "boolean_int");
  case iftk_fixed_point:
    return " kind " + std::to_string(type.fixed_point_kind) +
           flag_text(type.fixed_point_flag, "signed");
  case iftk_typedef:
    return " of " + if_type_text(type.target) + flag_text(type.is_lowered, "lowered");
  case iftk_array:
    return flag_text(type.is_complete, "complete") + flag_text(type.is_vector, "vector");
  case iftk_function:
    return flag_text(type.prototyped, "prototyped") + " convention " + std::to_string(type.cc_kind);
  case iftk_enum:
    return " of " + if_type_text(type.target);
  case iftk_class:
  case iftk_struct:
  case iftk_union:
    return flag_text(type.is_complete, "complete") + flag_text(type.is_lowered, "lowered") +
           flag_text(type.is_vector, "vector") +
           (type.csu_integer != 0 ? " integer " + std::to_string(type.csu_integer) : "");
  default:
    return "";
  }
}

void a_dumper::dump_type(const an_if_type& type) const {
  std::string text = "type " + std::to_string(type.id) + " " + if_type_code_name(type.code) + " " +
                     if_type_text(&type) + " size " + std::to_string(type.size) + " align " +
                     std::to_string(type.align) + type_details(type) +
                     flag_text(type.is_cpp, "c++");
  if (!type.name.empty())
    text += " at " + psn(type.position);
  line("%s", text.c_str());
  dump_lists(type);
}

void a_dumper::dump_lists(const an_if_type& type) const {
  static const char* const param_kinds[] = {"param", "type_argument", "value_argument",
                                            "template_argument"};
  auto name = [](std::string_view text) { return std::string(text); };
  for (const an_if_base_class& base : type.base_classes)
    line("  bclass %s offset %lld %s%s", if_type_text(base.type).c_str(),
         static_cast<long long>(base.offset), access_name(base.access),
         base.is_virtual ? " virtual" : "");
  for (const an_if_access_declaration& declaration : type.access_declarations)
    line("  adecl %u %u", declaration.number, declaration.kind);
  for (const an_if_friend_function& function : type.friend_functions)
    line("  ffriend %s %s", name(function.name).c_str(), if_type_text(function.type).c_str());
  for (const an_if_type* friend_class : type.friend_classes)
    line("  cfriend %s", if_type_text(friend_class).c_str());
  for (const an_if_type* nested : type.nested_types)
    line("  ntype %s", if_type_text(nested).c_str());
  for (const an_if_member& member : type.members) {
    std::string width =
        member.is_bitfield ? " width " + std::to_string(member.bit_width) : std::string();
    line("  mdata %u %s %s offset %lld%s %s flags %u %d %d at %s", member.number,
         name(member.name).c_str(), if_type_text(member.type).c_str(),
         static_cast<long long>(member.bit_offset), width.c_str(), access_name(member.access),
         member.extra, member.flags[0], member.flags[1], psn(member.position).c_str());
  }
  for (const an_if_static_member& member : type.static_members)
    line("  sdata %s %s %s", name(member.name).c_str(), if_type_text(member.type).c_str(),
         access_name(member.access));
  for (const an_if_member_function& function : type.member_functions)
    line("  mfunc %s %s %s index %lld flags %d %d %d %d", name(function.name).c_str(),
         if_type_text(function.type).c_str(), access_name(function.access),
         static_cast<long long>(function.virtual_index), function.flags[0], function.flags[1],
         function.flags[2], function.flags[3]);
  for (const an_if_param& param : type.params)
    line("  %s %s%s%s", param.kind < 4 ? param_kinds[param.kind] : "argument",
         if_type_text(param.type).c_str(), param.text.empty() ? "" : " ",
         param.text.empty() ? "" : quoted(param.text).c_str());
  for (const an_if_enumerator& enumerator : type.enumerators)
    line("  etor %s %lld at %s", name(enumerator.name).c_str(),
         static_cast<long long>(enumerator.value), psn(enumerator.position).c_str());
}

void a_dumper::dump_types() const {
  for (const an_if_type& type : file.types)
    dump_type(type);
}

void a_dumper::dump() {
  line("file %s version %d processor %d flags 0x%x", quoted(file.unit_name).c_str(), file.version,
       file.processor, file.flags);
  for (unsigned number = 0; number < ifs_count; number++) {
    if (file.sections[number].offset == 0)
      continue;
    line("section %s", file.sections[number].name);
    switch (number) {
    case ifs_body:
      dump_body();
      break;
    case ifs_initializers:
      dump_initializers();
      break;
    case ifs_options:
      for (const an_if_option_set& set : file.option_sets)
        line("option_set %u%s", set.id, quoted_list(set.strings).c_str());
      break;
    case ifs_types:
      dump_types();
      break;
    case ifs_files:
      for (size_t id = 1; id < file.file_names.size(); id++)
        line("file_name %zu %s", id, quoted(file.file_names[id]).c_str());
      break;
    default:
      for (const an_if_symbol& symbol : file.globals)
        dump_symbol(symbol);
      break;
    }
  }
}

// -- Records as they stand -----------------------------------------------------

// The code behind the first fields of a record that has one.
std::string code_text(const an_if_record& record, const std::vector<an_if_field>& fields) {
  if (record.tag == iftag_type && fields.size() > 1)
    return std::string(" ") + if_type_code_name(static_cast<unsigned>(fields[1].number));
  if (record.tag == iftag_expr_node && !fields.empty())
    return std::string(" ") + if_opcode_name(static_cast<unsigned>(fields[0].number));
  return "";
}

void complain(const char* path, const an_if_error& error) {
  std::fprintf(stderr, "ifdump: %s: offset %llu: %s\n", path,
               static_cast<unsigned long long>(error.offset), error.message.c_str());
}

// True when all records could be read.
bool dump_raw(const an_if_file& file, const char* path) {
  bool good = true;
  for (const an_if_section& section : file.sections) {
    if (section.offset == 0)
      continue;
    std::printf("section %s at %llu\n", section.name,
                static_cast<unsigned long long>(section.offset));
    for (const an_if_record& record : section.records) {
      std::vector<an_if_field> fields;
      an_if_error error;
      bool readable = if_decode_record(record, &fields, &error);
      std::printf("%8llu %-12s%5zu", static_cast<unsigned long long>(record.offset),
                  name_or_number(if_tag_name(record.tag), record.tag).c_str(), record.body.size());
      if (readable)
        std::printf("%s", code_text(record, fields).c_str());
      for (const an_if_field& field : fields)
        std::printf(" %s", field_text(field).c_str());
      std::putchar('\n');
      if (!readable) {
        std::fflush(stdout);
        complain(path, error);
        good = false;
      }
    }
  }
  return good;
}

int usage() {
  std::fputs("usage: ifdump [--flat] [--raw] FILE\n", stderr);
  return 2;
}

} // namespace

int main(int argc, char** argv) {
  bool raw = false, flat = false;
  int word = 1;
  for (; word < argc && argv[word][0] == '-'; word++) {
    bool is_raw = std::strcmp(argv[word], "--raw") == 0;
    if (!is_raw && std::strcmp(argv[word], "--flat") != 0)
      return usage();
    (is_raw ? raw : flat) = true;
  }
  if (word != argc - 1)
    return usage();
  const char* path = argv[word];
  an_if_file file;
  an_if_error error;
  std::string bytes;
  if (!if_load_bytes(path, &bytes, &error)) {
    std::fprintf(stderr, "ifdump: %s: %s\n", path, error.message.c_str());
    return 1;
  }
  bool good = raw ? if_read_records(std::move(bytes), &file, &error)
                  : if_read_bytes(std::move(bytes), &file, &error);
  if (!good) {
    complain(path, error);
    return 1;
  }
  if (raw)
    return dump_raw(file, path) ? 0 : 1;
  a_dumper(file, flat).dump();
  return 0;
}
