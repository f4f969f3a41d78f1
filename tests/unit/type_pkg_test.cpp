#include "type_pkg.h"

#include <gtest/gtest.h>

#include "if_sample.h"

namespace {

TYPE* int_of(TYPE_PKG& types) {
  return types.integers[TYPE::ikind_int];
}

TYPE* array_of(TYPE_PKG& types, TYPE* elem, uint32_t count) {
  TYPE* array = types.mk_array(elem, false, count, 8, count != 0);
  types.type_frozen(array);
  return array;
}

TYPE* function_of(TYPE_PKG& types, TYPE* result, std::vector<TYPE*> params) {
  TYPE* function = types.mk_func(result, false, true, false, cck_default, 0, 0);
  for (TYPE* param : params)
    function->add_param(new fkPARAM(param, pk_parameter, ""));
  types.type_frozen(function);
  return function;
}

TYPE* struct_of(TYPE_PKG& types, const char* name, std::vector<TYPE*> members) {
  TYPE* csu = types.mk_struct(name, 32 * members.size(), 8, true, 0, false, false, false);
  char member[2] = "a";
  int64_t offset = 0;
  for (TYPE* type : members) {
    csu->add_mdata(new fkMDATA(member, type, ack_public, offset, 0, false, nullptr));
    member[0]++;
    offset += 32;
  }
  types.type_frozen(csu);
  return csu;
}

std::string hex(std::string_view bytes) {
  std::string text;
  char digits[4];
  for (char byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02X ", static_cast<unsigned char>(byte));
    text += digits;
  }
  if (!text.empty())
    text.pop_back();
  return text;
}

// The bodies of the type records of the file, apart from the root's.
std::vector<std::string> type_records(SampleFile& sample, bool keep_all_types = false) {
  an_if_file file;
  an_if_error error;
  EXPECT_TRUE(if_read_records(sample.bytes(keep_all_types), &file, &error)) << error.message;
  std::vector<std::string> records;
  for (const an_if_record& record : file.sections[ifs_types].records) {
    EXPECT_EQ(record.tag, iftag_type);
    if (record.body != "\x01\x31")
      records.push_back(hex(record.body));
  }
  return records;
}

typedef std::vector<std::string> Records;

} // namespace

TEST(TypePkg, BasicTypesHaveFixedIds) {
  TYPE_PKG types;
  EXPECT_EQ(TYPE_PKG::root_type->uid, 1u);
  EXPECT_EQ(types.void_type->uid, 2u);
  EXPECT_EQ(types.pointer_to_void->uid, 3u);
  for (unsigned kind = 0; kind <= TYPE::ikind_last; kind++)
    EXPECT_EQ(types.integers[kind]->uid, 4 + kind);
  for (unsigned kind = 0; kind <= TYPE::fkind_last; kind++)
    EXPECT_EQ(types.floats[kind]->uid, 16 + kind);
  EXPECT_EQ(types.mk_void(), types.void_type);
  EXPECT_EQ(types.mk_int(TYPE::ikind_long, true), types.integers[TYPE::ikind_long]);
  EXPECT_EQ(types.mk_int(TYPE::ikind_bool, true), types.integers[TYPE::ikind_bool]);
  EXPECT_EQ(types.mk_fltpt(TYPE::fkind_double), types.floats[TYPE::fkind_double]);
  EXPECT_EQ(types.next_uid, 19u);
  // Plain char is a type of its own.
  TYPE* plain = types.mk_int(TYPE::ikind_unsigned_char, false);
  EXPECT_EQ(plain->uid, 19u);
  EXPECT_TRUE(plain->is_plain_char());
  EXPECT_FALSE(types.integers[TYPE::ikind_unsigned_char]->is_plain_char());
}

