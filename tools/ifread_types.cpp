#include "ifread_int.h"

const an_if_type* an_if_type::stripped() const {
  const an_if_type* type = this;
  while (type->kind == iftk_typedef || type->kind == iftk_qualified)
    type = type->target;
  return type;
}

bool an_if_type::is_signed() const {
  const an_if_type* type = stripped();
  while (type->kind == iftk_enum || type->kind == iftk_array)
    type = type->target->stripped();
  switch (type->code) {
  case iftc_schar:
  case iftc_short:
  case iftc_int:
  case iftc_long:
  case iftc_long_long:
    return true;
  default:
    return type->kind == iftk_floating;
  }
}

// -- References ----------------------------------------------------------------

const an_if_type* an_if_reader::type_of(uint32_t id, uint64_t offset) const {
  if (id == 0)
    return nullptr;
  const an_if_type* type = file.find_type(id);
  if (type == nullptr)
    if_fail(offset, "type " + std::to_string(id) + " is not defined before its use");
  return type;
}

const an_if_type* an_if_reader::optional_type(a_field_cursor& cursor) const {
  uint64_t offset = cursor.offset();
  return type_of(cursor.uint32(), offset);
}

const an_if_type* an_if_reader::required_type(a_field_cursor& cursor) const {
  uint64_t offset = cursor.offset();
  const an_if_type* type = optional_type(cursor);
  if (type == nullptr)
    if_fail(offset, "a type is missing");
  return type;
}

an_if_position an_if_reader::psn(a_field_cursor& cursor) const {
  uint64_t offset = cursor.offset();
  an_if_position position = cursor.psn();
  if (position.file >= file.file_names.size())
    if_fail(offset, "file " + std::to_string(position.file) + " has no name");
  return position;
}

// -- Records that define a type ------------------------------------------------

void an_if_reader::read_types() {
  for (const an_if_record& record : file.sections[ifs_types].records)
    read_type_record(record);
  end_of_types();
}

void an_if_reader::read_type_record(const an_if_record& record) {
  if (record.tag != iftag_type)
    if_fail(record.offset, "not a type");
  a_field_cursor cursor(record);
  uint32_t id = cursor.uint32();
  uint64_t code_offset = cursor.offset();
  uint8_t code = cursor.i8();
  if (if_type_code_shape(code) == nullptr)
    if_fail(code_offset, "unknown type code " + std::to_string(code));
  auto entry = file.type_by_id.find(id);
  an_if_type* owner = entry != file.type_by_id.end() ? entry->second : nullptr;
  if (code == iftc_list_header || code == iftc_list_trailer) {
    if (owner == nullptr)
      if_fail(record.body_offset, "a list of an undefined type");
    read_list_frame(cursor, owner, code);
  } else if (list_owner != nullptr) {
    if (owner != list_owner)
      if_fail(record.body_offset, "not an element of the list that is open");
    read_list_element(cursor, owner, code);
  } else {
    if (id == 0)
      if_fail(record.body_offset, "a type without a number");
    if (owner != nullptr)
      if_fail(record.body_offset, "type " + std::to_string(id) + " is defined twice");
    define_type(record, cursor, id, code);
  }
  cursor.finish();
}

static an_if_type_kind kind_of_code(uint8_t code) {
  switch (code) {
  case iftc_float:
  case iftc_double:
  case iftc_long_double:
    return iftk_floating;
  case iftc_fixed_point:
    return iftk_fixed_point;
  case iftc_typedef:
    return iftk_typedef;
  case iftc_pointer:
    return iftk_pointer;
  case iftc_reference:
    return iftk_reference;
  case iftc_qualified:
    return iftk_qualified;
  case iftc_array:
    return iftk_array;
  case iftc_ptr_to_member:
    return iftk_ptr_to_member;
  case iftc_function:
    return iftk_function;
  case iftc_enum:
    return iftk_enum;
  case iftc_csu:
  case iftc_csu_lists:
    return iftk_struct; // the record tells which of the three
  case iftc_complex:
    return iftk_complex;
  case iftc_void:
    return iftk_void;
  default:
    return iftk_integral;
  }
}

