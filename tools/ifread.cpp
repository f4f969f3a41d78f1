#include "ifread.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "ifread_int.h"

// -- Fields --------------------------------------------------------------------

std::string_view a_field_cursor::take(size_t count) {
  if (body.size() - position < count)
    if_fail(offset(), "the record ends within a field");
  std::string_view taken = body.substr(position, count);
  position += count;
  return taken;
}

uint8_t a_field_cursor::i8() {
  return static_cast<uint8_t>(take(1)[0]);
}

bool a_field_cursor::flag() {
  uint64_t start = offset();
  uint8_t value = i8();
  if (value > 1)
    if_fail(start, "a truth value is neither 0 nor 1");
  return value != 0;
}

uint16_t a_field_cursor::i16() {
  std::string_view bytes = take(2);
  return static_cast<uint16_t>(static_cast<uint8_t>(bytes[0]) | static_cast<uint8_t>(bytes[1])
                                                                    << 8);
}

uint32_t a_field_cursor::i32() {
  uint32_t low = i16();
  return low | uint32_t{i16()} << 16;
}

uint64_t a_field_cursor::uint() {
  uint64_t start = offset();
  uint64_t value = 0;
  for (unsigned shift = 0;; shift += 7) {
    uint8_t byte = i8();
    if (shift == 63 && byte > 1)
      if_fail(start, "a number exceeds 64 bits");
    value |= uint64_t{byte & 0x7Fu} << shift;
    if (byte < 0x80)
      return value;
  }
}

uint32_t a_field_cursor::uint32() {
  uint64_t start = offset();
  uint64_t value = uint();
  if (value > UINT32_MAX)
    if_fail(start, "a number exceeds 32 bits");
  return static_cast<uint32_t>(value);
}

int64_t a_field_cursor::sint() {
  uint64_t start = offset();
  uint64_t value = 0;
  for (unsigned shift = 0;;) {
    uint8_t byte = i8();
    if (shift == 63 && byte != 0 && byte != 0x7F)
      if_fail(start, "a number exceeds 64 bits");
    value |= uint64_t{byte & 0x7Fu} << shift;
    shift += 7;
    if (byte < 0x80) {
      if ((byte & 0x40) != 0 && shift < 64)
        value |= ~uint64_t{0} << shift;
      return static_cast<int64_t>(value);
    }
  }
}

std::string_view a_field_cursor::string() {
  size_t end = body.find('\0', position);
  if (end == std::string_view::npos)
    if_fail(offset(), "a text has no end");
  std::string_view text = take(end - position);
  ++position;
  return text;
}

std::string_view a_field_cursor::counted_string() {
  uint64_t length = uint();
  if (length > body.size())
    if_fail(offset(), "a text is longer than its record");
  return length == 0 ? string() : take(static_cast<size_t>(length));
}

an_if_position a_field_cursor::psn() {
  an_if_position psn;
  psn.file = uint32();
  if (psn.file != 0) {
    psn.line = uint32();
    psn.column = uint32();
  }
  return psn;
}

void a_field_cursor::strings(std::vector<std::string_view>* list) {
  for (uint64_t count = uint(); count != 0; --count)
    list->push_back(string());
}

void a_field_cursor::finish() const {
  if (!at_end())
    if_fail(offset(), "the record goes on behind its last field");
}

// -- Shapes --------------------------------------------------------------------

// A row of a table as the case of a switch.
#define IF_NAME_ROW(number, text)                                                                  \
  case number:                                                                                     \
    return text;

const char* if_tag_name(unsigned tag) {
  switch (tag) {
#define IF_TAG(number, name, shape) IF_NAME_ROW(number, #name)
#include "if_tags.def"
  default:
    return nullptr;
  }
}

const char* if_tag_shape(unsigned tag) {
  switch (tag) {
#define IF_TAG(number, name, shape) IF_NAME_ROW(number, shape)
#include "if_tags.def"
  default:
    return nullptr;
  }
}

const char* if_type_code_name(unsigned code) {
  switch (code) {
#define IF_TYPE_CODE(number, name, shape) IF_NAME_ROW(number, #name)
#include "if_tags.def"
  default:
    return nullptr;
  }
}

const char* if_type_code_shape(unsigned code) {
  switch (code) {
#define IF_TYPE_CODE(number, name, shape) IF_NAME_ROW(number, shape)
#include "if_tags.def"
  default:
    return nullptr;
  }
}

const char* if_symbol_class_name(unsigned storage_class) {
  switch (storage_class) {
#define IF_SYMBOL_CLASS(number, name) IF_NAME_ROW(number, #name)
#include "if_tags.def"
  default:
    return nullptr;
  }
}

const char* if_pragma_name(unsigned kind) {
  switch (kind) {
#define IF_PRAGMA(number, name, text) IF_NAME_ROW(number, #name)
#include "if_tags.def"
  default:
    return nullptr;
  }
}