TEST(TypePkg, NormalTypesFollowTheSizes) {
  TYPE_PKG types;
  EXPECT_EQ(types.integers[TYPE::ikind_long]->normal, int_of(types));
  EXPECT_EQ(types.integers[TYPE::ikind_unsigned_long]->normal,
            types.integers[TYPE::ikind_unsigned]);
  EXPECT_EQ(types.integers[TYPE::ikind_long_long]->normal, types.integers[TYPE::ikind_long_long]);
  EXPECT_EQ(types.floats[TYPE::fkind_long_double]->normal, types.floats[TYPE::fkind_double]);
  types.integers[TYPE::ikind_int]->size = 16;
  types.integers[TYPE::ikind_wchar_t]->size = 16;
  types.floats[TYPE::fkind_double]->size = 32;
  types.normalize_basic_types();
  EXPECT_EQ(types.integers[TYPE::ikind_short]->normal, int_of(types));
  EXPECT_EQ(types.integers[TYPE::ikind_wchar_t]->normal, types.integers[TYPE::ikind_short]);
  EXPECT_EQ(types.integers[TYPE::ikind_long]->normal, types.integers[TYPE::ikind_long]);
  EXPECT_EQ(types.floats[TYPE::fkind_double]->normal, types.floats[TYPE::fkind_float]);
  EXPECT_EQ(types.floats[TYPE::fkind_long_double]->normal, types.floats[TYPE::fkind_long_double]);
  types.update_basic_types();
  EXPECT_EQ(int_of(types)->size, 32u);
  EXPECT_EQ(types.integers[TYPE::ikind_long]->normal, int_of(types));
}

TEST(TypePkg, EqualTypesAreOne) {
  TYPE_PKG types;
  TYPE* integer = int_of(types);
  EXPECT_EQ(types.mk_ptr(integer), types.mk_ptr(integer, 32, 8));
  EXPECT_NE(types.mk_ptr(integer), types.mk_ptr(integer, 16, 8));
  EXPECT_EQ(types.mk_ref(integer), types.mk_ref(integer));
  EXPECT_EQ(array_of(types, integer, 4), array_of(types, integer, 4));
  EXPECT_NE(array_of(types, integer, 4), array_of(types, integer, 5));
  EXPECT_EQ(types.mk_typedef("T", false, integer, 32, 8, false),
            types.mk_typedef("T", false, integer, 32, 8, false));
  EXPECT_NE(types.mk_typedef("T", false, integer, 32, 8, false),
            types.mk_typedef("U", false, integer, 32, 8, false));
  EXPECT_NE(types.mk_typedef("T", false, integer, 32, 8, false),
            types.mk_typedef("T", true, integer, 32, 8, false));
  EXPECT_EQ(types.mk_boolean_int(types.mk_typedef("T", false, integer, 32, 8, false)),
            types.mk_boolean_int(integer));
  EXPECT_NE(types.mk_boolean_int(integer), types.mk_ptm_int(integer));
  // Functions differ by their parameters, so only registration can tell.
  TYPE* one = function_of(types, integer, {integer});
  EXPECT_EQ(one, function_of(types, integer, {integer}));
  EXPECT_NE(one, function_of(types, integer, {integer, integer}));
  EXPECT_NE(one, function_of(types, integer, {types.mk_ptr(integer)}));
  EXPECT_EQ(types.mk_ptr(one)->size, 16u);
  // Enums and classes have an identity of their own.
  EXPECT_NE(struct_of(types, "S", {integer}), struct_of(types, "S", {integer}));
  // Arrays of const and plain elements are filed together and yet differ.
  EXPECT_NE(array_of(types, types.mk_qual(integer, qf_const), 4), array_of(types, integer, 4));
}

