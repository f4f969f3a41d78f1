// Types of the intermediate language in the file's type system: what differs
// between a type as lowered and the type as it was written.

#include "il_alloc.h"
#include "il_to_if.h"
#include "type_pkg.h"
#include "types_fixture.h"

namespace {

class FILE_TYPES : public TYPES_TEST {
protected:
  void SetUp() override {
    start(cd_cplusplus);
    init_tp();
  }
  void TearDown() override {
    delete type_pkg;
    type_pkg = nullptr;
    stop();
  }

  static a_type* make_class(const char* name) {
    a_type* type = named(alloc_type(tk_class), name);
    complete(type, 8);
    class_supplement_of(type)->scope = alloc_scope(sk_class, take_next_scope_number());
    return type;
  }

  static a_routine* make_function(const char* name, unsigned access, a_type* type) {
    a_routine* routine = alloc_routine();
    routine->source_corresp.name = name;
    routine->source_corresp.access = access;
    routine->type = type;
    return routine;
  }

  static a_template_arg* argument(a_template_arg_kind kind, a_template_arg* next) {
    a_template_arg* result = alloc_template_arg(kind);
    result->next = next;
    return result;
  }
};

TEST_F(FILE_TYPES, ListsOfAClassAsWritten) {
  a_type* base = make_class("base");
  a_type* type = make_class("derived");
  a_class_type_supplement* supplement = class_supplement_of(type);

  a_base_class* indirect = alloc_base_class(make_class("indirect"));
  a_base_class* direct = alloc_base_class(base);
  direct->is_direct = direct->is_virtual = 1;
  direct->access = as_protected;
  direct->offset = 4;
  direct->next = indirect;
  supplement->base_classes = direct;

  a_variable* counter = alloc_variable(sc_static);
  counter->type = int_();
  counter->source_corresp.name = "counter";
  counter->source_corresp.access = as_private;
  supplement->scope->variables = counter;
  a_routine* method = make_function("method", as_public, make_routine_type_full(int_(), char_()));
  method->virtual_function_index = 3;
  method->next = make_function("plain", as_private, make_routine_type_full(void_type()));
  supplement->scope->routines = method;

  supplement->friend_routines = alloc_list_entry_for_routine();
  supplement->friend_routines->routine =
      make_function("befriended", as_public, make_routine_type_full(void_type()));
  supplement->friends = alloc_list_entry_for_class();
  supplement->friends->class_type = base;

  supplement->template_args = argument(tak_type, argument(tak_constant, nullptr));
  supplement->template_args->value.type = char_();
  a_constant* five = fs_constant(con_integer);
  five->type = int_();
  five->value.int_value = 5;
  supplement->template_args->next->value.constant = five;

  fkCSU* csu = tp_type(type, tpm_source)->getr_csu();
  ASSERT_NE(csu->bclasses.head, nullptr);
  EXPECT_EQ(csu->bclasses.head->type, tp_type(base, tpm_source));
  EXPECT_EQ(csu->bclasses.head->offset, 32);
  EXPECT_EQ(csu->bclasses.head->access, ack_protected);
  EXPECT_TRUE(csu->bclasses.head->is_virtual);
  EXPECT_EQ(csu->bclasses.head->next, nullptr);
  ASSERT_NE(csu->sdata.head, nullptr);
  EXPECT_EQ(csu->sdata.head->name, "counter");
  EXPECT_EQ(csu->sdata.head->access, ack_private);
  ASSERT_NE(csu->funcs.head, nullptr);
  EXPECT_EQ(csu->funcs.head->virtual_index, 3);
  EXPECT_EQ(csu->funcs.head->type->printstr(false), "int(unsigned char)");
  EXPECT_EQ(csu->funcs.head->next->name, "plain");
  EXPECT_EQ(csu->funcs.head->next->virtual_index, -1);
  ASSERT_NE(csu->ffriends.head, nullptr);
  EXPECT_EQ(csu->ffriends.head->name, "befriended");
  ASSERT_NE(csu->cfriends.head, nullptr);
  EXPECT_EQ(csu->cfriends.head->type, tp_type(base, tpm_source));
  ASSERT_NE(csu->params.head, nullptr);
  EXPECT_EQ(csu->params.head->kind, pk_type_argument);
  EXPECT_EQ(csu->params.head->next->kind, pk_value_argument);
  EXPECT_EQ(csu->params.head->next->text, "5");

  fkCSU* lowered = tp_type(type, tpm_lowered)->getr_csu();
  EXPECT_TRUE(lowered->bclasses.empty() && lowered->sdata.empty() && lowered->funcs.empty() &&
              lowered->ffriends.empty() && lowered->cfriends.empty() && lowered->params.empty());
}

TEST_F(FILE_TYPES, BoolAndReferencesAsWrittenAndAsLowered) {
  a_type* boolean = bool_type();
  EXPECT_EQ(tp_type(boolean, tpm_source), type_pkg->integers[TYPE::ikind_bool]);
  TYPE* lowered = tp_type(boolean, tpm_lowered);
  EXPECT_TRUE(lowered->is_unsigned_char());
  EXPECT_TRUE(lowered->is_boolean_int());
  a_type* reference = make_reference_type(int_());
  EXPECT_TRUE(tp_type(reference, tpm_source)->is_kind(TYPE::k_reference));
  EXPECT_TRUE(tp_type(reference, tpm_lowered)->is_kind(TYPE::k_pointer));
}

} // namespace