const an_if_opcode_row& if_opcode_row(unsigned opcode) {
  static const auto table = [] {
    std::vector<an_if_opcode_row> rows(256, {nullptr, 0, iff_none});
#define IF_NODE(number, name, operands, form) rows[number] = {#name, operands, iff_##form};
#include "if_tags.def"
    return rows;
  }();
  return table[opcode & 0xFF];
}

const char* if_opcode_name(unsigned opcode) {
  return opcode < if_opcode_limit ? if_opcode_row(opcode).name : nullptr;
}

const char* if_opcode_shape(unsigned opcode) {
  static const char* const shapes[] = {
#define IF_FORM(name, shape) shape,
#include "if_tags.def"
  };
  return if_opcode_name(opcode) != nullptr ? shapes[if_opcode_row(opcode).form] : nullptr;
}

static an_if_field decode_field(a_field_cursor& cursor, char letter) {
  an_if_field field{letter, 0, {}, {}};
  switch (letter) {
  case 'b':
    field.number = cursor.i8();
    break;
  case 'f':
    field.number = cursor.flag();
    break;
  case 'h':
    field.number = static_cast<uint64_t>(static_cast<int16_t>(cursor.i16()));
    break;
  case 'w':
    field.number = cursor.i32();
    break;
  case 's':
    field.number = static_cast<uint64_t>(cursor.sint());
    break;
  case 'z':
    field.text = cursor.string();
    break;
  case 'c':
    field.text = cursor.counted_string();
    break;
  case 'p':
    field.position = cursor.psn();
    break;
  default: // u, t, v
    field.number = cursor.uint();
    break;
  }
  return field;
}

void if_decode_shape(a_field_cursor& cursor, const char* shape, std::vector<an_if_field>* fields) {
  for (; *shape != '\0'; ++shape) {
    if (*shape == 'n') {
      for (uint64_t count = cursor.uint(); count != 0; --count)
        fields->push_back(decode_field(cursor, 'z'));
    } else if (*shape == 'r') {
      std::string repeated(shape + 2, std::strchr(shape, ')'));
      while (!cursor.at_end())
        if_decode_shape(cursor, repeated.c_str(), fields);
      return;
    } else {
      fields->push_back(decode_field(cursor, *shape));
    }
  }
}

// The fields behind the sub-kind of a loop dependence record.
static const char* ldspec_shape(uint64_t sub_kind) {
  static const char* const shapes[] = {"ustsu", "uutsu", "u"};
  return sub_kind < 3 ? shapes[sub_kind] : nullptr;
}

// Fields that follow from the ones read so far: those behind a type code, an
// opcode or a sub-kind.
static const char* shape_of_rest(uint8_t tag, const std::vector<an_if_field>& fields) {
  switch (tag) {
  case iftag_type:
    return if_type_code_shape(static_cast<unsigned>(fields[1].number));
  case iftag_expr_node:
    return if_opcode_shape(static_cast<unsigned>(fields[0].number));
  case iftag_ldspec:
    return ldspec_shape(fields[1].number);
  default:
    return "";
  }
}

void if_decode_whole_record(const an_if_record& record, std::vector<an_if_field>* fields) {
  const char* shape = if_tag_shape(record.tag);
  if (shape == nullptr)
    return; // a record of a later revision
  a_field_cursor cursor(record);
  if_decode_shape(cursor, shape, fields);
  const char* rest = shape_of_rest(record.tag, *fields);
  if (rest == nullptr)
    if_fail(record.offset, "the record has an unknown code");
  if_decode_shape(cursor, rest, fields);
  cursor.finish();
}

bool if_decode_record(const an_if_record& record, std::vector<an_if_field>* fields,
                      an_if_error* error) {
  fields->clear();
  try {
    if_decode_whole_record(record, fields);
    return true;
  } catch (an_if_error& failure) {
    *error = std::move(failure);
    return false;
  }
}

// -- Sections ------------------------------------------------------------------

namespace {

// Splits a file into records.
class a_record_splitter {
public:
  explicit a_record_splitter(an_if_file* target) : file(*target) {}
  void split();

private:
  an_if_record next_record();
  void read_header();
  // Takes the records up to the section's end. `stated` is the header's offset
  // of the section, at `header_field`.
  void section(an_if_section_number number, uint64_t stated, uint64_t header_field);