TEST(TypePkg, QualifiersMerge) {
  TYPE_PKG types;
  TYPE* integer = int_of(types);
  TYPE* constant = types.mk_qual(integer, qf_const);
  EXPECT_EQ(types.mk_qual(constant, qf_const), constant);
  TYPE* both = types.mk_qual(constant, qf_volatile);
  EXPECT_EQ(both->rep, integer);
  EXPECT_EQ(both->qualifiers, qf_const | qf_volatile);
  EXPECT_EQ(types.mk_qual(types.mk_qual(integer, qf_volatile), qf_const), both);
  EXPECT_EQ(types.mk_qual(both, qf_const), both);
  EXPECT_EQ(types.mk_qual(integer, 0), integer);
  TYPE* named = types.mk_typedef("CI", false, constant, 32, 8, false);
  EXPECT_EQ(types.mk_qual(named, qf_const), named);
  EXPECT_TRUE(constant->getr(TYPE::k_integral)->is_int());
  TYPE* wide = types.mk_int(TYPE::ikind_long, true, 32, 32, false, false);
  EXPECT_EQ(types.mk_qual(wide, qf_const)->align, 32u);
  EXPECT_EQ(types.mk_qual(wide, qf_packed)->align, 8u);
  TYPE* alias = types.mk_typedef("T", false, both, 32, 8, false);
  EXPECT_EQ(alias->qual_kind(false), qf_const | qf_volatile);
  EXPECT_EQ(array_of(types, constant, 3)->qual_kind(true), qf_const);
  EXPECT_EQ(array_of(types, constant, 3)->qual_kind(false), 0);
  EXPECT_TRUE(alias->is_signed());
}

TEST(TypePkg, KeysOfNames) {
  TYPE_PKG types;
  TYPE* integer = int_of(types);
  EXPECT_EQ(types.mk_ptr(integer)->map_name(), "__builtin_type");
  EXPECT_EQ(types.mk_typedef("T", false, integer, 32, 8, false)->map_name(), "T");
  TYPE* anonymous = types.mk_enum(nullptr, integer, 32, 8, false);
  types.type_frozen(anonymous);
  EXPECT_EQ(anonymous->map_name(), "$$fakeenum");
  EXPECT_EQ(std::string(anonymous->name()).rfind("$$fake", 0), 0u);
  TYPE* csu = types.mk_class("$$fake", 0, 8, true, 0, false, false, true);
  EXPECT_EQ(csu->map_name(), "$$fakestruct");
  types.type_frozen(csu);
  EXPECT_EQ(types.mk_qual(csu, qf_const)->map_name(), "$$fakestruct");
  EXPECT_STRNE(csu->name(), anonymous->name());
}

TEST(TypePkg, SizesOfArraysAndTheirLimit) {
  TYPE_PKG types;
  TYPE* odd = types.mk_int(TYPE::ikind_long, true, 24, 8, false, false);
  EXPECT_EQ(odd->storage_size(), 32u);
  EXPECT_EQ(array_of(types, odd, 3)->size, 96u);
  EXPECT_EQ(array_of(types, struct_of(types, "S", {odd, odd, odd}), 2)->size, 192u);
  EXPECT_EQ(array_of(types, int_of(types), 0x7FFFFFF)->size, 0xFFFFFFE0u);
  EXPECT_EQ(types.error_code, tpe_none);
  TYPE* huge = array_of(types, int_of(types), 0x8000000);
  EXPECT_EQ(huge->size, 0x100000000u);
  EXPECT_EQ(types.error_code, tpe_object_size);
  EXPECT_STREQ(
      types.error_text,
      "Object size 536870912 bytes is greater than maximum supported size 536870911 bytes");
  types.error_code = tpe_none;
  EXPECT_EQ(array_of(types, array_of(types, huge, UINT32_MAX), 32)->size, UINT64_MAX);
  EXPECT_EQ(types.error_code, tpe_object_size);
  types.error_code = tpe_none;
  array_of(types, int_of(types), 0x8000000);
  array_of(types, int_of(types), 0x9000000);
  EXPECT_EQ(std::string(types.error_text).find("Object size 536870912"), 0u); // the first stays
}

