#include "type_pkg.h"

#include <bit>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "decode.h"
#include "error.h"
#include "if_util.h"

TYPE_PKG* type_pkg = nullptr;

TYPE* TYPE_PKG::root_type = nullptr;
int TYPE_PKG::tp_count = 0;
bool TYPE_PKG::seen_enum_type = false;
bool TYPE_PKG::seen_small_enums = false;
bool TYPE_PKG::seen_bitfield = false;

namespace {

constexpr uint32_t default_align = 8;
constexpr uint64_t pointer_size = 32;
constexpr uint64_t function_pointer_size = 16;
constexpr uint64_t default_int_size[TYPE::ikind_last + 1] = {8,  8,  8,  32, 16, 16,
                                                             32, 32, 32, 32, 64, 64};
constexpr uint64_t default_float_size[TYPE::fkind_last + 1] = {32, 64, 64};

constexpr char invented_prefix[] = "$$fake";
constexpr size_t invented_prefix_length = sizeof(invented_prefix) - 1;
unsigned invented_names = 0;

size_t allocated_bytes = 0;

std::unique_ptr<PSN> copy_of(const PSN* psn) {
  return psn != nullptr ? std::make_unique<PSN>(*psn) : nullptr;
}

bool is_invented(const char* name) {
  return std::strncmp(name, invented_prefix, invented_prefix_length) == 0;
}

// The name itself, or an invented one that is unique in the run.
std::string name_or_invented(const char* name) {
  if (name != nullptr && !is_invented(name))
    return name;
  return invented_prefix + std::to_string(invented_names++);
}

} // namespace

void* tp_alloc(size_t bytes) {
  void* memory = std::calloc(1, bytes);
  if (memory == nullptr)
    tp_die("Out of memory: tp_alloc()");
  allocated_bytes += bytes;
  return memory;
}

size_t tp_allocated_bytes() {
  return allocated_bytes;
}

void tp_die(const char* text) {
  std::fprintf(stderr, "TP>> internal error: %s\n", text);
  std::exit(1);
}

void TP_OBJECT::operator delete(void* object) {
  std::free(object);
}

fkETOR::fkETOR(int64_t etor_value, const char* etor_name, const PSN* etor_psn)
    : value(etor_value), name(etor_name), psn(copy_of(etor_psn)) {}

fkETOR::~fkETOR() = default;

fkMDATA::fkMDATA(const char* member_name, TYPE* member_type, ACCESS_KIND member_access,
                 int64_t offset, uint32_t width, bool bitfield, const PSN* member_psn)
    : type(member_type), name(member_name), access(member_access), bit_offset(offset),
      bit_width(width), is_bitfield(bitfield), psn(copy_of(member_psn)) {}

fkMDATA::~fkMDATA() = default;

// -- TYPE ----------------------------------------------------------------------

TYPE::TYPE(TYPE_PKG* owner, KIND type_kind, uint64_t type_size, uint32_t type_align, bool cpp)
    : kind(type_kind), size(type_size), align(type_align), pkg(owner), rep(this), is_cpp(cpp) {
  sub.target = nullptr;
  switch (kind) {
  case k_fixed_point:
    sub.fxtpt = new fkFXTPT();
    break;
  case k_ptr_to_member:
    sub.ptm = new fkPTM();
    break;
  case k_array:
    sub.array = new fkARRAY();
    break;
  case k_function:
    sub.func = new fkFUNC();
    break;
  case k_typedef:
    sub.type_def = new fkTYPEDEF();
    break;
  case k_enum:
    sub.enumeration = new fkENUM();
    break;
  case k_class:
  case k_struct:
  case k_union:
    sub.csu = new fkCSU();
    break;
  default:
    break;
  }
}

TYPE::~TYPE() {
  switch (kind) {
  case k_fixed_point:
    delete sub.fxtpt;
    break;
  case k_ptr_to_member:
    delete sub.ptm;
    break;
  case k_array:
    delete sub.array;
    break;
  case k_function:
    delete sub.func;
    break;
  case k_typedef:
    delete sub.type_def;
    break;
  case k_enum:
    delete sub.enumeration;
    break;
  case k_class:
  case k_struct:
  case k_union:
    delete sub.csu;
    break;
  default:
    break;
  }
}

TYPE* TYPE::getr(KIND wanted) {
  if (rep->kind != wanted)
    tp_die("Bad kind:  TYPE::getr()");
  return rep;
}

TYPE* TYPE::getd(KIND wanted) {
  if (kind != wanted)
    tp_die("Bad kind:  TYPE::getd()");
  return this;
}

fkCSU* TYPE::getr_csu() {
  if (!rep->is_csu())
    tp_die("Bad kind:  TYPE::getr_csu()");
  return rep->sub.csu;
}

fkCSU* TYPE::get_csu() {
  TYPE* type = stripped();
  return type->is_csu() ? type->sub.csu : nullptr;
}

const char* TYPE::name() {
  switch (rep->kind) {
  case k_typedef:
    return rep->sub.type_def->name.c_str();
  case k_enum:
    return rep->sub.enumeration->name.c_str();
  case k_class:
  case k_struct:
  case k_union:
    return rep->sub.csu->name.c_str();
  default:
    return nullptr;
  }
}

TYPE* TYPE::stds() {
  TYPE* type = this;
  while (type->kind == k_typedef)
    type = type->sub.type_def->aliased;
  return type;
}

TYPE* TYPE::stqs() {
  return rep;
}

TYPE* TYPE::stripped() {
  TYPE* type = rep;
  while (type->kind == k_typedef)
    type = type->sub.type_def->aliased->rep;
  return type;
}

TYPE* TYPE::final_equiv() {
  TYPE* type = this;
  while (type->equiv != nullptr)
    type = type->equiv;
  return type;
}