  an_if_file& file;
  uint64_t position = 0;
  uint64_t stated_offset[ifs_count] = {};
  uint64_t header_field[ifs_count] = {};
};

an_if_record a_record_splitter::next_record() {
  std::string_view rest = std::string_view(file.bytes).substr(position);
  if (rest.empty())
    if_fail(position, "the file ends within a section");
  an_if_record record{static_cast<uint8_t>(rest[0]), position, position + 1, {}};
  // The length is a field of a body that reaches to the end of the file.
  a_field_cursor cursor({record.tag, position, position + 1, rest.substr(1)});
  uint64_t length = cursor.uint();
  record.body_offset = cursor.offset();
  if (length > file.bytes.size() - record.body_offset)
    if_fail(position, "the file ends within a record");
  record.body = std::string_view(file.bytes).substr(record.body_offset, length);
  position = record.body_offset + length;
  return record;
}

void a_record_splitter::read_header() {
  if (file.bytes.empty() || static_cast<uint8_t>(file.bytes[0]) != iftag_magic)
    if_fail(0, "not an intermediate file");
  an_if_record record = next_record();
  a_field_cursor cursor(record);
  if (cursor.string() != if_magic)
    if_fail(record.body_offset, "not an intermediate file");
  uint64_t version_field = cursor.offset();
  file.version = static_cast<int16_t>(cursor.i16());
  if (file.version != if_version)
    if_fail(version_field, "the file has version " + std::to_string(file.version) + ", not " +
                               std::to_string(if_version));
  file.processor = cursor.i16();
  for (auto number : {ifs_options, ifs_initializers, ifs_types, ifs_files, ifs_globals}) {
    header_field[number] = cursor.offset();
    stated_offset[number] = cursor.i32();
  }
  file.unit_name = cursor.string();
  file.flags = cursor.i32();
  cursor.finish();
}

void a_record_splitter::section(an_if_section_number number, uint64_t stated,
                                uint64_t field_offset) {
  an_if_section& section = file.sections[number];
  if (stated != position)
    if_fail(field_offset, std::string("section ") + section.name + " begins at " +
                              std::to_string(position) + ", not at " + std::to_string(stated));
  section.offset = position;
  while (position < file.bytes.size() && static_cast<uint8_t>(file.bytes[position]) != iftag_eof)
    section.records.push_back(next_record());
  if (position == file.bytes.size())
    if_fail(position, std::string("section ") + section.name + " has no end");
  ++position;
}

void a_record_splitter::split() {
  static const char* const names[ifs_count] = {"body",  "initializers", "options",
                                               "types", "files",        "globals"};
  for (unsigned number = 0; number < ifs_count; number++)
    file.sections[number] = {names[number], 0, {}};
  read_header();
  section(ifs_body, position, position);
  for (auto number : {ifs_initializers, ifs_options, ifs_types, ifs_files, ifs_globals}) {
    if (stated_offset[number] != 0 || number == ifs_globals)
      section(number, stated_offset[number], header_field[number]);
  }
  if (position != file.bytes.size())
    if_fail(position, "the file goes on behind its last section");
}

void read_files(an_if_file& file) {
  file.file_names.emplace_back();
  for (const an_if_record& record : file.sections[ifs_files].records) {
    if (record.tag != iftag_file_name)
      if_fail(record.offset, "not a file name");
    a_field_cursor cursor(record);
    file.file_names.push_back(cursor.string());
    cursor.finish();
  }
}

void read_options(an_if_file& file) {
  for (const an_if_record& record : file.sections[ifs_options].records) {
    if (record.tag != iftag_option_set)
      if_fail(record.offset, "not an option set");
    a_field_cursor cursor(record);
    an_if_option_set set{cursor.uint32(), {}};
    cursor.strings(&set.strings);
    cursor.finish();
    file.option_sets.push_back(std::move(set));
  }
}

} // namespace

bool if_read_records(std::string bytes, an_if_file* file, an_if_error* error) {
  file->bytes = std::move(bytes);
  try {
    a_record_splitter(file).split();
    return true;
  } catch (an_if_error& failure) {
    *error = std::move(failure);
    return false;
  }
}

bool if_read_bytes(std::string bytes, an_if_file* file, an_if_error* error) {
  if (!if_read_records(std::move(bytes), file, error))
    return false;
  try {
    an_if_reader reader(file);
    read_files(*file);
    read_options(*file);
    reader.read_types();
    reader.read_globals();
    reader.read_body();
    reader.read_initializers();
    return true;
  } catch (an_if_error& failure) {
    *error = std::move(failure);
    return false;
  }
}

bool if_load_bytes(const char* path, std::string* bytes, an_if_error* error) {
  std::unique_ptr<FILE, int (*)(FILE*)> stream(std::fopen(path, "rb"), std::fclose);
  if (stream != nullptr) {
    char buffer[32768];
    while (size_t count = std::fread(buffer, 1, sizeof buffer, stream.get()))
      bytes->append(buffer, count);
    if (!std::ferror(stream.get()))
      return true;
  }
  *error = {bytes->size(), std::strerror(errno)};
  return false;
}

bool if_read_file(const char* path, an_if_file* file, an_if_error* error) {
  std::string bytes;
  return if_load_bytes(path, &bytes, error) && if_read_bytes(std::move(bytes), file, error);
}

// -- Look-up -------------------------------------------------------------------

const an_if_type* an_if_file::find_type(uint32_t id) const {
  auto entry = type_by_id.find(id);
  return entry != type_by_id.end() ? entry->second : nullptr;
}

const an_if_symbol* an_if_file::find_global(std::string_view name) const {
  for (const an_if_symbol& symbol : globals) {
    if (symbol.name == name)
      return &symbol;
  }
  return nullptr;
}

std::string_view an_if_file::file_name(const an_if_position& position) const {
  return file_names[position.file];
}