TEST(TypePkg, Texts) {
  TYPE_PKG types;
  TYPE* integer = int_of(types);
  TYPE* plain = types.mk_int(TYPE::ikind_signed_char, false);
  EXPECT_EQ(types.mk_ptr(integer)->printstr(false), "int *");
  EXPECT_EQ(types.mk_ptr(array_of(types, integer, 3))->printstr(false), "int (*)[3]");
  EXPECT_EQ(array_of(types, array_of(types, types.mk_ptr(integer), 3), 2)->printstr(false),
            "int *[2][3]");
  TYPE* function = function_of(types, plain, {types.mk_qual(integer, qf_volatile | qf_const)});
  EXPECT_EQ(types.mk_ptr(types.mk_ptr(function))->printstr(false), "char (**)(const volatile int)");
  EXPECT_EQ(types.mk_qual(types.mk_ptr(types.mk_qual(plain, qf_const)), qf_const)->printstr(false),
            "const char *const");
  EXPECT_EQ(types.integers[TYPE::ikind_signed_char]->printstr(false), "[ExplSign] char");
  EXPECT_EQ(types.mk_complex(types.floats[TYPE::fkind_float])->printstr(false), "cfloat");
  TYPE* csu = types.mk_struct("S", 32, 8, true, 0, false, false, false);
  csu->add_mdata(new fkMDATA("a", integer, ack_public, 4, 12, true, nullptr));
  types.type_frozen(csu);
  EXPECT_EQ(csu->printstr(true), "struct S {\n    off:  4 bitfld(12) int a\n}");
}

TEST(TypePkgDeathTest, FaultsOfTheProgram) {
  TYPE_PKG types;
  EXPECT_EXIT(int_of(types)->getr(TYPE::k_pointer), testing::ExitedWithCode(1),
              "TP>> internal error: Bad kind:  TYPE::getr\\(\\)");
  EXPECT_EXIT(struct_of(types, "S", {})->add_cfriend(new fkTYPE_ELEM(nullptr)),
              testing::ExitedWithCode(1), "Modifying frozen type:  TYPE::check_nfrozen");
  EXPECT_EXIT(int_of(types)->elem_type(), testing::ExitedWithCode(1),
              "orphan type:  TYPE::elem_type\\(\\)");
}

TEST(TypePkg, TreesAreDeletedWhole) {
  TYPE_PKG types;
  TYPE* csu = struct_of(types, "S", {int_of(types)});
  TYPE* pointer = types.mk_ptr(types.mk_ptr(csu));
  types.delete_type_tree(csu->pointer_to, false); // something is built on it: it stays
  EXPECT_EQ(types.mk_ptr(csu->pointer_to), pointer);
  types.delete_type_tree(csu->pointer_to, true);
  EXPECT_EQ(csu->pointer_to, nullptr);
  EXPECT_TRUE(csu->based.empty());
  types.delete_type_tree(csu, true);
  EXPECT_EQ(TYPE_PKG::root_type->based.count("S"), 0u);
}

// -- Records -------------------------------------------------------------------

TEST(TypeRecords, BasicTypes) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  sample.global("a", types.integers[TYPE::ikind_bool]);
  sample.global("b", types.mk_int(TYPE::ikind_signed_char, false));
  sample.global("c", types.integers[TYPE::ikind_unsigned_long_long]);
  sample.global("d", types.floats[TYPE::fkind_long_double]);
  sample.global("e", types.mk_boolean_int(types.integers[TYPE::ikind_unsigned_char]));
  sample.global("f", types.mk_complex(types.floats[TYPE::fkind_float]));
  EXPECT_EQ(type_records(sample), (Records{"04 00 01 08 08 01 01",    // bool
                                           "0F 33 01 40 08 00 00",    // unsigned long long
                                           "10 0A 20 08",             // float
                                           "15 24 40 08 10",          // its complex
                                           "12 0C 40 08",             // long double
                                           "13 01 00 08 08 00 00",    // plain char
                                           "14 02 01 08 08 00 01"})); // the boolean
}

TEST(TypeRecords, DerivedTypes) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* integer = int_of(types);
  TYPE* constant = types.mk_qual(integer, qf_const);                       // 19
  TYPE* pointer = types.mk_ptr(constant);                                  // 20
  TYPE* array = array_of(types, pointer, 3);                               // 21
  TYPE* alias = types.mk_typedef("T", true, array, array->size, 8, false); // 22
  PSN position{"t.h", 3, 300};
  alias->set_psn(&position);
  TYPE* fixed = types.mk_fxtpt(7, integer, 32, 8); // 23
  sample.global("a", alias);
  sample.global("b", types.mk_ref(fixed)); // 24
  sample.global("c", types.void_type);
  EXPECT_EQ(type_records(sample), (Records{"02 31",                                  // void
                                           "0A 06 01 20 08 00 00",                   // int
                                           "13 11 0A 01 20 08",                      // const
                                           "14 0F 13 20 08",                         // pointer
                                           "15 12 14 03 60 08 00 01 00",             // array
                                           "16 0E 54 00 15 60 08 01 00 01 03 AC 02", // typedef
                                           "17 0D 07 01 0A 20 08",                   // fixed point
                                           "18 10 17 20 08"}));                      // reference
}

