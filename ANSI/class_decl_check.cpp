// What is said of a class as a whole once its members are known.

#include "class_decl_int.h"

#include "error.h"
#include "il.h"
#include "mode_words.h"
#include "types.h"

// The texts "const %n" and "reference %n" of the lists of members.
static constexpr an_error_code text_const_member = 421;
static constexpr an_error_code text_reference_member = 422;

// ---- Members that a constructor alone could initialise ----

static bool needs_initializer(const a_field* field) {
  if (!field->source_corresp.symbol || field->has_default_init || field->is_bit_field)
    return false;
  a_type* type = field->type;
  return is_reference_type(type) || (is_const_qualified_type(skip_array_types(type)) &&
                                     !is_class_struct_union_type(skip_array_types(type)));
}

// Such members get a value from a braced initializer at most.
static void check_members_without_constructor(const a_type* class_type) {
  const a_class_type_supplement* supplement = class_supplement_of(class_type);
  if (supplement->has_user_constructor || class_type->kind == tk_union ||
      class_type->variant.class_struct_union.has_error_in_definition)
    return;
  a_diagnostic* diag = nullptr;
  for (const a_field* field = class_type->variant.class_struct_union.fields; field;
       field = field->next) {
    if (!needs_initializer(field))
      continue;
    if (!diag)
      diag = pos_ty_start_diagnostic(es_warning, ec_no_ctor_but_const_or_ref_member,
                                     &class_type->source_corresp.position, class_type);
    sym_add_diag_info(diag,
                      is_reference_type(field->type) ? text_reference_member : text_const_member,
                      field->source_corresp.symbol);
  }
  if (diag)
    end_diagnostic(diag);
}

// ---- Bases ----

// An object that is deleted through a pointer to such a base isn't destroyed.
static void check_destructors_of_bases(const a_type* class_type) {
  if (error_threshold >= 5)
    return;
  for (const a_base_class* base = class_supplement_of(class_type)->base_classes; base;
       base = base->next) {
    const a_routine* destructor = class_supplement_of(class_of_base(base))->destructor;
    if (base->is_direct && destructor && !destructor->is_virtual &&
        destructor->source_corresp.access == as_public)
      pos_ty_remark(ec_base_class_with_nonvirtual_dtor, &base->position, base->type);
  }
}

void check_members_of_complete_class(a_type* class_type) {
  check_members_without_constructor(class_type);
  check_destructors_of_bases(class_type);
}
