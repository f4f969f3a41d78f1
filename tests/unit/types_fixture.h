// Types made by hand, for the tests of the types module and of the printer.

#ifndef TYPES_FIXTURE_H
#define TYPES_FIXTURE_H

#include "front_end_fixture.h"
#include "il_constants.h"

class TYPES_TEST : public FrontEnd {
protected:
  static a_type* named(a_type* type, const char* name) {
    type->source_corresp.name = name;
    return type;
  }

  static a_type* make_struct(const char* name) {
    return named(alloc_type(tk_struct), name);
  }

  static a_type* make_enum(const char* name, an_integer_kind int_kind) {
    a_type* type = named(alloc_type(tk_integer), name);
    type->variant.integer.int_kind = int_kind;
    type->variant.integer.is_enum = 1;
    set_type_size(type);
    return type;
  }

  static a_type* old_style_routine(a_type* return_type) {
    return make_routine_type(return_type);
  }

  static a_type* with_ellipsis(a_type* routine_type) {
    routine_type->variant.routine.routine_supplement->has_ellipsis = 1;
    return routine_type;
  }

  static a_type* int_() {
    return integer_type(ik_int);
  }
  static a_type* char_() {
    return integer_type(ik_char);
  }
  static a_type* const_int() {
    return make_qualified_type(int_(), tq_const);
  }

  static std::string text(const a_type* type) {
    return type_as_string(type);
  }

  static void complete(a_type* type, uint64_t size) {
    type->size = size;
    type->is_incomplete = 0;
    process_dependent_type_fixups(type);
  }
};

#endif