TEST(TypeRecords, Functions) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* empty = function_of(types, types.void_type, {});                               // 19
  TYPE* taker = types.mk_func(types.void_type, true, true, true, cck_alternate, 0, 0); // 20
  taker->add_param(new fkPARAM(types.floats[TYPE::fkind_float], pk_parameter, ""));
  types.type_frozen(taker);
  sample.global("f", empty);
  sample.global("g", taker);
  EXPECT_EQ(type_records(sample), (Records{"02 31",                // void
                                           "13 14 02 00 01 00 00", // f
                                           "13 FE 00", "13 FF 00", // its empty list
                                           "14 14 02 01 01 0A 01", // g
                                           "10 0A 20 08",          // float, before the list
                                           "14 FE 00", "14 15 10 00 00 00", "14 FF 00"}));
}

TEST(TypeRecords, Enums) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* enumeration = types.mk_enum("E", int_of(types), 32, 8, false); // 19
  PSN position{"e.c", 1, 2};
  enumeration->add_etor(new fkETOR(-1, "m", &position));
  types.type_frozen(enumeration);
  TYPE* wide = types.mk_enum("F", types.integers[TYPE::ikind_unsigned], 32, 8, false); // 20
  wide->add_etor(new fkETOR(-1, "x", nullptr));
  types.type_frozen(wide);
  sample.global("e", enumeration);
  sample.global("f", wide);
  EXPECT_EQ(type_records(sample),
            (Records{"0A 06 01 20 08 00 00", "13 16 45 00 20 08 0A 00 00", "13 FE 01",
                     "13 17 6D 00 7F 01 01 02", "13 FF 01", "0B 07 01 20 08 00 00",
                     "14 16 46 00 20 08 0B 00 00", "14 FE 01", "14 17 78 00 FF FF FF FF 0F 00",
                     "14 FF 01"}));
}

// Two structures that refer to each other: the plain records come first, the
// lists in a second pass, with the types that they name in front.
TEST(TypeRecords, StructuresInTwoPasses) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* later = types.mk_struct("B", 32, 8, true, 0, false, false, false);
  TYPE* first = struct_of(types, "A", {types.mk_ptr(later)}); // pointer 19, A 20
  later->add_mdata(new fkMDATA("p", types.mk_ptr(first), ack_private, 0, 0, false, nullptr)); // 21
  types.type_frozen(later);                                                                   // 22
  sample.global("a", first);
  EXPECT_EQ(type_records(sample),
            (Records{"14 18 00 41 00 01 00 20 08 01 00 00 00",
                     "16 18 00 42 00 01 00 20 08 01 00 00 00", "13 0F 16 20 08", "14 FE 07",
                     "14 1C 01 61 00 13 00 00 00 00 00 00 00 00", "14 FF 07", "15 0F 14 20 08",
                     "16 FE 07", "16 1C 01 70 00 15 02 00 00 00 00 00 00 00", "16 FF 07"}));
}

