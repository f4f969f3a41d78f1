// The type section of the intermediate file: which types of the package reach
// the file, and their records.

#include "if_write.h"
#include "type_pkg.h"

// -- Which types reach the file ------------------------------------------------

void I_FILE::if_reference_type(TYPE* type) {
  if (type != nullptr)
    type->final_equiv()->referenced = true;
}

void I_FILE::if_mark_global_types() {
  for (I_SYMTAB* symbol : globals) {
    if_reference_type(symbol->sym_type());
    if_reference_type(symbol->sym_cpp_type());
  }
}

void I_FILE::if_write_all_types(bool keep_all) {
  long start = if_tell();
  if_mark_global_types();
  TYPE_PKG::root_type->mark_named_types(keep_all);
  TYPE_PKG::root_type->mark_refed_types();
  write_all_csu_types();
  write_type_tree();
  if (if_tell() == start)
    return;
  i_write_eof();
  type_offset = start;
}

// Classes refer to one another, so all of them are in the file before the
// lists of any.
void I_FILE::write_all_csu_types() {
  for (auto& [key, types] : TYPE_PKG::root_type->based) {
    for (TYPE* type : types) {
      if (type->is_csu() && type->referenced)
        if_write_type(type);
    }
  }
  for (auto& [key, types] : TYPE_PKG::root_type->based) {
    for (TYPE* type : types) {
      if (type->is_csu() && type->written)
        write_csu_type_lists(type);
    }
  }
}

void I_FILE::write_type_tree() {
  for (TYPE_TREE_ITERATOR it(TYPE_PKG::root_type); it.get() != nullptr; it.advance()) {
    if (it.get()->final_equiv()->referenced && !it.get()->written)
      if_write_type(it.get());
  }
}

// -- Records -------------------------------------------------------------------

// Rows by EKIND. A class, struct or union with other lists than that of its
// data members has the code of csu_lists instead.
static const int code_by_ekind[TYPE::ek_void + 1] = {
    iftc_bool,          iftc_schar,      iftc_uchar,    iftc_wchar,     iftc_short,
    iftc_ushort,        iftc_int,        iftc_unsigned, iftc_long,      iftc_ulong,
    iftc_long_long,     iftc_ulong_long, iftc_float,    iftc_double,    iftc_long_double,
    iftc_fixed_point,   iftc_complex,    iftc_pointer,  iftc_reference, iftc_array,
    iftc_ptr_to_member, iftc_function,   iftc_enum,     iftc_csu,       iftc_csu,
    iftc_csu,           iftc_void};

static bool has_lists(const fkCSU* csu) {
  return !csu->bclasses.empty() || !csu->adecls.empty() || !csu->ffriends.empty() ||
         !csu->cfriends.empty() || !csu->ntypes.empty() || !csu->sdata.empty() ||
         !csu->funcs.empty() || !csu->params.empty() || csu->integer != 0;
}

static int type_record_code(TYPE* type) {
  if (type->is_csu() && has_lists(type->sub.csu))
    return iftc_csu_lists;
  return code_by_ekind[type->ekind()];
}

// What a csu record calls the three kinds.
static int csu_number(TYPE* type) {
  switch (type->kind) {
  case TYPE::k_struct:
    return 0;
  case TYPE::k_union:
    return 1;
  default:
    return 2;
  }
}

// The types that must be in the file before the record of `type` is written,
// or, with `of_lists`, before the list of a function is.
static std::vector<TYPE*> types_written_before(TYPE* type, bool of_lists) {
  if (of_lists) {
    std::vector<TYPE*> types;
    if (type->kind == TYPE::k_function) {
      for (fkPARAM* param = type->sub.func->params.head; param != nullptr; param = param->next)
        types.push_back(param->type);
    }
    return types;
  }
  switch (type->kind) {
  case TYPE::k_fixed_point:
    return {type->sub.fxtpt->underlying};
  case TYPE::k_complex:
  case TYPE::k_pointer:
  case TYPE::k_reference:
  case TYPE::k_qualified:
    return {type->sub.target};
  case TYPE::k_typedef:
    return {type->sub.type_def->aliased};
  case TYPE::k_array:
    return {type->sub.array->elem};
  case TYPE::k_ptr_to_member:
    return {type->sub.ptm->pointee, type->sub.ptm->csu};
  case TYPE::k_function:
    return {type->sub.func->return_type};
  case TYPE::k_enum:
    return {type->sub.enumeration->underlying};
  default:
    return {};
  }
}

