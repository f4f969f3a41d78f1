// A front end with an intermediate language that a test builds by hand.

#ifndef IL_FIXTURE_H
#define IL_FIXTURE_H

#include "front_end_fixture.h"

class IL_TEST : public FrontEnd {
protected:
  template <class T> static void append(T** link, T* entity) {
    while (*link != nullptr)
      link = &(*link)->next;
    *link = entity;
  }

  template <class T> static bool is_listed(T* head, T* entity) {
    while (head != nullptr && head != entity)
      head = head->next;
    return head != nullptr;
  }

  static void to_file_scope() {
    int32_t saved;
    switch_to_file_scope_region(&saved);
  }

  // A routine with a body of its own; its region is current afterwards.
  static a_routine* make_routine_with_body() {
    to_file_scope();
    a_routine* routine = alloc_routine();
    routine->type = make_routine_type_full(void_type());
    new_function_scope(take_next_scope_number(), routine, 0);
    return routine;
  }

  static a_type* file_struct(const char* name) {
    a_type* type = alloc_type(tk_struct);
    type->source_corresp.name = name;
    append(&il_header.primary_scope->types, type);
    return type;
  }

  static a_field* add_field(a_type* type, const char* name, a_type* field_type) {
    a_field* field = alloc_field(field_type);
    field->source_corresp.name = name;
    append(&type->variant.class_struct_union.fields, field);
    return field;
  }

  static a_variable* file_variable(const char* name, a_storage_kind storage_kind) {
    a_variable* variable = alloc_variable(storage_kind);
    variable->type = integer_type(ik_int);
    variable->source_corresp.name = name;
    variable->source_corresp.linkage = storage_kind == sc_static ? idl_internal : idl_external;
    append(&il_header.primary_scope->variables, variable);
    return variable;
  }

  // A function whose body is an empty block.
  static a_routine* function(const char* name, a_storage_kind storage_kind) {
    a_routine* routine = make_routine_with_body();
    routine->source_corresp.name = name;
    routine->storage_kind = storage_kind;
    routine->source_corresp.linkage = storage_kind == sc_static ? idl_internal : idl_external;
    a_scope* scope = scope_for_routine(routine);
    scope->assoc_statement = alloc_statement(stmk_block);
    set_routine_defined(routine);
    append(&il_header.primary_scope->routines, routine);
    to_file_scope();
    return routine;
  }

  static void use_in_body(a_routine* routine, an_expr_node* (*make)(void*), void* entity) {
    switch_il_region(routine->region_number);
    a_statement* block = scope_for_routine(routine)->assoc_statement;
    append(&block->variant.block.first_statement, alloc_expr_statement(make(entity)));
    to_file_scope();
  }

  static an_expr_node* variable_use(void* variable) {
    return var_lvalue_expr(static_cast<a_variable*>(variable));
  }
  static an_expr_node* routine_use(void* routine) {
    return function_lvalue_expr(static_cast<a_routine*>(routine));
  }
};

#endif