static bool is_element_code(uint8_t code) {
  switch (code) {
#define IF_LIST(id, name, element_code) case element_code:
#include "if_tags.def"
    return true;
  default:
    return false;
  }
}

void an_if_reader::define_type(const an_if_record& record, a_field_cursor& cursor, uint32_t id,
                               uint8_t code) {
  if (is_element_code(code))
    if_fail(record.body_offset, "an element of a list stands outside of the list");
  an_if_type type;
  type.id = id;
  type.code = code;
  type.kind = kind_of_code(code);
  type.offset = record.offset;
  auto size_and_align = [&] {
    type.size = cursor.uint();
    type.align = cursor.uint32();
  };
  switch (type.kind) {
  case iftk_void:
    break;
  case iftk_integral:
    type.explicit_sign = cursor.flag();
    size_and_align();
    type.is_bool = cursor.flag();
    type.boolean_int = cursor.flag();
    break;
  case iftk_floating:
    size_and_align();
    break;
  case iftk_fixed_point:
    type.fixed_point_kind = cursor.i8();
    type.fixed_point_flag = cursor.flag();
    type.target = required_type(cursor);
    size_and_align();
    break;
  case iftk_complex:
    size_and_align();
    type.target = required_type(cursor);
    break;
  case iftk_pointer:
  case iftk_reference:
    type.target = required_type(cursor);
    size_and_align();
    break;
  case iftk_qualified: {
    type.target = required_type(cursor);
    uint64_t offset = cursor.offset();
    uint32_t bits = cursor.uint32();
    if (bits > 0xFF)
      if_fail(offset, "unknown qualifiers");
    type.qualifiers = static_cast<uint8_t>(bits);
    size_and_align();
    break;
  }
  case iftk_typedef:
    type.name = cursor.string();
    type.target = required_type(cursor);
    size_and_align();
    type.is_cpp = cursor.flag();
    type.is_lowered = cursor.flag();
    type.position = psn(cursor);
    break;
  case iftk_array:
    type.target = required_type(cursor);
    type.count = cursor.uint32();
    size_and_align();
    type.is_cpp = cursor.flag();
    type.is_complete = cursor.flag();
    type.is_vector = cursor.flag();
    break;
  case iftk_ptr_to_member:
    type.target = required_type(cursor);
    type.member_class = required_type(cursor);
    size_and_align();
    break;
  case iftk_function:
    type.target = required_type(cursor);
    type.has_ellipsis = cursor.flag();
    type.prototyped = cursor.flag();
    type.cc_kind = cursor.i8();
    type.is_cpp = cursor.flag();
    expected_lists[id] = 1u << ifl_params;
    break;
  case iftk_enum:
    type.name = cursor.string();
    size_and_align();
    type.target = required_type(cursor);
    type.is_cpp = cursor.flag();
    type.position = psn(cursor);
    expected_lists[id] = 1u << ifl_etors;
    break;
  default:
    read_csu(cursor, &type, code == iftc_csu_lists);
    break;
  }
  file.types.push_back(std::move(type));
  file.type_by_id[id] = &file.types.back();
}

void an_if_reader::read_csu(a_field_cursor& cursor, an_if_type* type, bool with_lists) {
  static constexpr an_if_type_kind kinds[] = {iftk_struct, iftk_union, iftk_class};
  static constexpr uint8_t lists[] = {ifl_bclasses, ifl_adecls, ifl_ffriends,
                                      ifl_cfriends, ifl_ntypes, ifl_mdata,
                                      ifl_sdata,    ifl_mfuncs, ifl_params};
  uint64_t start = cursor.offset();
  uint8_t which = cursor.i8();
  if (which > 2)
    if_fail(start, "neither struct, union nor class");
  type->kind = kinds[which];
  type->name = cursor.string();
  type->is_complete = cursor.flag();
  type->is_lowered = cursor.flag();
  type->size = cursor.uint();
  type->align = cursor.uint32();
  uint32_t& expected = expected_lists[type->id];
  if (with_lists) {
    type->csu_integer = cursor.uint32();
    for (uint8_t list : lists)
      expected |= uint32_t{cursor.flag()} << list;
  } else {
    expected |= uint32_t{cursor.flag()} << ifl_mdata;
  }
  type->is_vector = cursor.flag();
  type->is_cpp = cursor.flag();
  type->position = psn(cursor);
}