namespace {

// A type on its way to the file: first the types that its record names go
// out, then the record, then those that its list names, then the list.
struct PENDING_TYPE {
  explicit PENDING_TYPE(TYPE* pending)
      : type(pending), waits_for(types_written_before(pending, false)) {}
  TYPE* type;
  std::vector<TYPE*> waits_for;
  size_t next = 0;
  bool record_written = false;
};

} // namespace

// A stack of our own takes the place of recursion, since types may be built on
// one another as often as the source likes.
void I_FILE::if_write_type(TYPE* wanted) {
  if (wanted == nullptr)
    return;
  std::vector<PENDING_TYPE> stack;
  auto enter = [&](TYPE* type) {
    type = type->final_equiv();
    if (type->written)
      return;
    type->written = true;
    stack.emplace_back(type);
  };
  enter(wanted);
  while (!stack.empty()) {
    PENDING_TYPE& top = stack.back();
    if (top.next < top.waits_for.size()) {
      enter(top.waits_for[top.next++]);
    } else if (!top.record_written) {
      write_type_record(top.type);
      top.record_written = true;
      top.waits_for = types_written_before(top.type, true);
      top.next = 0;
    } else {
      if (top.type->kind == TYPE::k_function)
        write_listof_params(top.type, top.type->sub.func->params.head);
      else if (top.type->kind == TYPE::k_enum)
        write_listof_etors(top.type, top.type->sub.enumeration->etors.head);
      stack.pop_back();
    }
  }
}

// The plain record of a type, without its lists.
void I_FILE::write_type_record(TYPE* type) {
  auto begin = [&](int code) {
    i_write_typeref(type);
    i_write_i8(code);
  };
  auto size_and_align = [&] {
    i_write_uint(type->size);
    i_write_uint(type->align);
  };
  switch (type->kind) {
  case TYPE::k_void:
    begin(iftc_void);
    break;
  case TYPE::k_integral:
    begin(type_record_code(type));
    i_write_bool(type->explicit_sign);
    size_and_align();
    i_write_bool(type->is_bool());
    i_write_bool(type->stds()->boolean_int);
    break;
  case TYPE::k_floating:
    begin(type_record_code(type));
    size_and_align();
    break;
  case TYPE::k_fixed_point:
    begin(iftc_fixed_point);
    i_write_i8(type->sub.fxtpt->kind);
    i_write_bool(type->sub.fxtpt->underlying->is_signed());
    i_write_typeref(type->sub.fxtpt->underlying);
    size_and_align();
    break;
  case TYPE::k_complex:
    begin(iftc_complex);
    size_and_align();
    i_write_typeref(type->sub.target);
    break;
  case TYPE::k_pointer:
  case TYPE::k_reference:
    begin(type_record_code(type));
    i_write_typeref(type->sub.target);
    size_and_align();
    break;
  case TYPE::k_qualified:
    begin(iftc_qualified);
    i_write_typeref(type->rep);
    i_write_uint(type->qual_kind(true));
    size_and_align();
    break;
  case TYPE::k_typedef:
    begin(iftc_typedef);
    i_write_string(type->sub.type_def->name.c_str(), 0);
    i_write_typeref(type->sub.type_def->aliased);
    size_and_align();
    i_write_bool(type->is_cpp);
    i_write_bool(type->sub.type_def->is_lowered);
    i_write_psn(type->psn.get());
    break;
  case TYPE::k_array:
    begin(iftc_array);
    i_write_typeref(type->sub.array->elem);
    i_write_uint(type->sub.array->count);
    size_and_align();
    i_write_bool(type->is_cpp);
    i_write_bool(type->sub.array->is_complete);
    i_write_bool(type->sub.array->is_vector);
    break;
  case TYPE::k_ptr_to_member:
    begin(iftc_ptr_to_member);
    i_write_typeref(type->sub.ptm->pointee);
    i_write_typeref(type->sub.ptm->csu);
    size_and_align();
    break;
  case TYPE::k_function:
    begin(iftc_function);
    i_write_typeref(type->sub.func->return_type);
    i_write_bool(type->sub.func->has_ellipsis);
    i_write_bool(type->sub.func->prototyped);
    i_write_i8(type->sub.func->cc_kind);
    i_write_bool(type->is_cpp);
    break;
  case TYPE::k_enum:
    begin(iftc_enum);
    i_write_string(type->sub.enumeration->name.c_str(), 0);
    size_and_align();
    i_write_typeref(type->sub.enumeration->underlying);
    i_write_bool(type->is_cpp);
    i_write_psn(type->psn.get());
    break;
  case TYPE::k_class:
  case TYPE::k_struct:
  case TYPE::k_union:
    begin(type_record_code(type));
    write_csu_fields(type);
    break;
  }
  i_flush(iftag_type);
}