uint8_t TYPE::qual_kind(bool through_arrays) {
  uint8_t bits = 0;
  for (TYPE* type = this;;) {
    if (type->kind == k_qualified) {
      bits |= type->qualifiers;
      type = type->rep;
    } else if (type->kind == k_typedef) {
      type = type->sub.type_def->aliased;
    } else if (type->kind == k_array && through_arrays) {
      type = type->sub.array->elem;
    } else {
      return bits;
    }
  }
}

bool TYPE::type_qualified(uint8_t bits) {
  return (qual_kind(false) & bits) == bits;
}

TYPE* TYPE::type_pointed_to() {
  TYPE* type = stripped();
  switch (type->kind) {
  case k_pointer:
  case k_reference:
    return type->sub.target;
  case k_ptr_to_member:
    return type->sub.ptm->pointee;
  default:
    tp_die("orphan type:  TYPE::type_pointed_to()");
  }
}

TYPE* TYPE::underlying_type() {
  TYPE* type = stripped();
  switch (type->kind) {
  case k_enum:
    return type->sub.enumeration->underlying;
  case k_fixed_point:
    return type->sub.fxtpt->underlying;
  default:
    tp_die("orphan type:  TYPE::underlying_type()");
  }
}

TYPE* TYPE::part_type() {
  TYPE* type = stripped();
  if (type->kind != k_complex)
    tp_die("orphan type:  TYPE::part_type()");
  return type->sub.target;
}

TYPE* TYPE::elem_type() {
  TYPE* type = stripped();
  if (type->kind != k_array)
    tp_die("orphan type:  TYPE::elem_type()");
  return type->sub.array->elem;
}

TYPE::EKIND TYPE::ekind() {
  switch (kind) {
  case k_void:
    return ek_void;
  case k_integral:
    return EKIND(sub.ikind);
  case k_floating:
    return EKIND(unsigned(ek_float) + sub.fkind);
  case k_fixed_point:
    return ek_fixed_point;
  case k_complex:
    return ek_complex;
  case k_pointer:
    return ek_pointer;
  case k_reference:
    return ek_reference;
  case k_array:
    return ek_array;
  case k_ptr_to_member:
    return ek_ptr_to_member;
  case k_function:
    return ek_function;
  case k_enum:
    return ek_enum;
  case k_class:
    return ek_class;
  case k_struct:
    return ek_struct;
  case k_union:
    return ek_union;
  default:
    tp_die("unhandled type kind: TYPE::ekind()");
  }
}

bool TYPE::is_complete() {
  TYPE* type = stripped();
  switch (type->kind) {
  case k_void:
    return false;
  case k_array:
    return type->sub.array->is_complete;
  case k_enum:
    return type->sub.enumeration->is_complete;
  case k_class:
  case k_struct:
  case k_union:
    return type->sub.csu->is_complete;
  default:
    return true;
  }
}

bool TYPE::is_lowered() {
  if (rep->kind == k_typedef)
    return rep->sub.type_def->is_lowered;
  return rep->is_csu() && rep->sub.csu->is_lowered;
}

bool TYPE::is_signed() {
  TYPE* type = stripped();
  while (type->kind == k_enum || type->kind == k_array)
    type = (type->kind == k_enum ? type->sub.enumeration->underlying : type->sub.array->elem)
               ->stripped();
  if (type->kind != k_integral)
    return type->kind == k_floating;
  switch (type->sub.ikind) {
  case ikind_signed_char:
  case ikind_short:
  case ikind_int:
  case ikind_long:
  case ikind_long_long:
    return true;
  default:
    return false;
  }
}

bool TYPE::is_kind(KIND wanted) {
  return stripped()->kind == wanted;
}

bool TYPE::is_ikind(IKIND wanted) {
  TYPE* type = stripped();
  return type->kind == k_integral && type->sub.ikind == wanted;
}

bool TYPE::is_fkind(FKIND wanted) {
  TYPE* type = stripped();
  return type->kind == k_floating && type->sub.fkind == wanted;
}

bool TYPE::is_csu() {
  return kind == k_class || kind == k_struct || kind == k_union;
}

bool TYPE::is_void() {
  return is_kind(k_void);
}

bool TYPE::is_bool() {
  return is_ikind(ikind_bool);
}

bool TYPE::is_plain_char() {
  return (is_ikind(ikind_signed_char) || is_ikind(ikind_unsigned_char)) &&
         !stripped()->explicit_sign;
}

bool TYPE::is_signed_char() {
  return is_ikind(ikind_signed_char);
}

bool TYPE::is_unsigned_char() {
  return is_ikind(ikind_unsigned_char);
}

bool TYPE::is_wchar_t() {
  return is_ikind(ikind_wchar_t);
}

bool TYPE::is_short() {
  return is_ikind(ikind_short);
}

bool TYPE::is_unsigned_short() {
  return is_ikind(ikind_unsigned_short);
}

bool TYPE::is_int() {
  return is_ikind(ikind_int);
}

bool TYPE::is_unsigned() {
  return is_ikind(ikind_unsigned);
}

bool TYPE::is_long() {
  return is_ikind(ikind_long);
}

bool TYPE::is_unsigned_long() {
  return is_ikind(ikind_unsigned_long);
}

bool TYPE::is_long_long() {
  return is_ikind(ikind_long_long);
}

bool TYPE::is_unsigned_long_long() {
  return is_ikind(ikind_unsigned_long_long);
}

bool TYPE::is_float() {
  return is_fkind(fkind_float);
}

bool TYPE::is_double() {
  return is_fkind(fkind_double);
}

bool TYPE::is_long_double() {
  return is_fkind(fkind_long_double);
}

bool TYPE::is_boolean_int() {
  TYPE* type = stripped();
  return type->kind == k_integral && type->boolean_int;
}

