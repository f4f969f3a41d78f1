// The pointer fields of every kind of entry: which of them lead to entries that
// are part of the graph below, and which only refer to something.

#include "il_walk_int.h"

#include "il.h"
#include "il_constants.h"
#include "il_expr.h"
#include "il_statements.h"
#include "il_types.h"
#include "source_file.h"

namespace {

void visit(a_source_correspondence& head, FIELD_VISITOR& v) {
  v.front_end(head.symbol);
  v.text(head.name, iek_name_text);
  v.text(head.source_name, iek_name_text);
  v.front_end(head.trans_unit_corresp);
  v.sideways(head.parent_scope, iek_scope);
  v.sideways(head.enclosing_routine, iek_routine);
  v.child(head.decl_position_supplement, iek_decl_position_supplement);
  v.child(head.name_reference, iek_name_reference);
  v.list(head.attributes, iek_attribute);
}

void visit(a_scope& scope, FIELD_VISITOR& v) {
  v.sideways(scope.prev, iek_scope);
  v.sideways(scope.parent, iek_scope);
  switch (scope.kind) {
  case sk_function_prototype:
  case sk_class:
  case sk_enum:
    v.sideways(scope.assoc.type, iek_type);
    break;
  case sk_namespace:
    v.sideways(scope.assoc.namespace_entry, iek_namespace);
    break;
  case sk_function:
    v.sideways(scope.assoc.routine, iek_routine);
    break;
  default:
    break;
  }
  v.list(scope.parameters, iek_variable);
  v.list(scope.ctor_inits, iek_constructor_init);
  v.child(scope.first_lifetime, iek_object_lifetime);
  v.child(scope.this_variable, iek_variable);
  v.child(scope.return_variable, iek_variable);
  // The blocks of nested scopes are reached through the function's body.
  if (scope.kind == sk_function)
    v.child(scope.assoc_statement, iek_statement);
  else
    v.sideways(scope.assoc_statement, iek_statement);
  v.child(scope.object_lifetime, iek_object_lifetime);
  v.list(scope.constants, iek_constant);
  v.list(scope.types, iek_type);
  v.list(scope.variables, iek_variable);
  v.list(scope.local_variables, iek_variable);
  v.list(scope.labels, iek_label);
  v.list(scope.routines, iek_routine);
  v.list(scope.asm_entries, iek_asm_entry);
  v.list(scope.first_nested, iek_scope);
  v.list(scope.namespaces, iek_namespace);
  v.list(scope.using_decls, iek_using_decl);
  v.list(scope.dynamic_inits, iek_dynamic_init);
  v.list(scope.local_static_inits, iek_local_static_variable_init);
  v.list(scope.vla_dimensions, iek_vla_dimension);
  v.list(scope.local_expr_refs, iek_local_expr_node_ref);
  v.list(scope.local_scope_refs, iek_local_scope_ref);
  v.list(scope.pragmas, iek_pragma);
  v.list(scope.templates, iek_template);
}

void visit_initializer(an_init_kind kind, void*& initializer, FIELD_VISITOR& v) {
  if (kind == initk_constant)
    v.child(initializer, iek_constant);
  else if (kind == initk_dynamic)
    v.child(initializer, iek_dynamic_init);
}

void visit(a_variable& variable, FIELD_VISITOR& v) {
  visit(variable.source_corresp, v);
  v.child(variable.type, iek_type);
  v.sideways(variable.param_type, iek_param_type);
  v.child(variable.declared_type_info, iek_type);
  if (variable.holds_asm_name)
    v.text(variable.asm_name.text, iek_other_text);
  v.sideways(variable.template_parent, iek_routine);
  visit_initializer(variable.init_kind, variable.initializer.generic, v);
  v.list(variable.decl_entities, iek_il_entity_list_entry);
  v.child(variable.template_info, iek_variable_template_info);
  v.child(variable.alias_of, iek_variable);
  v.text(variable.comdat_name, iek_other_text);
  v.sideways(variable.next_same_name, iek_variable);
  v.child(variable.named_register, iek_named_register);
  if (variable.section_info != nullptr)
    v.text(variable.section_info->text, iek_other_text);
  v.front_end(variable.file_symbol);
  v.front_end(variable.previous);
}

void visit(a_routine& routine, FIELD_VISITOR& v) {
  visit(routine.source_corresp, v);
  v.child(routine.type, iek_type);
  switch (routine.special_kind) {
  case rsk_constructor:
  case rsk_destructor:
    v.list(routine.special_data.ctor.related, iek_routine_list_entry);
    v.sideways(routine.special_data.ctor.complete_form, iek_routine);
    break;
  case rsk_conversion:
    v.child(routine.special_data.conversion_target, iek_type);
    break;
  case rsk_literal_operator:
    v.text(routine.special_data.literal_suffix, iek_other_text);
    break;
  case rsk_forwarding:
    v.child(routine.special_data.forwarded_routine, iek_routine);
    break;
  default:
    break;
  }
  v.list(routine.friend_classes, iek_class_list_entry);
  v.list(routine.template_args, iek_template_arg);
  v.child(routine.assoc_template, iek_template);
  v.child(routine.gnu_supplement, iek_routine_gnu_supplement);
  v.sideways(routine.prev_overload_root, iek_routine);
  v.sideways(routine.definition_of, iek_routine);
  v.child(routine.wrapper_of, iek_routine);
  if (routine.section_info != nullptr)
    v.text(routine.section_info->text, iek_other_text);
  v.sideways(routine.using_decl, iek_using_decl);
  v.front_end(routine.file_symbol);
}

void visit(a_routine_gnu_supplement& supplement, FIELD_VISITOR& v) {
  v.text(supplement.alias_target, iek_other_text);
  v.child(supplement.alias_routine, iek_routine);
  v.text(supplement.asm_name, iek_other_text);
  v.text(supplement.comdat_name, iek_other_text);
}

void visit(a_field& field, FIELD_VISITOR& v) {
  visit(field.source_corresp, v);
  v.child(field.type, iek_type);
  v.child(field.default_init, iek_dynamic_init);
  v.list(field.attributes_list, iek_il_entity_list_entry);
  v.child(field.constant_value, iek_constant);
  v.front_end(field.file_member);
}

void visit(a_param_type& param, FIELD_VISITOR& v) {
  v.child(param.type, iek_type);
  v.child(param.declared_type, iek_type);
  v.text(param.name, iek_name_text);
  v.child(param.default_arg_expr, iek_expr_node);
  v.list(param.decl_entities, iek_il_entity_list_entry);
  v.child(param.decl_position_supplement, iek_decl_position_supplement);
  v.list(param.attributes, iek_attribute);
}

// --- Types.

void visit_integer(an_integer_type_variant& integer, FIELD_VISITOR& v) {
  if (integer.is_scoped_enum)
    v.child(integer.enum_data.scope, iek_scope);
  else if (integer.is_enum)
    v.list(integer.enum_data.first_enumerator, iek_constant);
  else
    v.child(integer.enum_data.base_type, iek_type);
  v.child(integer.integer_supplement, iek_integer_type_supplement);
}

void visit_array(an_array_type_variant& array, FIELD_VISITOR& v) {
  v.child(array.element_type, iek_type);
  if (array.bound_is_constant)
    v.child(array.bound.dependent_constant, iek_constant);
  else if (array.bound_is_expr)
    v.child(array.bound.expr, iek_expr_node);
  v.child(array.bound_constant, iek_constant);
}

void visit(a_type& type, FIELD_VISITOR& v) {
  visit(type.source_corresp, v);
  // The types derived from this one are found again from it, and don't belong
  // to it.
  v.front_end(type.based_types);
  v.sideways(type.lowering_variable, iek_variable);
  auto& variant = type.variant;
  switch (type.kind) {
  case tk_integer:
    visit_integer(variant.integer, v);
    break;
  case tk_pointer:
    v.child(variant.pointer.referenced_type, iek_type);
    break;
  case tk_routine:
    v.child(variant.routine.return_type, iek_type);
    v.child(variant.routine.routine_supplement, iek_routine_type_supplement);
    break;
  case tk_array:
    visit_array(variant.array, v);
    break;
  case tk_class:
  case tk_struct:
  case tk_union:
    v.list(variant.class_struct_union.fields, iek_field);
    v.child(variant.class_struct_union.class_supplement, iek_class_type_supplement);
    break;
  case tk_typeref:
    v.child(variant.typeref.referenced_type, iek_type);
    v.child(variant.typeref.typeref_supplement, iek_typeref_type_supplement);
    break;
  case tk_ptr_to_member:
    v.child(variant.ptr_to_member.class_type, iek_type);
    v.child(variant.ptr_to_member.member_type, iek_type);
    break;
  case tk_template_param:
    v.child(variant.template_param.template_param_supplement, iek_template_param_type_supplement);
    break;
  default:
    break;
  }
  v.front_end(type.lowered_file_type);
  v.front_end(type.source_file_type);
}

void visit(an_integer_type_supplement& supplement, FIELD_VISITOR& v) {
  v.child(supplement.underlying_type, iek_type);
  v.sideways(supplement.enumerator_scope, iek_scope);
  v.child(supplement.assoc_template, iek_template);
}

void visit(a_routine_type_supplement& supplement, FIELD_VISITOR& v) {
  v.list(supplement.param_types, iek_param_type);
  v.sideways(supplement.definition, iek_routine);
  v.sideways(supplement.this_class, iek_type);
  v.child(supplement.prototype_scope, iek_scope);
  v.child(supplement.exception_specification, iek_exception_specification);
}

void visit(a_class_type_supplement& supplement, FIELD_VISITOR& v) {
  v.list(supplement.base_classes, iek_base_class);
  v.sideways(supplement.primary_base, iek_base_class);
  v.sideways(supplement.virtual_base, iek_base_class);
  v.list(supplement.constructors, iek_routine_list_entry);
  v.sideways(supplement.destructor, iek_routine);
  v.list(supplement.conversions, iek_routine_list_entry);
  v.sideways(supplement.assoc_operator_delete, iek_routine);
  v.list(supplement.friends, iek_class_list_entry);
  v.list(supplement.friend_routines, iek_routine_list_entry);
  v.sideways(supplement.member_functions, iek_routine);
  v.child(supplement.scope, iek_scope);
  v.child(supplement.assoc_template, iek_template);
  v.list(supplement.template_args, iek_template_arg);
  v.list(supplement.partial_template_args, iek_template_arg);
  v.sideways_of_kind(supplement.assoc_entity.generic, supplement.assoc_entity_kind);
  v.sideways(supplement.virtual_function_table, iek_variable);
  v.sideways(supplement.typeinfo_variable, iek_variable);
  v.sideways(supplement.proxy_of, iek_type);
  v.child(supplement.lambda, iek_lambda);
}

void visit(a_template_param_type_supplement& supplement, FIELD_VISITOR& v) {
  v.sideways(supplement.param, iek_template_param);
  v.sideways(supplement.proxy_class, iek_type);
  v.child(supplement.deduced_type, iek_type);
}

void visit(a_typeref_type_supplement& supplement, FIELD_VISITOR& v) {
  v.list(supplement.template_args, iek_template_arg);
  v.list(supplement.template_args_2, iek_template_arg);
  v.child(supplement.assoc_template, iek_template);
  v.child(supplement.decltype_expr, iek_expr_node);
  v.child(supplement.underlying_type, iek_type);
}

// --- Constants and expressions.

void visit_template_param_value(a_template_param_value& value, FIELD_VISITOR& v) {
  switch (value.param_kind) {
  case tpck_expression:
    v.child(value.param_data.expr, iek_expr_node);
    break;
  case tpck_proxy_nontype:
  case tpck_type:
    v.child(value.param_data.type, iek_type);
    break;
  case tpck_cast:
  case tpck_implicit_cast:
    v.child(value.param_data.constant, iek_constant);
    break;
  case tpck_sizeof:
  case tpck_alignof:
  case tpck_uuidof:
  case tpck_typeid:
  case tpck_noexcept:
    v.child(value.param_data.type, iek_type);
    v.child(value.param_expr.expr, iek_expr_node);
    break;
  case tpck_unknown_function:
    v.child(value.param_data.constant, iek_constant);
    v.list(value.param_expr.template_args, iek_template_arg);
    break;
  case tpck_invalid:
  case tpck_param_ref:
    break;
  }
}

void visit_address_value(an_address_value& value, FIELD_VISITOR& v) {
  switch (value.base_kind) {
  case abk_routine:
    v.child(value.base.routine, iek_routine);
    break;
  case abk_variable:
    v.child(value.base.variable, iek_variable);
    break;
  case abk_constant:
  case abk_temporary:
    v.child(value.base.constant, iek_constant);
    break;
  case abk_uuid:
  case abk_typeid:
    v.child(value.base.type, iek_type);
    break;
  case abk_label:
    v.child(value.base.label, iek_label);
    break;
  }
  v.list(value.subobject_path, iek_subobject_path);
}

void visit_designator_value(a_designator_value& value, FIELD_VISITOR& v) {
  if (value.is_field && value.is_text_or_index)
    v.text(value.designated.field_name, iek_other_text);
  else if (value.is_field)
    v.sideways(value.designated.field, iek_field);
  else
    v.child(value.designated.index, iek_constant);
}

void visit(a_constant& constant, FIELD_VISITOR& v) {
  visit(constant.source_corresp, v);
  v.child(constant.type, iek_type);
  v.child(constant.orig_type, iek_type);
  v.child(constant.source_expr, iek_expr_node);
  v.front_end(constant.template_arg_info);
  v.front_end(constant.ref_symbol);
  auto& value = constant.value;
  switch (constant.kind) {
  case con_string:
    v.sized_text(value.string.text, value.string.length, iek_string_literal_text);
    break;
  case con_complex:
    v.child(value.complex_value, iek_complex_value);
    break;
  case con_address:
    visit_address_value(value.address, v);
    break;
  case con_ptr_to_member:
    v.list(value.ptr_to_member.base_class_path, iek_derivation_step);
    v.child(value.ptr_to_member.name_reference, iek_name_reference);
    if (value.ptr_to_member.is_routine)
      v.child(value.ptr_to_member.member.routine, iek_routine);
    else
      v.sideways(value.ptr_to_member.member.field, iek_field);
    break;
  case con_address_difference:
    v.child(value.address_difference.minuend, iek_constant);
    v.child(value.address_difference.subtrahend, iek_constant);
    break;
  case con_dynamic_init:
    v.child(value.dynamic_init, iek_dynamic_init);
    break;
  case con_aggregate:
    v.list(value.aggregate.first, iek_constant);
    v.sideways(value.aggregate.last, iek_constant);
    break;
  case con_repeat:
    v.child(value.repeat.element, iek_constant);
    break;
  case con_template_param:
    visit_template_param_value(value.template_param, v);
    break;
  case con_designator:
    visit_designator_value(value.designator, v);
    break;
  default:
    break;
  }
}

void visit_expr_variant(an_expr_node& node, FIELD_VISITOR& v) {
  auto& variant = node.variant;
  switch (node.kind) {
  case expr_operation:
    v.list(variant.operation.operands, iek_expr_node);
    break;
  case expr_constant:
    v.child(variant.constant.ptr, iek_constant);
    v.child(variant.constant.name_reference, iek_name_reference);
    break;
  case expr_variable:
  case expr_vla_dealloc:
    v.child(variant.variable.ptr, iek_variable);
    v.child(variant.variable.name_reference, iek_name_reference);
    break;
  case expr_field:
    v.sideways(variant.field.ptr, iek_field);
    v.child(variant.field.name_reference, iek_name_reference);
    break;
  case expr_routine:
    v.child(variant.routine.ptr, iek_routine);
    v.child(variant.routine.name_reference, iek_name_reference);
    break;
  case expr_type_only:
    v.child(variant.type_only.ptr, iek_type);
    v.child(variant.type_only.name_reference, iek_name_reference);
    break;
  case expr_temp_init:
  case expr_reuse_value:
    v.child(variant.dynamic_init, iek_dynamic_init);
    break;
  case expr_new_delete:
    v.child(variant.new_delete, iek_new_delete_supplement);
    break;
  case expr_lambda:
    v.child(variant.lambda.ptr, iek_lambda);
    v.child(variant.lambda.dynamic_init, iek_dynamic_init);
    break;
  case expr_throw:
    v.child(variant.throw_info, iek_throw_supplement);
    break;
  case expr_condition:
    v.child(variant.condition, iek_condition_supplement);
    break;
  case expr_with_lifetime:
    v.child(variant.with_lifetime.expr, iek_expr_node);
    v.child(variant.with_lifetime.object_lifetime, iek_object_lifetime);
    break;
  case expr_typed_expr:
    v.child(variant.typed_expr.type, iek_type);
    v.child(variant.typed_expr.expr, iek_expr_node);
    break;
  case expr_sizeof_like:
  case expr_alignof_like:
  case expr_typeid_like:
    if (variant.sizeof_like.is_type)
      v.child(variant.sizeof_like.operand.type, iek_type);
    else
      v.child(variant.sizeof_like.operand.expr, iek_expr_node);
    break;
  case expr_statement:
    v.child(variant.statement, iek_statement);
    break;
  case expr_dependent_op:
    v.list(variant.dependent_op.operands, iek_expr_node);
    break;
  case expr_braced_list:
    v.list(variant.braced_list, iek_expr_node);
    break;
  case expr_with_list:
    v.list(variant.with_list.list, iek_expr_node);
    v.child(variant.with_list.expr, iek_expr_node);
    break;
  case expr_call_like:
    v.list(variant.call_like.list, iek_expr_node);
    break;
  default:
    break;
  }
}

void visit(an_expr_node& node, FIELD_VISITOR& v) {
  v.child(node.type, iek_type);
  v.child(node.orig_type, iek_type);
  visit_expr_variant(node, v);
  v.front_end(node.rescan_info);
}

void visit(a_new_delete_supplement& supplement, FIELD_VISITOR& v) {
  v.child(supplement.type, iek_type);
  v.child(supplement.routine, iek_routine);
  v.list(supplement.arg_list, iek_expr_node);
  v.child(supplement.dynamic_init, iek_dynamic_init);
  v.child(supplement.delete_dynamic_init, iek_dynamic_init);
  v.list(supplement.placement_expr, iek_expr_node);
}

void visit(a_throw_supplement& supplement, FIELD_VISITOR& v) {
  v.child(supplement.type, iek_type);
  v.child(supplement.dynamic_init, iek_dynamic_init);
  v.child(supplement.destructor, iek_routine);
}

void visit(a_condition_supplement& supplement, FIELD_VISITOR& v) {
  v.sideways(supplement.scope, iek_scope);
  v.child(supplement.dynamic_init, iek_dynamic_init);
  v.child(supplement.value_expr, iek_expr_node);
}

void visit(a_subobject_path& step, FIELD_VISITOR& v) {
  switch (step.kind) {
  case iek_field:
    v.sideways(step.step.field, iek_field);
    break;
  case iek_base_class:
    v.sideways(step.step.base_class, iek_base_class);
    break;
  case iek_type:
    v.child(step.step.array_type, iek_type);
    break;
  default:
    break;
  }
}

// --- Statements.

void visit_statement_variant(a_statement& statement, FIELD_VISITOR& v) {
  auto& variant = statement.variant;
  switch (statement.kind) {
  case stmk_if:
    v.child(variant.if_stmt.then_statement, iek_statement);
    v.child(variant.if_stmt.else_statement, iek_statement);
    break;
  case stmk_while:
  case stmk_do:
    v.child(variant.loop.body, iek_statement);
    break;
  case stmk_for:
    v.child(variant.loop.body, iek_statement);
    v.child(variant.loop.extra.for_supplement, iek_for_loop_supplement);
    break;
  case stmk_range_for:
    v.child(variant.loop.body, iek_statement);
    v.child(variant.loop.extra.range_for_supplement, iek_range_based_for_supplement);
    break;
  case stmk_case:
    v.child(variant.loop.body, iek_statement);
    v.sideways(variant.loop.extra.switch_case_entry, iek_switch_case_entry);
    break;
  case stmk_switch:
    v.child(variant.loop.body, iek_statement);
    v.child(variant.loop.extra.switch_supplement, iek_switch_stmt_supplement);
    break;
  case stmk_goto:
  case stmk_label:
    v.child(variant.label.ptr, iek_label);
    v.child(variant.label.name_reference, iek_name_reference);
    break;
  case stmk_return:
  case stmk_stmt_expr_value:
    v.child(variant.return_init, iek_dynamic_init);
    break;
  case stmk_block:
    v.list(variant.block.first_statement, iek_statement);
    v.child(variant.block.block_supplement, iek_block_supplement);
    break;
  case stmk_init:
    v.child(variant.dynamic_init, iek_dynamic_init);
    break;
  case stmk_asm:
    v.child(variant.asm_entry, iek_asm_entry);
    break;
  case stmk_try:
    v.child(variant.try_supplement, iek_try_supplement);
    break;
  case stmk_decl:
    v.list(variant.declarations, iek_il_entity_list_entry);
    break;
  case stmk_set_vla_size:
    v.sideways(variant.vla_dimension, iek_vla_dimension);
    break;
  case stmk_vla_decl:
    v.child(variant.vla_decl.variable, iek_variable);
    break;
  default:
    break;
  }
}

void visit(a_statement& statement, FIELD_VISITOR& v) {
  v.sideways(statement.parent, iek_statement);
  v.list(statement.attributes, iek_attribute);
  v.child(statement.expr, iek_expr_node);
  visit_statement_variant(statement, v);
  v.list(statement.pre_statement, iek_statement);
}

// The scopes of statements are reached as the nested scopes of a scope.
void visit(a_block_supplement& supplement, FIELD_VISITOR& v) {
  v.sideways(supplement.scope, iek_scope);
  v.sideways(supplement.object_lifetime, iek_object_lifetime);
}

void visit(a_for_loop_supplement& supplement, FIELD_VISITOR& v) {
  v.list(supplement.init_statement, iek_statement);
  v.child(supplement.increment_expr, iek_expr_node);
  v.sideways(supplement.scope, iek_scope);
  v.list(supplement.pre_increment_statement, iek_statement);
  v.list(supplement.pre_condition_statement, iek_statement);
}

void visit(a_range_based_for_supplement& supplement, FIELD_VISITOR& v) {
  v.child(supplement.range_variable, iek_variable);
  v.child(supplement.begin_variable, iek_variable);
  v.sideways(supplement.range_scope, iek_scope);
  v.sideways(supplement.iterator_scope, iek_scope);
  v.sideways(supplement.body_scope, iek_scope);
  v.child(supplement.end_variable, iek_variable);
  v.child(supplement.next_variable, iek_variable);
  v.child(supplement.condition_expr, iek_expr_node);
  v.child(supplement.increment_expr, iek_expr_node);
}

void visit(a_switch_stmt_supplement& supplement, FIELD_VISITOR& v) {
  v.list(supplement.first_case, iek_switch_case_entry, &a_switch_case_entry::next_in_source_order);
  v.sideways(supplement.default_case, iek_switch_case_entry);
  v.sideways(supplement.sorted_cases, iek_switch_case_entry);
}

void visit(a_switch_case_entry& entry, FIELD_VISITOR& v) {
  v.sideways(entry.statement, iek_statement);
  v.child(entry.case_value, iek_constant);
  v.child(entry.case_range_end, iek_constant);
  v.sideways(entry.next_sorted, iek_switch_case_entry);
}

void visit(a_try_supplement& supplement, FIELD_VISITOR& v) {
  v.sideways(supplement.object_lifetime_scope, iek_scope);
  v.child(supplement.try_block, iek_statement);
  v.list(supplement.handlers, iek_handler);
  v.sideways(supplement.lifetime, iek_object_lifetime);
}

void visit(a_handler& handler, FIELD_VISITOR& v) {
  v.child(handler.parameter, iek_variable);
  v.child(handler.body, iek_statement);
  v.child(handler.parameter_init, iek_dynamic_init);
}

void visit(a_vla_dimension& dimension, FIELD_VISITOR& v) {
  v.child(dimension.array_type, iek_type);
  v.child(dimension.size_expr, iek_expr_node);
  v.child(dimension.size_variable, iek_variable);
  v.sideways(dimension.canonical, iek_vla_dimension);
}

void visit(a_dynamic_init& init, FIELD_VISITOR& v) {
  v.child(init.variable, iek_variable);
  v.child(init.destructor, iek_routine);
  v.sideways(init.lifetime, iek_object_lifetime);
  v.sideways(init.next_destruction, iek_dynamic_init);
  v.sideways(init.following_lifetime, iek_object_lifetime);
  switch (init.kind) {
  case dik_constant:
  case dik_nonconstant_aggregate:
    v.child(init.variant.constant, iek_constant);
    break;
  case dik_expr:
  case dik_class_expr:
  case dik_bitwise_copy:
    v.child(init.variant.expr, iek_expr_node);
    break;
  case dik_constructor:
    v.child(init.variant.constructor.routine, iek_routine);
    v.list(init.variant.constructor.args, iek_expr_node);
    break;
  default:
    break;
  }
  v.sideways(init.source_lifetime, iek_object_lifetime);
  v.child(init.guard, iek_variable);
  v.sideways(init.next_aggregate_part, iek_dynamic_init);
  v.sideways(init.partial_cleanup_next, iek_dynamic_init);
  v.child(init.array_count_expr, iek_expr_node);
  v.child(init.promoted_variable, iek_variable);
}

void visit(a_local_static_variable_init& init, FIELD_VISITOR& v) {
  v.child(init.variable, iek_variable);
  visit_initializer(init.init_kind, init.initializer.generic, v);
  v.sideways(init.lifetime, iek_object_lifetime);
}

void visit(an_object_lifetime& lifetime, FIELD_VISITOR& v) {
  v.sideways_of_kind(lifetime.assoc.entry, lifetime.assoc_kind);
  v.sideways(lifetime.destructions, iek_dynamic_init);
  v.sideways(lifetime.parent, iek_object_lifetime);
  v.sideways(lifetime.first_destruction_at_entry, iek_dynamic_init);
  v.list(lifetime.first_child, iek_object_lifetime, &an_object_lifetime::next_sibling);
}

// --- The rest.

void visit(a_label& label, FIELD_VISITOR& v) {
  visit(label.source_corresp, v);
  v.sideways(label.first_goto, iek_statement);
  v.sideways(label.def_statement, iek_statement);
  v.front_end(label.file_symbol);
}

void visit(a_namespace& entry, FIELD_VISITOR& v) {
  visit(entry.source_corresp, v);
  if (entry.is_alias)
    v.sideways(entry.variant.aliased, iek_namespace);
  else
    v.child(entry.variant.scope, iek_scope);
  v.front_end(entry.pointers_block);
}

void visit(a_using_decl& using_decl, FIELD_VISITOR& v) {
  v.sideways_of_kind(using_decl.entity, using_decl.entity_kind);
  v.list(using_decl.attributes, iek_attribute);
  v.child(using_decl.name_reference, iek_name_reference);
  v.sideways(using_decl.parent_scope, iek_scope);
}

void visit(an_exception_specification& specification, FIELD_VISITOR& v) {
  v.child(specification.noexcept_constant, iek_constant);
  v.list(specification.types, iek_exception_specification_type);
  v.front_end(specification.deferred_tokens);
}

void visit(an_exception_specification_type& entry, FIELD_VISITOR& v) {
  v.child(entry.type, iek_type);
}

void visit(a_derivation_step& step, FIELD_VISITOR& v) {
  v.sideways(step.base_class, iek_base_class);
}

void visit(a_base_class_derivation& derivation, FIELD_VISITOR& v) {
  v.list(derivation.path, iek_derivation_step);
}

void visit(a_base_class& base, FIELD_VISITOR& v) {
  v.child(base.type, iek_type);
  v.sideways(base.derived_class, iek_type);
  v.sideways(base.pointer_field, iek_field);
  v.list(base.derivations, iek_base_class_derivation);
  v.list(base.overriding_functions, iek_overriding_virtual_function);
  v.list(base.vcall_offsets, iek_vcall_offset_entry);
  v.sideways(base.primary_base, iek_base_class);
  v.list(base.attributes, iek_attribute);
}

void visit(a_vcall_offset_entry& entry, FIELD_VISITOR& v) {
  v.sideways(entry.routine, iek_routine);
}

void visit(an_overriding_virtual_function& entry, FIELD_VISITOR& v) {
  v.sideways(entry.overridden, iek_routine);
  v.sideways(entry.overrider, iek_routine);
  v.sideways(entry.base_class, iek_base_class);
  v.sideways(entry.adjustment_base, iek_base_class);
  v.sideways(entry.return_adjustment_base, iek_base_class);
}

void visit(a_class_list_entry& entry, FIELD_VISITOR& v) {
  v.sideways(entry.class_type, iek_type);
}

void visit(a_routine_list_entry& entry, FIELD_VISITOR& v) {
  v.sideways(entry.routine, iek_routine);
}

void visit(a_constructor_init& init, FIELD_VISITOR& v) {
  if (init.kind == iek_field)
    v.sideways(init.variant.field, iek_field);
  else
    v.sideways(init.variant.base_class, iek_base_class);
  v.child(init.initializer, iek_dynamic_init);
}

void visit(an_asm_entry& entry, FIELD_VISITOR& v) {
  visit(entry.source_corresp, v);
  v.child(entry.text, iek_constant);
  v.list(entry.operands, iek_asm_operand);
  v.list(entry.clobbers, iek_named_register);
  v.list(entry.labels, iek_label_list_entry);
}

void visit(an_asm_operand& operand, FIELD_VISITOR& v) {
  v.text(operand.name, iek_name_text);
  v.text(operand.constraint, iek_other_text);
  v.child(operand.expr, iek_expr_node);
}

void visit(a_named_register& entry, FIELD_VISITOR& v) {
  if (entry.kind == nrk_text)
    v.text(entry.value.text, iek_other_text);
}

void visit(a_label_list_entry& entry, FIELD_VISITOR& v) {
  v.child(entry.label, iek_label);
}

void visit(a_template_arg& arg, FIELD_VISITOR& v) {
  if (arg.kind == tak_type)
    v.child(arg.value.type, iek_type);
  else if (arg.kind == tak_constant && !arg.is_number)
    v.child(arg.value.constant, iek_constant);
  else if (arg.kind == tak_template)
    v.front_end(arg.value.template_symbol);
  v.front_end(arg.operand);
}

void visit(a_scope_orphaned_list& header, FIELD_VISITOR& v) {
  v.sideways(header.routine, iek_routine);
  v.list(header.types, iek_type);
  v.list(header.variables, iek_variable);
  v.list(header.namespaces, iek_namespace);
}

void visit(a_pragma& pragma, FIELD_VISITOR& v) {
  v.sideways_of_kind(pragma.entity, pragma.entity_kind);
  v.text(pragma.argument_text, iek_other_text);
  v.front_end(pragma.pragma_object);
}

void visit(a_template& templ, FIELD_VISITOR& v) {
  visit(templ.source_corresp, v);
  v.list(templ.decl, iek_template_decl);
  v.sideways(templ.canonical, iek_template);
  v.sideways(templ.previous, iek_template);
  v.text(templ.text, iek_other_text);
}

void visit(a_macro& macro, FIELD_VISITOR& v) {
  visit(macro.source_corresp, v);
  v.text(macro.text, iek_other_text);
}

void visit(an_element_position& position, FIELD_VISITOR& v) {
  v.list(position.elements, iek_element_position);
}

void visit(a_template_decl& decl, FIELD_VISITOR& v) {
  v.list(decl.params, iek_template_param);
  v.sideways(decl.scope, iek_scope);
}

void visit(a_template_param& param, FIELD_VISITOR& v) {
  visit(param.source_corresp, v);
  v.front_end(param.symbol);
  v.front_end(param.template_cache);
  v.front_end(param.default_arg_cache);
  v.child(param.default_arg_value, iek_template_arg);
  if (param.kind == tak_type)
    v.child(param.variant.type, iek_type);
  else if (param.kind == tak_constant)
    v.child(param.variant.constant, iek_constant);
  else
    v.child(param.variant.templ, iek_template);
}

void visit(a_name_reference& reference, FIELD_VISITOR& v) {
  v.list(reference.qualifiers, iek_name_qualifier);
  v.list(reference.template_args, iek_template_arg);
  v.sideways(reference.found_through, iek_namespace);
}

void visit(a_name_qualifier& qualifier, FIELD_VISITOR& v) {
  v.sideways_of_kind(qualifier.variant.generic, qualifier.kind);
  v.list(qualifier.template_args, iek_template_arg);
}

void visit(a_source_file& file, FIELD_VISITOR& v) {
  v.text(file.file_name, iek_other_text);
  v.text(file.full_name, iek_other_text);
  v.text(file.name_as_written, iek_other_text);
  v.list(file.first_child, iek_source_file);
  v.sideways(file.last_child, iek_source_file);
}

void visit(a_seq_number_lookup_entry& entry, FIELD_VISITOR& v) {
  v.sideways(entry.source_file, iek_source_file);
  v.sideways(entry.physical_file, iek_source_file);
}

an_il_entry_kind kind_of_owner(a_local_expr_ref_kind kind) {
  switch (kind) {
  case lek_constant_backing_expr:
  case lek_constant_param_expr:
    return iek_constant;
  case lek_field:
    return iek_field;
  default:
    return iek_type;
  }
}

void visit(a_local_expr_node_ref& ref, FIELD_VISITOR& v) {
  v.sideways_of_kind(ref.owner.entity, kind_of_owner(ref.kind));
  v.child(ref.expr, iek_expr_node);
}

void visit(a_local_scope_ref& ref, FIELD_VISITOR& v) {
  v.sideways(ref.scope, iek_scope);
  v.sideways_of_kind(ref.entity, ref.entity_kind);
}

void visit(an_il_entity_list_entry& entry, FIELD_VISITOR& v) {
  v.child_of_kind(entry.entity, entry.entity_kind);
}

void visit(a_lambda& lambda, FIELD_VISITOR& v) {
  v.child(lambda.closure_type, iek_type);
  v.list(lambda.captures, iek_lambda_capture);
  v.sideways(lambda.body_routine, iek_routine);
}

void visit(a_lambda_capture& capture, FIELD_VISITOR& v) {
  v.sideways(capture.variable, iek_variable);
  v.sideways(capture.init_capture_field, iek_field);
  v.sideways(capture.field, iek_field);
  v.child(capture.initializer, iek_dynamic_init);
}

void visit(an_attribute& attribute, FIELD_VISITOR& v) {
  v.text(attribute.name, iek_name_text);
  v.text(attribute.namespace_name, iek_name_text);
  v.list(attribute.arguments, iek_attribute_arg);
  v.child(attribute.group, iek_attribute_group);
  v.front_end(attribute.pack);
}

void visit(an_attribute_arg& arg, FIELD_VISITOR& v) {
  switch (arg.arg_kind) {
  case aak_tokens:
    v.front_end(arg.value.tokens);
    break;
  case aak_string:
  case aak_name:
    v.text(arg.value.text, iek_other_text);
    break;
  case aak_constant:
    v.child(arg.value.constant, iek_constant);
    break;
  case aak_type:
    v.child(arg.value.type, iek_type);
    break;
  case aak_expression:
    v.child(arg.value.expr, iek_expr_node);
    break;
  }
  v.front_end(arg.pack);
}

void visit(a_variable_template_info& info, FIELD_VISITOR& v) {
  v.child(info.assoc_template, iek_template);
  v.list(info.template_args, iek_template_arg);
  v.sideways(info.prototype, iek_variable);
  v.list(info.partial_args, iek_template_arg);
}

template <class T> void visit_as(void* entry, FIELD_VISITOR& v) {
  visit(*static_cast<T*>(entry), v);
}

void visit_leaf(void*, FIELD_VISITOR&) {}

// One row for each kind of entry, in the order of the kinds.
void (*const visit_functions[last_il_entry_kind + 1])(void*, FIELD_VISITOR&) = {
    visit_leaf, // no entry
    visit_as<a_source_file>,
    visit_as<a_constant>,
    visit_as<a_param_type>,
    visit_as<a_routine_type_supplement>,
    visit_leaf, // based type list member
    visit_as<a_type>,
    visit_as<a_variable>,
    visit_as<a_field>,
    visit_as<an_exception_specification>,
    visit_as<an_exception_specification_type>,
    visit_as<a_routine>,
    visit_as<a_label>,
    visit_as<an_expr_node>,
    visit_as<a_for_loop_supplement>,
    visit_as<a_range_based_for_supplement>,
    visit_as<a_switch_case_entry>,
    visit_as<a_switch_stmt_supplement>,
    visit_as<a_handler>,
    visit_as<a_try_supplement>,
    visit_as<a_block_supplement>,
    visit_as<a_statement>,
    visit_as<an_object_lifetime>,
    visit_as<a_scope>,
    visit_leaf, // texts
    visit_leaf,
    visit_leaf,
    visit_leaf, // complex value pair
    visit_as<a_namespace>,
    visit_as<a_using_decl>,
    visit_as<a_dynamic_init>,
    visit_as<a_local_static_variable_init>,
    visit_as<a_vla_dimension>,
    visit_as<a_vcall_offset_entry>,
    visit_as<an_overriding_virtual_function>,
    visit_as<a_derivation_step>,
    visit_as<a_base_class_derivation>,
    visit_as<a_base_class>,
    visit_as<a_class_list_entry>,
    visit_as<a_routine_list_entry>,
    visit_as<a_class_type_supplement>,
    visit_as<a_template_param_type_supplement>,
    visit_as<a_constructor_init>,
    visit_as<an_asm_entry>,
    visit_as<an_asm_operand>,
    visit_as<a_named_register>,
    visit_as<a_label_list_entry>,
    visit_as<a_template_arg>,
    visit_as<a_new_delete_supplement>,
    visit_as<a_throw_supplement>,
    visit_as<a_condition_supplement>,
    visit_as<a_scope_orphaned_list>,
    visit_as<a_pragma>,
    visit_as<a_template>,
    visit_as<a_macro>,
    visit_as<an_element_position>,
    visit_leaf, // declaration position supplement
    visit_as<a_template_decl>,
    visit_as<a_template_param>,
    visit_as<a_name_reference>,
    visit_as<a_name_qualifier>,
    visit_as<a_seq_number_lookup_entry>,
    visit_as<a_local_expr_node_ref>,
    visit_as<a_local_scope_ref>,
    visit_as<an_il_entity_list_entry>,
    visit_as<a_lambda>,
    visit_as<a_lambda_capture>,
    visit_as<an_attribute>,
    visit_as<an_attribute_arg>,
    visit_leaf, // attribute group
    visit_as<a_typeref_type_supplement>,
    visit_as<an_integer_type_supplement>,
    visit_as<a_routine_gnu_supplement>,
    visit_as<a_variable_template_info>,
    visit_as<a_subobject_path>,
};

} // namespace

void visit_fields(void* entry, an_il_entry_kind kind, FIELD_VISITOR& visitor) {
  visit_functions[kind](entry, visitor);
}

void visit_il_header(FIELD_VISITOR& visitor) {
  visitor.list(il_header.source_files, iek_source_file);
  visitor.child(il_header.primary_scope, iek_scope);
  visitor.sideways(il_header.main_routine, iek_routine);
  visitor.text(il_header.il_version, iek_other_text);
  visitor.text(il_header.compilation_time, iek_other_text);
  visitor.list(il_header.scope_orphaned_lists, iek_scope_orphaned_list);
  visitor.list(il_header.macros, iek_macro);
  visitor.list(il_header.secondary_entities, iek_il_entity_list_entry);
  visitor.list(il_header.seq_lookup_entries, iek_seq_number_lookup_entry);
  constexpr int64_t orphan_link_offset = -2 * static_cast<int64_t>(sizeof(void*));
  for (int i = 0; i <= last_il_entry_kind; i++) {
    auto kind = static_cast<an_il_entry_kind>(i);
    visitor.list_by_offset(orphaned_file_scope_il_entries[i].head, kind, orphan_link_offset);
    visitor.sideways(orphaned_file_scope_il_entries[i].tail, kind);
  }
}