void I_FILE::write_csu_fields(TYPE* type) {
  fkCSU* csu = type->sub.csu;
  i_write_i8(csu_number(type));
  i_write_string(csu->name.c_str(), 0);
  i_write_bool(csu->is_complete);
  i_write_bool(csu->is_lowered);
  i_write_uint(type->size);
  i_write_uint(type->align);
  if (has_lists(csu)) {
    i_write_uint(csu->integer);
    i_write_bool(!csu->bclasses.empty());
    i_write_bool(!csu->adecls.empty());
    i_write_bool(!csu->ffriends.empty());
    i_write_bool(!csu->cfriends.empty());
    i_write_bool(!csu->ntypes.empty());
    i_write_bool(!csu->mdata.empty());
    i_write_bool(!csu->sdata.empty());
    i_write_bool(!csu->funcs.empty());
    i_write_bool(!csu->params.empty());
  } else {
    i_write_bool(!csu->mdata.empty());
  }
  i_write_bool(csu->is_struct_vector);
  i_write_bool(type->is_cpp);
  i_write_psn(type->psn.get());
}

// -- Lists ---------------------------------------------------------------------

void I_FILE::write_csu_type_lists(TYPE* type) {
  fkCSU* csu = type->sub.csu;
  if (!csu->bclasses.empty())
    write_listof_bclasses(type, csu->bclasses.head);
  if (!csu->adecls.empty())
    write_listof_adecls(type, csu->adecls.head);
  if (!csu->ffriends.empty())
    write_listof_ffriends(type, csu->ffriends.head);
  if (!csu->cfriends.empty())
    write_listof_cfriends(type, csu->cfriends.head);
  if (!csu->ntypes.empty())
    write_listof_ntypes(type, csu->ntypes.head);
  if (!csu->mdata.empty())
    write_listof_mdata(type, csu->mdata.head);
  if (!csu->sdata.empty())
    write_listof_sdata(type, csu->sdata.head);
  if (!csu->funcs.empty())
    write_listof_mfuncs(type, csu->funcs.head);
  if (!csu->params.empty())
    write_listof_params(type, csu->params.head);
}

// Writes a list: header, a record an element and trailer. `write_fields`
// writes the fields of an element behind the owner and the element's code.
template <class Node, class Write>
void I_FILE::write_type_list(TYPE* owner, int list_id, int element_code, Node* list,
                             Write write_fields) {
  auto frame = [&](int code) {
    i_write_typeref(owner);
    i_write_i8(code);
    i_write_i8(list_id);
    i_flush(iftag_type);
  };
  if constexpr (requires { list->type; }) {
    for (Node* node = list; node != nullptr; node = node->next)
      if_write_type(node->type);
  }
  frame(iftc_list_header);
  for (Node* node = list; node != nullptr; node = node->next) {
    i_write_typeref(owner);
    i_write_i8(element_code);
    write_fields(node);
    i_flush(iftag_type);
  }
  frame(iftc_list_trailer);
}