bool TYPE::is_arithmetic() {
  switch (stripped()->kind) {
  case k_integral:
  case k_floating:
  case k_fixed_point:
  case k_complex:
  case k_enum:
    return true;
  default:
    return false;
  }
}

bool TYPE::is_scalar() {
  return is_arithmetic() || is_kind(k_pointer) || is_kind(k_reference) || is_kind(k_ptr_to_member);
}

uint64_t TYPE::size_in_bytes() {
  return size / 8;
}

uint32_t TYPE::align_in_bytes() {
  return align / 8;
}

uint64_t TYPE::storage_size() {
  switch (stripped()->kind) {
  case k_integral:
  case k_floating:
  case k_fixed_point:
  case k_complex:
  case k_pointer:
  case k_reference:
  case k_ptr_to_member:
  case k_enum:
    return size > uint64_t{1} << 63 ? size : std::bit_ceil(size) & -uint64_t{size != 0};
  default:
    return size;
  }
}

void TYPE::set_psn(const PSN* position) {
  psn = copy_of(position);
}

void TYPE::check_nfrozen() {
  if (frozen)
    tp_die("Modifying frozen type:  TYPE::check_nfrozen");
}

fkPARAM* TYPE::add_param(fkPARAM* param) {
  check_nfrozen();
  return kind == k_function ? sub.func->params.append(param) : getr_csu()->params.append(param);
}

fkETOR* TYPE::add_etor(fkETOR* etor) {
  check_nfrozen();
  fkENUM* enumeration = getd(k_enum)->sub.enumeration;
  enumeration->is_complete = true;
  return enumeration->etors.append(etor);
}

fkMDATA* TYPE::add_mdata(fkMDATA* member) {
  check_nfrozen();
  if (member->is_bitfield)
    TYPE_PKG::seen_bitfield = true;
  return getr_csu()->mdata.append(member);
}

fkBCLASS* TYPE::add_bclass(fkBCLASS* base) {
  check_nfrozen();
  return getr_csu()->bclasses.append(base);
}

fkADECL* TYPE::add_adecl(fkADECL* adecl) {
  check_nfrozen();
  return getr_csu()->adecls.append(adecl);
}

fkFFRIEND* TYPE::add_ffriend(fkFFRIEND* function) {
  check_nfrozen();
  return getr_csu()->ffriends.append(function);
}

fkTYPE_ELEM* TYPE::add_cfriend(fkTYPE_ELEM* friend_class) {
  check_nfrozen();
  return getr_csu()->cfriends.append(friend_class);
}

fkTYPE_ELEM* TYPE::add_ntype(fkTYPE_ELEM* nested) {
  check_nfrozen();
  return getr_csu()->ntypes.append(nested);
}

fkSDATA* TYPE::add_sdata(fkSDATA* member) {
  check_nfrozen();
  return getr_csu()->sdata.append(member);
}

fkMFUNC* TYPE::add_mfunc(fkMFUNC* function) {
  check_nfrozen();
  return getr_csu()->funcs.append(function);
}

const std::string& TYPE::map_name() {
  if (kind == k_qualified)
    return rep->map_name();
  if (!map_key.empty())
    return map_key;
  const char* own_name = name();
  if (own_name == nullptr)
    return map_key = "__builtin_type";
  if (is_invented(own_name)) {
    const char* what = kind == k_typedef ? "typedef"
                       : kind == k_enum  ? "enum"
                       : kind == k_union ? "union"
                                         : "struct";
    return map_key = std::string(invented_prefix) + what;
  }
  map_key = decode_id(own_name, false);
  if (map_key != own_name)
    map_key.erase(0, map_key.rfind(':') + 1); // npos + 1 is 0: no scope, nothing goes
  return map_key;
}

void TYPE::mark_named_types(bool keep_all) {
  if (!keep_all)
    return;
  for (TYPE_TREE_ITERATOR it(this); it.get() != nullptr; it.advance()) {
    TYPE* type = it.get();
    if (type->kind != k_qualified && type->name() != nullptr && !type->is_lowered())
      type->final_equiv()->referenced = true;
  }
}

void TYPE::mark_refed_types() {
  std::vector<std::pair<TYPE*, bool>> stack{{this, false}}; // true: its children are done
  while (!stack.empty()) {
    auto [type, children_done] = stack.back();
    stack.pop_back();
    if (children_done) {
      if (type->mark == 0 && type->final_equiv()->referenced)
        type->mark_refed_recur();
      continue;
    }
    stack.emplace_back(type, true);
    for (auto entry = type->based.rbegin(); entry != type->based.rend(); ++entry) {
      for (auto child = entry->second.rbegin(); child != entry->second.rend(); ++child)
        stack.emplace_back(*child, false);
    }
  }
}

// Calls `visit` for the types that `type` is built from, apart from the one it
// is filed with.
template <class Visit> static void for_each_part(TYPE* type, Visit visit) {
  auto visit_list = [&](auto& list) {
    for (auto* node = list.head; node != nullptr; node = node->next)
      visit(node->type);
  };
  switch (type->kind) {
  case TYPE::k_array:
    visit(type->sub.array->elem); // with its qualifiers
    break;
  case TYPE::k_ptr_to_member:
    visit(type->sub.ptm->csu);
    break;
  case TYPE::k_function:
    visit_list(type->sub.func->params);
    break;
  case TYPE::k_class:
  case TYPE::k_struct:
  case TYPE::k_union: {
    fkCSU* csu = type->sub.csu;
    visit_list(csu->mdata);
    visit_list(csu->sdata);
    visit_list(csu->funcs);
    visit_list(csu->bclasses);
    visit_list(csu->ffriends);
    visit_list(csu->cfriends);
    visit_list(csu->ntypes);
    visit_list(csu->params);
    break;
  }
  default:
    break;
  }
}