// -- Lists ---------------------------------------------------------------------

void an_if_reader::read_list_frame(a_field_cursor& cursor, an_if_type* type, uint8_t code) {
  uint64_t start = cursor.offset();
  uint8_t id = cursor.i8();
  if (code == iftc_list_trailer) {
    if (list_owner != type || list_id != id)
      if_fail(start, "the end of a list that isn't open");
    list_owner = nullptr;
    return;
  }
  if (list_owner != nullptr)
    if_fail(start, "a list within a list");
  uint32_t& expected = expected_lists[type->id];
  if (id > ifl_mfuncs || (expected >> id & 1) == 0)
    if_fail(start, "type " + std::to_string(type->id) + " can't have list " + std::to_string(id) +
                       " here");
  expected &= ~(1u << id);
  list_owner = type;
  list_id = id;
}

static uint8_t element_code_of_list(uint8_t id) {
  switch (id) {
#define IF_LIST(number, name, element_code)                                                        \
  case number:                                                                                     \
    return element_code;
#include "if_tags.def"
  default:
    return 0;
  }
}

// The fields are read in braced lists, which are evaluated in order.
void an_if_reader::read_list_element(a_field_cursor& cursor, an_if_type* type, uint8_t code) {
  if (code != element_code_of_list(list_id))
    if_fail(cursor.offset(), "not an element of the list that is open");
  switch (code) {
  case iftc_param: {
    const an_if_type* param = required_type(cursor);
    cursor.flag();
    type->params.push_back({param, cursor.uint32(), cursor.string()});
    break;
  }
  case iftc_enumerator: {
    an_if_enumerator enumerator{cursor.string(), 0, {}};
    enumerator.value = type->is_signed() ? cursor.sint() : static_cast<int64_t>(cursor.uint());
    enumerator.position = psn(cursor);
    type->enumerators.push_back(enumerator);
    break;
  }
  case iftc_bclass:
    type->base_classes.push_back(
        {required_type(cursor), cursor.sint(), cursor.i8(), cursor.flag()});
    break;
  case iftc_adecl:
    type->access_declarations.push_back({cursor.uint32(), cursor.i8()});
    break;
  case iftc_ffriend:
    type->friend_functions.push_back({cursor.string(), required_type(cursor)});
    break;
  case iftc_cfriend:
    type->friend_classes.push_back(required_type(cursor));
    break;
  case iftc_ntype:
    type->nested_types.push_back(required_type(cursor));
    break;
  case iftc_mdata: {
    uint64_t start = cursor.offset();
    an_if_member member{cursor.uint32(), cursor.string(), required_type(cursor),
                        cursor.i8(),     cursor.sint(),   cursor.i8(),
                        cursor.uint32(), cursor.flag(),   {cursor.flag(), cursor.flag()},
                        psn(cursor)};
    if (member.number != type->members.size() + 1)
      if_fail(start, "a data member's number is out of order");
    type->members.push_back(member);
    break;
  }
  case iftc_sdata:
    type->static_members.push_back({cursor.string(), required_type(cursor), cursor.i8()});
    break;
  case iftc_mfunc:
    type->member_functions.push_back(
        {cursor.string(),
         required_type(cursor),
         cursor.i8(),
         cursor.sint(),
         {cursor.flag(), cursor.flag(), cursor.flag(), cursor.flag()}});
    break;
  }
}