void I_FILE::write_listof_params(TYPE* owner, fkPARAM* list) {
  write_type_list(owner, ifl_params, iftc_param, list, [&](fkPARAM* param) {
    i_write_typeref(param->type);
    i_write_bool(false);
    i_write_uint(param->kind);
    i_write_string(param->text.c_str(), 0);
  });
}

void I_FILE::write_listof_etors(TYPE* owner, fkETOR* list) {
  bool is_signed = owner->is_signed();
  uint64_t mask = owner->size < 64 ? (uint64_t{1} << owner->size) - 1 : UINT64_MAX;
  write_type_list(owner, ifl_etors, iftc_enumerator, list, [&](fkETOR* etor) {
    i_write_string(etor->name.c_str(), 0);
    if (is_signed)
      i_write_sint(etor->value);
    else
      i_write_uint(static_cast<uint64_t>(etor->value) & mask);
    i_write_psn(etor->psn.get());
  });
}

void I_FILE::write_listof_bclasses(TYPE* owner, fkBCLASS* list) {
  write_type_list(owner, ifl_bclasses, iftc_bclass, list, [&](fkBCLASS* base) {
    i_write_typeref(base->type);
    i_write_sint(base->offset);
    i_write_i8(base->access);
    i_write_bool(base->is_virtual);
  });
}

void I_FILE::write_listof_adecls(TYPE* owner, fkADECL* list) {
  write_type_list(owner, ifl_adecls, iftc_adecl, list, [&](fkADECL* adecl) {
    i_write_uint(0);
    i_write_i8(adecl->kind);
  });
}

void I_FILE::write_listof_ffriends(TYPE* owner, fkFFRIEND* list) {
  write_type_list(owner, ifl_ffriends, iftc_ffriend, list, [&](fkFFRIEND* function) {
    i_write_string(function->name.c_str(), 0);
    i_write_typeref(function->type);
  });
}

void I_FILE::write_listof_cfriends(TYPE* owner, fkTYPE_ELEM* list) {
  write_type_list(owner, ifl_cfriends, iftc_cfriend, list,
                  [&](fkTYPE_ELEM* friend_class) { i_write_typeref(friend_class->type); });
}

void I_FILE::write_listof_ntypes(TYPE* owner, fkTYPE_ELEM* list) {
  write_type_list(owner, ifl_ntypes, iftc_ntype, list,
                  [&](fkTYPE_ELEM* nested) { i_write_typeref(nested->type); });
}

void I_FILE::write_listof_mdata(TYPE* owner, fkMDATA* list) {
  write_type_list(owner, ifl_mdata, iftc_mdata, list, [&](fkMDATA* member) {
    i_write_uint(member->number);
    i_write_string(member->name.c_str(), 0);
    i_write_typeref(member->type);
    i_write_i8(member->access);
    i_write_sint(member->bit_offset);
    i_write_i8(member->extra);
    i_write_uint(member->bit_width);
    i_write_bool(member->is_bitfield);
    i_write_bool(member->flag_1);
    i_write_bool(member->flag_2);
    i_write_psn(member->psn.get());
  });
}

void I_FILE::write_listof_sdata(TYPE* owner, fkSDATA* list) {
  write_type_list(owner, ifl_sdata, iftc_sdata, list, [&](fkSDATA* member) {
    i_write_string(member->name.c_str(), 0);
    i_write_typeref(member->type);
    i_write_i8(member->access);
  });
}

void I_FILE::write_listof_mfuncs(TYPE* owner, fkMFUNC* list) {
  write_type_list(owner, ifl_mfuncs, iftc_mfunc, list, [&](fkMFUNC* function) {
    i_write_string(function->name.c_str(), 0);
    i_write_typeref(function->type);
    i_write_i8(function->access);
    i_write_sint(function->virtual_index);
    for (bool flag : function->flags)
      i_write_bool(flag);
  });
}