// The types to visit stand on a stack of our own, since a chain of structures
// that refer to one another may be as long as the source.
void TYPE::mark_refed_recur() {
  std::vector<TYPE*> pending{this};
  auto enter = [&](TYPE* type) {
    if (type != nullptr && type->final_equiv()->mark == 0)
      pending.push_back(type->final_equiv());
  };
  while (!pending.empty()) {
    TYPE* type = pending.back();
    pending.pop_back();
    if (type->mark != 0)
      continue;
    type->mark = -1;
    type->referenced = true;
    enter(TYPE_PKG::base_type(type));
    for_each_part(type, enter);
  }
}

// -- Texts of types ------------------------------------------------------------

static const char* const integer_texts[TYPE::ikind_last + 1] = {
    "bool ", "char ",     "unsigned char ", "wchar_t ",       "short ",     "unsigned short ",
    "int ",  "unsigned ", "long ",          "unsigned long ", "long long ", "unsigned long long "};
static const char* const float_texts[TYPE::fkind_last + 1] = {"float ", "double ", "long double "};

static const struct {
  uint8_t bit;
  const char* text;
} qualifier_texts[] = {{qf_const, "const "},   {qf_volatile, "volatile "},
                       {qf_packed, "packed "}, {qf_near, "near "},
                       {qf_far, "far "},       {qf_restrict, "restrict "},
                       {qf_ioport, "ioport "}, {qf_onchip, "onchip "}};

static std::string qualifiers_text(uint8_t bits) {
  std::string text;
  for (const auto& qualifier : qualifier_texts) {
    if (bits & qualifier.bit)
      text += qualifier.text;
  }
  return text;
}

static const char* complex_text(TYPE* part) {
  switch (part->stripped()->kind) {
  case TYPE::k_floating:
    return part->is_float() ? "cfloat " : "cdouble ";
  case TYPE::k_integral:
    switch (part->stripped()->sub.ikind) {
    case TYPE::ikind_bool:
    case TYPE::ikind_signed_char:
    case TYPE::ikind_unsigned_char:
      return "cchar ";
    case TYPE::ikind_short:
    case TYPE::ikind_unsigned_short:
      return "cshort ";
    case TYPE::ikind_long:
    case TYPE::ikind_unsigned_long:
      return "clong ";
    case TYPE::ikind_long_long:
    case TYPE::ikind_unsigned_long_long:
      return "cllong ";
    default:
      return "cint ";
    }
  default:
    return "complex ";
  }
}

// Puts the name of the type in front of `left` and what follows a declared
// name into `right`, from the name outward.
void TYPE::print_parts(std::string& left, std::string& right, bool markup) {
  // "*", "&" and "C::*" bind less tightly than "[]" and "()".
  auto put_in_front = [&](const std::string& text, TYPE* target) {
    left.insert(0, text);
    if (target->rep->kind == k_array || target->rep->kind == k_function) {
      left.insert(0, "(");
      right += ")";
    }
    target->print_parts(left, right, markup);
  };
  switch (kind) {
  case k_void:
    left.insert(0, "void ");
    break;
  case k_integral:
    left.insert(0, integer_texts[sub.ikind]);
    if (explicit_sign && (sub.ikind == ikind_signed_char || sub.ikind == ikind_unsigned_char))
      left.insert(0, "[ExplSign] ");
    break;
  case k_floating:
    left.insert(0, float_texts[sub.fkind]);
    break;
  case k_fixed_point:
    left.insert(0, " [FxtPt:" + std::to_string(sub.fxtpt->kind) + "] ");
    sub.fxtpt->underlying->print_parts(left, right, markup);
    break;
  case k_complex:
    left.insert(0, complex_text(sub.target));
    break;
  case k_pointer:
    put_in_front("*", sub.target);
    break;
  case k_reference:
    put_in_front(markup ? "&#x26;" : "&", sub.target);
    break;
  case k_ptr_to_member:
    put_in_front(std::string(sub.ptm->csu->name()) + "::*", sub.ptm->pointee);
    break;
  case k_qualified:
    if (rep->kind == k_pointer || rep->kind == k_reference || rep->kind == k_ptr_to_member) {
      left.insert(0, qualifiers_text(qualifiers));
      rep->print_parts(left, right, markup);
    } else {
      rep->print_parts(left, right, markup);
      left.insert(0, qualifiers_text(qualifiers));
    }
    break;
  case k_array:
    right += sub.array->is_vector ? "<[" : "[";
    if (sub.array->is_complete)
      right += std::to_string(sub.array->count);
    right += sub.array->is_vector ? "]>" : "]";
    sub.array->elem->print_parts(left, right, markup);
    break;
  case k_function: {
    right += "(";
    for (fkPARAM* param = sub.func->params.head; param != nullptr; param = param->next) {
      right += param->type->printstr(false);
      if (param->next != nullptr || sub.func->has_ellipsis)
        right += ", ";
    }
    right += sub.func->has_ellipsis ? "...)" : ")";
    sub.func->return_type->print_parts(left, right, markup);
    break;
  }
  case k_typedef:
    left.insert(0, decode_id(name(), false) + " ");
    break;
  case k_enum:
    left.insert(0, "enum " + decode_id(name(), false) + " ");
    break;
  case k_class:
    left.insert(0, "class " + decode_id(name(), false) + " ");
    break;
  case k_struct:
    left.insert(0, "struct " + decode_id(name(), false) + " ");
    break;
  case k_union:
    left.insert(0, "union " + decode_id(name(), false) + " ");
    break;
  }
}