TEST(TypeRecords, ClassesWithAllLists) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* integer = int_of(types);
  TYPE* function = function_of(types, integer, {});                     // 19
  TYPE* base = types.mk_class("B", 0, 0, false, 0, false, false, true); // 20
  TYPE* csu = types.mk_class("C", 64, 32, true, 0, false, false, true); // 21
  csu->add_bclass(new fkBCLASS(base, -32, ack_protected, true));
  csu->add_adecl(new fkADECL(2));
  csu->add_ffriend(new fkFFRIEND("ff", function));
  csu->add_cfriend(new fkTYPE_ELEM(base));
  csu->add_ntype(new fkTYPE_ELEM(integer));
  csu->add_mdata(new fkMDATA("a", integer, ack_public, 33, 5, true, nullptr));
  csu->add_mdata(new fkMDATA("b", integer, ack_public, 64, 0, false, nullptr));
  csu->add_sdata(new fkSDATA(integer, "s", ack_private));
  fkMFUNC* method = csu->add_mfunc(new fkMFUNC(function, "m", ack_public, -1));
  method->flags[1] = true;
  csu->add_param(new fkPARAM(integer, pk_value_argument, "5"));
  types.type_frozen(csu);
  sample.global("c", csu);
  Records expected{"14 18 02 42 00 00 00 00 00 00 00 01 00",
                   "15 19 02 43 00 01 00 40 20 00 01 01 01 01 01 01 01 01 01 00 01 00",
                   "15 FE 02",
                   "15 1D 14 60 01 01",
                   "15 FF 02", // bases
                   "15 FE 03",
                   "15 1E 00 02",
                   "15 FF 03", // access declarations
                   "0A 06 01 20 08 00 00",
                   "13 14 0A 00 01 00 00",
                   "13 FE 00",
                   "13 FF 00",
                   "15 FE 04",
                   "15 1F 66 66 00 13",
                   "15 FF 04", // friend functions
                   "15 FE 05",
                   "15 20 14",
                   "15 FF 05", // friend classes
                   "15 FE 06",
                   "15 21 0A",
                   "15 FF 06", // nested types
                   "15 FE 07",
                   "15 1C 01 61 00 0A 00 21 00 05 01 00 00 00", // data members
                   "15 1C 02 62 00 0A 00 C0 00 00 00 00 00 00 00",
                   "15 FF 07",
                   "15 FE 08",
                   "15 22 73 00 0A 02",
                   "15 FF 08", // static members
                   "15 FE 09",
                   "15 23 6D 00 13 00 7F 00 01 00 00",
                   "15 FF 09",
                   "15 FE 00",
                   "15 15 0A 00 02 35 00",
                   "15 FF 00"}; // template arguments
  EXPECT_EQ(type_records(sample), expected);
}

TEST(TypeRecords, OnlyWhatIsReferenced) {
  {
    SampleFile sample;
    TYPE* csu = struct_of(sample.types, "S", {int_of(sample.types)});
    sample.types.mk_ptr(csu);
    EXPECT_EQ(type_records(sample), Records{});
  }
  {
    SampleFile sample;
    struct_of(sample.types, "S", {int_of(sample.types)});
    EXPECT_EQ(type_records(sample, true).size(), 5u); // the struct, int, and the list
  }
  {
    SampleFile sample;
    sample.node(ifop_NOP, sample.types.mk_ptr(sample.types.void_type)); // an expression's type
    EXPECT_EQ(type_records(sample), (Records{"02 31", "03 0F 02 20 08"}));
  }
}

TEST(TypeRecords, ReplacedTypes) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* shadow = struct_of(types, "Old", {int_of(types)});
  TYPE* pointer = types.mk_ptr(shadow);
  TYPE* final_type = struct_of(types, "New", {types.floats[TYPE::fkind_float]});
  TYPE* between = struct_of(types, "Mid", {});
  shadow->equiv = between;
  between->equiv = final_type;
  sample.global("p", pointer);
  // What the replaced type is built from goes along.
  EXPECT_EQ(type_records(sample),
            (Records{"15 18 00 4E 65 77 00 01 00 20 08 01 00 00 00", "10 0A 20 08", "15 FE 07",
                     "15 1C 01 61 00 10 00 00 00 00 00 00 00 00", "15 FF 07", "14 0F 15 20 08",
                     "0A 06 01 20 08 00 00"}));
}

// Types that are built on one another without end need no deep stack.
TEST(TypeRecords, LongChains) {
  SampleFile sample;
  TYPE_PKG& types = sample.types;
  TYPE* type = int_of(types);
  for (int i = 0; i < 100000; i++)
    type = types.mk_ptr(type);
  sample.global("p", type);
  an_if_file file;
  an_if_error error;
  ASSERT_TRUE(if_read_bytes(sample.bytes(), &file, &error)) << error.message;
  EXPECT_EQ(file.types.size(), 100002u);
}