// Every list that was announced must have come.
void an_if_reader::end_of_types() {
  if (list_owner != nullptr)
    if_fail(list_owner->offset, "a list of the type has no end");
  for (const an_if_type& type : file.types) {
    if (expected_lists[type.id] != 0)
      if_fail(type.offset, "a list of the type is missing");
  }
}

// -- Texts ---------------------------------------------------------------------

static const char* basic_name(const an_if_type* type) {
  switch (type->code) {
  case iftc_bool:
    return "bool";
  case iftc_schar:
    return type->explicit_sign ? "signed char" : "char";
  case iftc_uchar:
    return type->explicit_sign ? "unsigned char" : "char";
  case iftc_wchar:
    return "wchar_t";
  case iftc_short:
    return "short";
  case iftc_ushort:
    return "unsigned short";
  case iftc_int:
    return "int";
  case iftc_unsigned:
    return "unsigned";
  case iftc_long:
    return "long";
  case iftc_ulong:
    return "unsigned long";
  case iftc_long_long:
    return "long long";
  case iftc_ulong_long:
    return "unsigned long long";
  case iftc_float:
    return "float";
  case iftc_double:
    return "double";
  case iftc_long_double:
    return "long double";
  default:
    return "void";
  }
}

static std::string qualifiers_text(uint8_t bits) {
  static const char* const names[] = {"const", "volatile", "packed",   "near",
                                      "far",   "ioport",   "restrict", "onchip"};
  std::string text;
  for (unsigned bit = 0; bit < 8; bit++) {
    if (bits >> bit & 1)
      text += std::string(text.empty() ? "" : " ") + names[bit];
  }
  return text;
}

static std::string type_text(const an_if_type* type, unsigned depth);

static std::string array_text(const an_if_type* type, unsigned depth) {
  std::string bounds;
  for (; type->kind == iftk_array && bounds.size() < 100; type = type->target) {
    bounds += type->is_vector ? "<[" : "[";
    if (type->is_complete)
      bounds += std::to_string(type->count);
    bounds += type->is_vector ? "]>" : "]";
  }
  return type_text(type, depth) + bounds;
}

static std::string function_text(const an_if_type* type, unsigned depth) {
  std::string text = type_text(type->target, depth) + "(";
  const char* separator = "";
  for (const an_if_param& param : type->params) {
    text += separator + type_text(param.type, depth);
    separator = ", ";
    if (text.size() > 200)
      return text.substr(0, 200) + "...";
  }
  return text + (type->has_ellipsis ? std::string(separator) + "...)" : ")");
}

static std::string type_text(const an_if_type* type, unsigned depth) {
  if (type == nullptr)
    return "-";
  if (depth == 0)
    return "#" + std::to_string(type->id);
  depth--;
  switch (type->kind) {
  case iftk_fixed_point:
    return "fixed " + type_text(type->target, depth);
  case iftk_complex:
    return "complex " + type_text(type->target, depth);
  case iftk_pointer:
    return type_text(type->target, depth) + "*";
  case iftk_reference:
    return type_text(type->target, depth) + "&";
  case iftk_qualified:
    if (type->target->kind >= iftk_pointer && type->target->kind <= iftk_reference)
      return type_text(type->target, depth) + " " + qualifiers_text(type->qualifiers);
    return qualifiers_text(type->qualifiers) + " " + type_text(type->target, depth);
  case iftk_array:
    return array_text(type, depth);
  case iftk_ptr_to_member:
    return type_text(type->target, depth) + " " + type_text(type->member_class, depth) + "::*";
  case iftk_function:
    return function_text(type, depth);
  case iftk_typedef:
    return std::string(type->name);
  case iftk_enum:
    return "enum " + std::string(type->name);
  case iftk_class:
    return "class " + std::string(type->name);
  case iftk_struct:
    return "struct " + std::string(type->name);
  case iftk_union:
    return "union " + std::string(type->name);
  default:
    return basic_name(type);
  }
}

std::string if_type_text(const an_if_type* type) {
  return type_text(type, 12);
}