static std::string member_text(fkMDATA* member) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "    off:%3lld ",
                static_cast<long long>(member->bit_offset));
  std::string text = buffer;
  if (member->is_bitfield) {
    std::snprintf(buffer, sizeof buffer, "bitfld(%2u) ", member->bit_width);
    text += buffer;
  }
  return text + member->type->printstr(false) + " " + member->name + "\n";
}

static std::string text_of(TYPE* type, std::string left, std::string right, bool long_form) {
  if (!left.empty() && left.back() == ' ')
    left.pop_back();
  std::string text = left + right;
  fkCSU* csu = type->get_csu();
  if (!long_form || csu == nullptr)
    return text;
  text += " {\n";
  for (fkMDATA* member = csu->mdata.head; member != nullptr; member = member->next)
    text += member_text(member);
  return text + "}";
}

std::string TYPE::printstr(bool long_form) {
  std::string left, right;
  print_parts(left, right, false);
  return text_of(this, left, right, long_form);
}

void TYPE::print(bool markup, bool long_form) {
  std::string left, right;
  print_parts(left, right, markup);
  std::fputs(text_of(this, left, right, long_form).c_str(), stdout);
}

// -- The tree ------------------------------------------------------------------

bool TYPE_TREE_ITERATOR::enter_next_of_frame() {
  FRAME& frame = frames.back();
  while (frame.entry != frame.end) {
    if (frame.index < frame.entry->second.size()) {
      current = frame.entry->second[frame.index++];
      return true;
    }
    ++frame.entry;
    frame.index = 0;
  }
  return false;
}

void TYPE_TREE_ITERATOR::advance() {
  frames.push_back({current->based.begin(), current->based.end(), 0});
  while (!frames.empty()) {
    if (enter_next_of_frame())
      return;
    frames.pop_back();
  }
  current = nullptr;
}

bool exact_types(TYPE* a, TYPE* b) {
  // Frozen types are shared, so two different ones differ.
  auto same = [](TYPE* x, TYPE* y) {
    return x == y || ((x->uid == 0 || y->uid == 0) && exact_types(x, y));
  };
  if (a == b)
    return true;
  if (a->frozen != b->frozen || a->kind != b->kind || a->size != b->size || a->align != b->align ||
      a->is_cpp != b->is_cpp)
    return false;
  switch (a->kind) {
  case TYPE::k_void:
    return true;
  case TYPE::k_integral:
    return a->sub.ikind == b->sub.ikind && a->explicit_sign == b->explicit_sign &&
           a->boolean_int == b->boolean_int && a->ptm_int == b->ptm_int;
  case TYPE::k_floating:
    return a->sub.fkind == b->sub.fkind;
  case TYPE::k_fixed_point:
    return a->sub.fxtpt->kind == b->sub.fxtpt->kind &&
           same(a->sub.fxtpt->underlying, b->sub.fxtpt->underlying);
  case TYPE::k_complex:
  case TYPE::k_pointer:
  case TYPE::k_reference:
    return same(a->sub.target, b->sub.target);
  case TYPE::k_qualified:
    return a->qualifiers == b->qualifiers && same(a->rep, b->rep);
  case TYPE::k_typedef:
    return a->sub.type_def->name == b->sub.type_def->name &&
           same(a->sub.type_def->aliased, b->sub.type_def->aliased);
  case TYPE::k_array: {
    fkARRAY *x = a->sub.array, *y = b->sub.array;
    return x->count == y->count && x->is_complete == y->is_complete &&
           x->is_vector == y->is_vector && same(x->elem, y->elem);
  }
  case TYPE::k_ptr_to_member:
    return same(a->sub.ptm->csu, b->sub.ptm->csu) && same(a->sub.ptm->pointee, b->sub.ptm->pointee);
  case TYPE::k_function: {
    fkFUNC *x = a->sub.func, *y = b->sub.func;
    if (x->cc_kind != y->cc_kind || x->has_ellipsis != y->has_ellipsis ||
        x->prototyped != y->prototyped || !same(x->return_type, y->return_type))
      return false;
    fkPARAM *p = x->params.head, *q = y->params.head;
    for (; p != nullptr && q != nullptr; p = p->next, q = q->next) {
      if (p->kind != q->kind || p->text != q->text || !same(p->type, q->type))
        return false;
    }
    return p == q;
  }
  default:
    return false; // enums and classes have an identity of their own
  }
}

// -- TYPE_PKG ------------------------------------------------------------------

TYPE_PKG::TYPE_PKG() {
  ++tp_count;
  init_type_pkg();
}

TYPE_PKG::~TYPE_PKG() {
  std::vector<TYPE*> own;
  for (auto& [key, types] : root_type->based) {
    for (TYPE* type : types) {
      if (type->pkg == this)
        own.push_back(type);
    }
  }
  for (TYPE* type : own)
    delete_type_tree(type, true);
  if (--tp_count == 0) {
    delete root_type;
    root_type = nullptr;
  }
}

void TYPE_PKG::init_type_pkg() {
  epoch = 0;
  next_uid = 1;
  error_handler = nullptr;
  if (root_type == nullptr) {
    root_type = new TYPE(this, TYPE::k_void, 0, 0, false);
    root_type->frozen = true;
    assign_uid(root_type);
  }
  void_type = mk_void();
  pointer_to_void = mk_ptr(void_type);
  for (unsigned kind = 0; kind <= TYPE::ikind_last; kind++)
    integers[kind] = mk_int(TYPE::IKIND(kind), true, default_int_size[kind], default_align,
                            kind == TYPE::ikind_bool, false);
  for (unsigned kind = 0; kind <= TYPE::fkind_last; kind++)
    floats[kind] = mk_fltpt(TYPE::FKIND(kind), default_float_size[kind], default_align);
  normalize_basic_types();
}

void TYPE_PKG::normalize_basic_types() {
  for (TYPE* type : integers)
    type->normal = type;
  for (TYPE* type : floats)
    type->normal = type;
  auto pair_off = [](TYPE** types, unsigned larger, unsigned smaller) {
    if (types[larger]->size != types[smaller]->size)
      return false;
    types[larger]->normal = types[smaller];
    return true;
  };
  // The signed kinds, and each unsigned kind like its signed one.
  static constexpr unsigned kinds[2][5] = {
      {TYPE::ikind_long_long, TYPE::ikind_long, TYPE::ikind_int, TYPE::ikind_short,
       TYPE::ikind_signed_char},
      {TYPE::ikind_unsigned_long_long, TYPE::ikind_unsigned_long, TYPE::ikind_unsigned,
       TYPE::ikind_unsigned_short, TYPE::ikind_unsigned_char}};
  for (const auto& [long_long, long_kind, int_kind, short_kind, char_kind] : kinds) {
    pair_off(integers, long_long, long_kind);
    pair_off(integers, long_long, int_kind);
    pair_off(integers, long_kind, int_kind);
    if (!pair_off(integers, short_kind, int_kind))
      pair_off(integers, short_kind, char_kind);
    pair_off(integers, char_kind, int_kind);
  }
  pair_off(integers, TYPE::ikind_wchar_t, TYPE::ikind_short);
  pair_off(floats, TYPE::fkind_long_double, TYPE::fkind_double);
  pair_off(floats, TYPE::fkind_long_double, TYPE::fkind_float);
  pair_off(floats, TYPE::fkind_double, TYPE::fkind_float);
}

void TYPE_PKG::update_basic_types() {
  for (unsigned kind = 0; kind <= TYPE::ikind_last; kind++)
    integers[kind]->size = default_int_size[kind];
  for (unsigned kind = 0; kind <= TYPE::fkind_last; kind++)
    floats[kind]->size = default_float_size[kind];
  normalize_basic_types();
}

TYPE* TYPE_PKG::base_type(TYPE* type) {
  switch (type->kind) {
  case TYPE::k_fixed_point:
    return type->sub.fxtpt->underlying;
  case TYPE::k_complex:
  case TYPE::k_pointer:
  case TYPE::k_reference:
    return type->sub.target;
  case TYPE::k_qualified:
    return type->rep;
  case TYPE::k_typedef:
    return type->sub.type_def->aliased;
  case TYPE::k_array:
    return type->sub.array->elem->rep;
  case TYPE::k_ptr_to_member:
    return type->sub.ptm->pointee;
  case TYPE::k_function:
    return type->sub.func->return_type;
  case TYPE::k_enum:
    return type->sub.enumeration->underlying;
  default:
    return type == root_type ? nullptr : root_type;
  }
}

void TYPE_PKG::assign_uid(TYPE* type) {
  type->uid = next_uid++;
}

// Whether a type of this kind is never merged with an equal one.
static bool has_identity(const TYPE* type) {
  return type->kind >= TYPE::k_enum && type->kind <= TYPE::k_union;
}

// A program has many types of functions with one return type: most differ in
// this. 0 while a part has no number yet.
static uint32_t shape_of(const TYPE* type) {
  if (type->kind != TYPE::k_function)
    return 0;
  uint32_t hash = 1;
  for (const fkPARAM* param = type->sub.func->params.head; param != nullptr; param = param->next) {
    if (param->type == nullptr || param->type->uid == 0)
      return 0;
    hash = hash * 31 + param->type->uid;
  }
  return hash;
}

static bool shapes_differ(const TYPE* a, const TYPE* b) {
  return a->shape != b->shape && a->shape != 0 && b->shape != 0;
}

TYPE* TYPE_PKG::register_type(TYPE* type, TYPE* base) {
  type->epoch = epoch;
  if (!type->frozen || type->uid != 0)
    return type;
  type->shape = shape_of(type);
  std::vector<TYPE*>& built_alike = base->based[type->map_name()];
  if (!has_identity(type->rep) && type->based.empty()) {
    for (TYPE* old : built_alike) {
      if (old != type && !shapes_differ(old, type) && exact_types(old, type)) {
        delete type;
        return old;
      }
    }
  }
  assign_uid(type);
  if (type->is_csu()) {
    uint32_t number = 0;
    for (fkMDATA* member = type->sub.csu->mdata.head; member != nullptr; member = member->next)
      member->number = ++number;
  }
  built_alike.push_back(type);
  return type;
}

void TYPE_PKG::type_frozen(TYPE*& type) {
  if (type->frozen)
    return;
  type->frozen = true;
  type = register_type(type, base_type(type));
}

void TYPE_PKG::delete_type_tree(TYPE* type, bool with_based) {
  if (!with_based && !type->based.empty())
    return;
  TYPE* base = base_type(type);
  if (base->pointer_to == type)
    base->pointer_to = nullptr;
  auto entry = base->based.find(type->map_name());
  if (entry != base->based.end()) {
    std::erase(entry->second, type);
    if (entry->second.empty())
      base->based.erase(entry);
  }
  std::vector<TYPE*> doomed;
  for (TYPE_TREE_ITERATOR it(type); it.get() != nullptr; it.advance())
    doomed.push_back(it.get());
  for (TYPE* dead : doomed)
    delete dead;
}

void TYPE_PKG::check_size(uint64_t size) {
  if (size > UINT32_MAX)
    set_error(tpe_object_size,
              "Object size %lu bytes is greater than maximum supported size %u bytes",
              static_cast<unsigned long>(size / 8), UINT32_MAX / 8);
}

TYPE* TYPE_PKG::mk_target(TYPE::KIND kind, TYPE* target, uint64_t size, uint32_t align) {
  TYPE* type = new TYPE(this, kind, size, align, false);
  type->sub.target = target;
  type->frozen = true;
  return register_type(type, target);
}

TYPE* TYPE_PKG::mk_void() {
  TYPE* type = new TYPE(this, TYPE::k_void, 0, 0, false);
  type->frozen = true;
  return register_type(type, root_type);
}

TYPE* TYPE_PKG::mk_int(TYPE::IKIND ikind, bool explicit_sign) {
  return mk_int(ikind, explicit_sign, integers[ikind]->size, integers[ikind]->align,
                integers[ikind]->boolean_int, false);
}

TYPE* TYPE_PKG::mk_int(TYPE::IKIND ikind, bool explicit_sign, uint64_t size, uint32_t align,
                       bool boolean_int, bool ptm_int) {
  TYPE* type = new TYPE(this, TYPE::k_integral, size, align, false);
  type->sub.ikind = ikind;
  type->explicit_sign = explicit_sign;
  type->boolean_int = boolean_int;
  type->ptm_int = ptm_int;
  type->frozen = true;
  return register_type(type, root_type);
}

TYPE* TYPE_PKG::mk_boolean_int(TYPE* integer) {
  TYPE* type = integer->stripped()->getd(TYPE::k_integral);
  return mk_int(type->sub.ikind, type->explicit_sign, type->size, type->align, true, type->ptm_int);
}

TYPE* TYPE_PKG::mk_ptm_int(TYPE* integer) {
  TYPE* type = integer->stripped()->getd(TYPE::k_integral);
  return mk_int(type->sub.ikind, type->explicit_sign, type->size, type->align, type->boolean_int,
                true);
}

TYPE* TYPE_PKG::mk_fltpt(TYPE::FKIND fkind) {
  return mk_fltpt(fkind, floats[fkind]->size, floats[fkind]->align);
}

TYPE* TYPE_PKG::mk_fltpt(TYPE::FKIND fkind, uint64_t size, uint32_t align) {
  TYPE* type = new TYPE(this, TYPE::k_floating, size, align, false);
  type->sub.fkind = fkind;
  type->frozen = true;
  return register_type(type, root_type);
}

TYPE* TYPE_PKG::mk_fxtpt(int kind, TYPE* underlying, uint64_t size, uint32_t align) {
  TYPE* type = new TYPE(this, TYPE::k_fixed_point, size, align, false);
  type->sub.fxtpt->kind = kind;
  type->sub.fxtpt->underlying = underlying;
  type->frozen = true;
  return register_type(type, underlying);
}

TYPE* TYPE_PKG::mk_complex(TYPE* part) {
  return mk_target(TYPE::k_complex, part, part->size * 2, part->align);
}

// The default size of a pointer to `target`.
static uint64_t size_of_pointer(TYPE* target) {
  return target->is_kind(TYPE::k_function) ? function_pointer_size : pointer_size;
}

TYPE* TYPE_PKG::mk_ptr(TYPE* pointee) {
  return mk_ptr(pointee, size_of_pointer(pointee), default_align);
}

TYPE* TYPE_PKG::mk_ptr(TYPE* pointee, uint64_t size, uint32_t align) {
  TYPE* cached = pointee->pointer_to;
  if (cached != nullptr && cached->size == size && cached->align == align)
    return cached;
  return pointee->pointer_to = mk_target(TYPE::k_pointer, pointee, size, align);
}

TYPE* TYPE_PKG::mk_ref(TYPE* referenced) {
  return mk_ref(referenced, size_of_pointer(referenced), default_align);
}

TYPE* TYPE_PKG::mk_ref(TYPE* referenced, uint64_t size, uint32_t align) {
  return mk_target(TYPE::k_reference, referenced, size, align);
}

TYPE* TYPE_PKG::mk_qual(TYPE* type, uint8_t qualifiers) {
  return mk_qual(type, qualifiers, type->size,
                 qualifiers & qf_packed ? default_align : type->align);
}

TYPE* TYPE_PKG::mk_qual(TYPE* type, uint8_t qualifiers, uint64_t size, uint32_t align) {
  if (type->type_qualified(qualifiers))
    return type;
  if (type->type_qualified(qf_packed))
    align = default_align;
  TYPE* qualified = new TYPE(this, TYPE::k_qualified, size, align, false);
  qualified->qualifiers = qualifiers | type->qualifiers;
  qualified->rep = type->rep;
  qualified->sub.target = type->rep;
  qualified->frozen = true;
  return register_type(qualified, type->rep);
}

TYPE* TYPE_PKG::mk_ptm(TYPE* pointee, TYPE* csu, uint64_t size, uint32_t align) {
  TYPE* type = new TYPE(this, TYPE::k_ptr_to_member, size, align, false);
  type->sub.ptm->pointee = pointee;
  type->sub.ptm->csu = csu;
  type->frozen = true;
  return register_type(type, pointee);
}

TYPE* TYPE_PKG::mk_typedef(const char* name, bool is_cpp, TYPE* aliased, uint64_t size,
                           uint32_t align, bool is_lowered) {
  TYPE* type = new TYPE(this, TYPE::k_typedef, size, align, is_cpp);
  type->sub.type_def->aliased = aliased;
  type->sub.type_def->name = name;
  type->sub.type_def->is_lowered = is_lowered;
  type->frozen = true;
  return register_type(type, aliased);
}

TYPE* TYPE_PKG::mk_array(TYPE* elem, bool is_cpp, uint32_t count, uint64_t size, uint32_t align,
                         bool is_complete) {
  check_size(size);
  TYPE* type = new TYPE(this, TYPE::k_array, size, align, is_cpp);
  type->sub.array->elem = elem;
  type->sub.array->count = count;
  type->sub.array->is_complete = is_complete;
  return type;
}

TYPE* TYPE_PKG::mk_array(TYPE* elem, bool is_cpp, uint32_t count, uint32_t align,
                         bool is_complete) {
  uint64_t size;
  if (__builtin_mul_overflow(count, elem->storage_size(), &size))
    size = UINT64_MAX; // an error in any case
  return mk_array(elem, is_cpp, count, size, align, is_complete);
}

TYPE* TYPE_PKG::mk_vector(TYPE* elem, bool is_cpp, uint32_t count, uint64_t size, uint32_t align) {
  TYPE* type = mk_array(elem, is_cpp, count, size, align, true);
  type->sub.array->is_vector = true;
  return type;
}

TYPE* TYPE_PKG::mk_func(TYPE* return_type, bool is_cpp, bool prototyped, bool has_ellipsis,
                        CC_KIND cc_kind, uint64_t size, uint32_t align) {
  TYPE* type = new TYPE(this, TYPE::k_function, size, align, is_cpp);
  type->sub.func->return_type = return_type;
  type->sub.func->prototyped = prototyped;
  type->sub.func->has_ellipsis = has_ellipsis;
  type->sub.func->cc_kind = cc_kind;
  return type;
}

TYPE* TYPE_PKG::mk_enum(const char* name, TYPE* underlying, uint64_t size, uint32_t align,
                        bool is_cpp) {
  seen_enum_type = true;
  if (size < default_int_size[TYPE::ikind_int])
    seen_small_enums = true;
  TYPE* type = new TYPE(this, TYPE::k_enum, size, align, is_cpp);
  type->sub.enumeration->underlying = underlying;
  type->sub.enumeration->name = name_or_invented(name);
  return type;
}

TYPE* TYPE_PKG::mk_csu(TYPE::KIND kind, const char* name, uint64_t size, uint32_t align,
                       bool is_complete, int integer, bool is_lowered, bool is_struct_vector,
                       bool is_cpp) {
  check_size(size);
  TYPE* type = new TYPE(this, kind, size, align, is_cpp);
  fkCSU* csu = type->sub.csu;
  csu->name = name_or_invented(name);
  csu->is_complete = is_complete;
  csu->integer = integer;
  csu->is_lowered = is_lowered;
  csu->is_struct_vector = is_struct_vector;
  if (!is_complete)
    type_frozen(type);
  return type;
}

TYPE* TYPE_PKG::mk_class(const char* name, uint64_t size, uint32_t align, bool is_complete,
                         int integer, bool is_lowered, bool is_struct_vector, bool is_cpp) {
  return mk_csu(TYPE::k_class, name, size, align, is_complete, integer, is_lowered,
                is_struct_vector, is_cpp);
}

TYPE* TYPE_PKG::mk_struct(const char* name, uint64_t size, uint32_t align, bool is_complete,
                          int integer, bool is_lowered, bool is_struct_vector, bool is_cpp) {
  return mk_csu(TYPE::k_struct, name, size, align, is_complete, integer, is_lowered,
                is_struct_vector, is_cpp);
}

TYPE* TYPE_PKG::mk_union(const char* name, uint64_t size, uint32_t align, bool is_complete,
                         int integer, bool is_lowered, bool is_struct_vector, bool is_cpp) {
  return mk_csu(TYPE::k_union, name, size, align, is_complete, integer, is_lowered,
                is_struct_vector, is_cpp);
}

void TYPE_PKG::set_error(int code, const char* format, ...) {
  static char buffer[4095];
  if (error_code != tpe_none && error_handler != nullptr)
    error_handler(this);
  if (error_code != tpe_none)
    return;
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  error_code = code;
  error_text = buffer;
  if (error_handler != nullptr)
    error_handler(this);
}

const char* TYPE_PKG::error_code_name(int code) {
  switch (code) {
  case tpe_none:
    return "no error";
  case tpe_object_size:
    return "object size not supported";
  default:
    return "unknown error";
  }
}

void TYPE_PKG::print_stats() {
  unsigned counts[TYPE::k_union + 1] = {};
  for (TYPE_TREE_ITERATOR it(root_type); it.get() != nullptr; it.advance())
    counts[it.get()->kind]++;
  static const char* const names[TYPE::k_union + 1] = {
      "void",      "integral",  "floating", "fixed point", "complex",           "pointer",
      "reference", "qualified", "typedef",  "array",       "pointer to member", "function",
      "enum",      "class",     "struct",   "union"};
  for (unsigned kind = 0; kind <= TYPE::k_union; kind++)
    std::printf("%-18s%8u\n", names[kind], counts[kind]);
  std::printf("%-18s%8zu\n", "bytes", tp_allocated_bytes());
}

void TYPE_PKG::dump_all() {
  for (TYPE_TREE_ITERATOR it(root_type); it.get() != nullptr; it.advance()) {
    TYPE* type = it.get();
    std::printf("%6u %10llu:%-4u %s\n", type->uid, static_cast<unsigned long long>(type->size),
                type->align, type->printstr(true).c_str());
  }
}

bool TYPE_PKG::get_container_offset_for_field(uint64_t container_bits, uint64_t alignment_bits,
                                              uint64_t bit_start, uint64_t bit_size,
                                              uint64_t* out) {
  uint64_t end = (bit_start + bit_size + alignment_bits - 1) / alignment_bits * alignment_bits;
  *out = end > container_bits ? end - container_bits : 0;
  return *out <= bit_start;
}

static void type_pkg_error_handler(TYPE_PKG* package) {
  str_error(ec_type_pkg_error,
            package->error_text[0] != '\0' ? package->error_text : "no description available");
  package->error_code = tpe_none;
  package->error_text = "";
}

void init_tp() {
  type_pkg = new TYPE_PKG;
  type_pkg->error_handler = type_pkg_error_handler;
  if (type_pkg->error_code != tpe_none)
    type_pkg_error_handler(type_pkg);
}
