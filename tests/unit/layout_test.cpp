// The layout of C++ classes, built by hand: bases, virtual bases, the virtual
// function pointer, empty bases and tail padding (Itanium C++ ABI 2.4). All
// alignments are 1, a pointer to a virtual function table has four bytes.

#include "const_ints.h"
#include "front_end_fixture.h"
#include "layout.h"
#include "type_pkg.h"

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace {

struct a_base_spec {
  const char* name;
  bool is_virtual;
};

enum a_class_flag { plain = 0, polymorphic = 1, pod = 2 };

// A class to build: its fields are ints, or of a class named before, or
// `name[n]` of it; `.` is a char, and `:n` behind a type, or behind nothing for
// int, makes a bit-field of that width.
struct a_class_spec {
  const char* name;
  int flags;
  std::vector<a_base_spec> bases;
  std::vector<const char*> fields;
  uint16_t pack = 0;
  uint32_t alignment = 0; // asked for by an attribute
};

// What is expected of it; offsets of the bases in the order direct, indirect.
struct a_layout_row {
  a_class_spec spec;
  uint64_t size;
  uint64_t nonvirtual_size;
  std::vector<std::pair<const char*, uint64_t>> bases;
  std::vector<uint64_t> fields; // byte offsets
  uint32_t alignment = 1;
};

class LAYOUT : public FrontEnd {
protected:
  void SetUp() override {
    start(cd_cplusplus);
  }

  a_type* type_of_field(const std::string& text) {
    if (text == "int" || text[0] == ':')
      return integer_type(ik_int);
    if (text == "." || text.starts_with(".:"))
      return integer_type(ik_char);
    size_t bracket = text.find('[');
    if (bracket == std::string::npos)
      return classes.at(text);
    a_type* element = text[0] == '.' ? integer_type(ik_char) : classes.at(text.substr(0, bracket));
    return make_array_type(element, std::stoull(text.substr(bracket + 1)));
  }

  void add_field(a_type* type, const char* text) {
    a_field* field = alloc_field(type_of_field(text));
    field->source_corresp.name = "field";
    set_parent_scope(&field->source_corresp, iek_field, class_supplement_of(type)->scope);
    if (const char* colon = strchr(text, ':')) {
      field->is_bit_field = true;
      field->bit_size = static_cast<uint8_t>(std::stoul(colon + 1));
    }
    a_field** link = &type->variant.class_struct_union.fields;
    while (*link)
      link = &(*link)->next;
    *link = field;
  }

  static a_base_class* append_base(a_type* type, a_type* base_type, bool is_virtual) {
    a_base_class* base = alloc_base_class(base_type);
    base->derived_class = type;
    base->is_virtual = is_virtual;
    a_base_class** link = &class_supplement_of(type)->base_classes;
    while (*link)
      link = &(*link)->next;
    *link = base;
    return base;
  }

  static void append_step(a_base_class_derivation* derivation, a_base_class* base) {
    a_derivation_step** link = &derivation->path;
    while (*link)
      link = &(*link)->next;
    *link = alloc_derivation_step();
    (*link)->base_class = base;
  }

  // The way through a direct base to one of that base's bases.
  static a_base_class_derivation* path_through(a_base_class* direct, a_base_class* inner) {
    a_base_class_derivation* derivation = alloc_base_class_derivation();
    append_step(derivation, direct);
    if (inner->is_direct)
      append_step(derivation, inner);
    else
      for (a_derivation_step* step = inner->derivations->path; step; step = step->next)
        append_step(derivation, step->base_class);
    return derivation;
  }

  // A virtual base has one record, and so have indirect bases of one type.
  static bool has_record(a_type* type, const a_base_class* wanted) {
    for (a_base_class* base = class_supplement_of(type)->base_classes; base; base = base->next)
      if (base->type == wanted->type && base->is_virtual == wanted->is_virtual &&
          (base->is_virtual || !base->is_direct))
        return true;
    return false;
  }

  void add_bases(a_type* type, const std::vector<a_base_spec>& specs) {
    std::vector<a_base_class*> direct;
    for (const a_base_spec& spec : specs) {
      direct.push_back(append_base(type, classes.at(spec.name), spec.is_virtual));
      direct.back()->is_direct = true;
    }
    for (a_base_class* base : direct)
      for (a_base_class* inner = class_supplement_of(base->type)->base_classes; inner;
           inner = inner->next)
        if (!has_record(type, inner))
          append_base(type, inner->type, inner->is_virtual)->derivations =
              path_through(base, inner);
  }

  a_type* build(const a_class_spec& spec) {
    a_symbol* symbol = enter(symk_class_or_struct, spec.name);
    a_type* type = alloc_type(tk_class);
    symbol->variant.type = type;
    set_source_corresp(&type->source_corresp, symbol);
    push_class_scope(type);
    pop_scope();
    add_bases(type, spec.bases);
    for (const char* field : spec.fields)
      add_field(type, field);
    auto& info = type->variant.class_struct_union;
    info.has_virtual_functions = (spec.flags & polymorphic) != 0;
    class_supplement_of(type)->is_pod = (spec.flags & pod) != 0;
    class_supplement_of(type)->pack_alignment = spec.pack;
    if (spec.alignment != 0) {
      type->alignment = spec.alignment;
      type->has_explicit_alignment = true;
    }
    info.layout_pending = true;
    do_class_layout(type);
    type->is_incomplete = false;
    classes[spec.name] = type;
    return type;
  }

  static std::vector<std::pair<std::string, uint64_t>> base_offsets(const a_type* type) {
    std::vector<std::pair<std::string, uint64_t>> offsets;
    for (a_base_class* base = class_supplement_of(type)->base_classes; base; base = base->next) {
      EXPECT_TRUE(base->offset_is_known) << base->type->source_corresp.name;
      offsets.emplace_back(base->type->source_corresp.name, base->offset);
    }
    return offsets;
  }

  static std::vector<uint64_t> field_offsets(const a_type* type) {
    std::vector<uint64_t> offsets;
    for (a_field* field = type->variant.class_struct_union.fields; field; field = field->next)
      offsets.push_back(field->offset);
    return offsets;
  }

  void check(const std::vector<a_layout_row>& rows) {
    for (const a_layout_row& row : rows) {
      SCOPED_TRACE(row.spec.name);
      a_type* type = build(row.spec);
      EXPECT_EQ(type->size, row.size);
      EXPECT_EQ(type->alignment, row.alignment);
      EXPECT_EQ(class_supplement_of(type)->nonvirtual_size, row.nonvirtual_size);
      std::vector<std::pair<std::string, uint64_t>> bases(row.bases.begin(), row.bases.end());
      EXPECT_EQ(base_offsets(type), bases);
      EXPECT_EQ(field_offsets(type), row.fields);
    }
    EXPECT_EQ(total_errors, 0u);
  }

  const a_class_type_supplement* supplement(const char* name) {
    return class_supplement_of(classes.at(name));
  }

  std::map<std::string, a_type*> classes;
};

const a_layout_row empty_base_rows[] = {
    {{"E", plain, {}, {}}, 1, 0, {}, {}},
    {{"E2", plain, {{"E", false}}, {}}, 1, 1, {{"E", 0}}, {}},
    {{"A", plain, {}, {"int"}}, 4, 4, {}, {0}},
    {{"ZeroWidth", plain, {}, {":0"}}, 1, 0, {}, {0}},
    // An empty base takes no room.
    {{"OnField", plain, {{"E", false}}, {"int"}}, 4, 4, {{"E", 0}}, {0}},
    {{"BehindData", plain, {{"A", false}, {"E", false}}, {"."}}, 5, 5, {{"A", 0}, {"E", 0}}, {4}},
    // But two of one type have two addresses.
    {{"FieldMoves", plain, {{"E", false}}, {"E", "int"}}, 6, 6, {{"E", 0}}, {1, 2}},
    {{"ArrayMoves", plain, {{"E", false}}, {"E[3]"}}, 4, 4, {{"E", 0}}, {1}},
    {{"BaseMoves", plain, {{"E", false}, {"E2", false}}, {}},
     2,
     2,
     {{"E", 0}, {"E2", 1}, {"E", 1}},
     {}},
    {{"DataMoves", plain, {{"E", false}, {"OnField", false}}, {}},
     5,
     5,
     {{"E", 0}, {"OnField", 1}, {"E", 1}},
     {}},
    {{"Inner", plain, {}, {"FieldMoves"}}, 6, 6, {}, {0}},
    {{"InnerMoves", plain, {{"E2", false}}, {"Inner"}}, 7, 7, {{"E2", 0}, {"E", 0}}, {1}},
    {{"Others", plain, {{"E", false}, {"ZeroWidth", false}}, {}},
     1,
     1,
     {{"E", 0}, {"ZeroWidth", 0}},
     {}},
};

const a_layout_row virtual_rows[] = {
    {{"A", plain, {}, {"int"}}, 4, 4, {}, {0}},
    {{"E", plain, {}, {}}, 1, 0, {}, {}},
    {{"P", polymorphic, {}, {"int"}}, 8, 8, {}, {4}},
    // The first polymorphic base is the primary one.
    {{"Extended", plain, {{"P", false}}, {"int"}}, 12, 12, {{"P", 0}}, {8}},
    {{"PrimaryFirst", plain, {{"A", false}, {"P", false}}, {}}, 12, 12, {{"A", 8}, {"P", 0}}, {}},
    {{"OwnPointer", polymorphic, {{"A", false}}, {}}, 8, 8, {{"A", 4}}, {}},
    // A diamond.
    {{"L", plain, {{"A", true}}, {"int"}}, 12, 8, {{"A", 8}}, {4}},
    {{"R", plain, {{"A", true}}, {"int"}}, 12, 8, {{"A", 8}}, {4}},
    {{"Diamond", plain, {{"L", false}, {"R", false}}, {"int"}},
     24,
     20,
     {{"L", 0}, {"R", 8}, {"A", 20}},
     {16}},
    {{"Below", plain, {{"Diamond", true}}, {}},
     28,
     4,
     {{"Diamond", 4}, {"L", 4}, {"R", 12}, {"A", 24}},
     {}},
    // A nearly empty virtual base can be primary, and lies there from then on.
    {{"N", polymorphic, {}, {}}, 4, 4, {}, {}},
    {{"N1", plain, {{"N", true}}, {"int"}}, 8, 8, {{"N", 0}}, {4}},
    {{"N2", plain, {{"N", true}}, {"int"}}, 8, 8, {{"N", 0}}, {4}},
    {{"Claimed", plain, {{"N1", false}, {"N2", false}}, {}},
     16,
     16,
     {{"N1", 0}, {"N2", 8}, {"N", 0}},
     {}},
    {{"NearlyEmpty", plain, {{"A", false}, {"N", true}}, {}}, 8, 8, {{"A", 4}, {"N", 0}}, {}},
    {{"Indirect", plain, {{"N1", true}}, {}}, 12, 4, {{"N1", 4}, {"N", 0}}, {}},
    // Empty virtual bases.
    {{"VirtualEmpty", plain, {{"E", true}}, {"int"}}, 8, 8, {{"E", 0}}, {4}},
    {{"BothEmpty", plain, {{"E", false}, {"E2v", true}}, {}},
     5,
     4,
     {{"E", 0}, {"E2v", 4}, {"E", 4}},
     {}},
};

const a_layout_row alignment_rows[] = {
    {{"A8", plain, {}, {"."}, 0, 8}, 8, 1, {}, {0}, 8},
    {{"P8", pod, {}, {"."}, 0, 8}, 8, 1, {}, {0}, 8},
    {{"C", plain, {}, {"."}}, 1, 1, {}, {0}},
    {{"OnAligned", plain, {{"A8", false}}, {"."}}, 8, 2, {{"A8", 0}}, {1}, 8},
    {{"OnPod", plain, {{"P8", false}}, {"."}}, 16, 9, {{"P8", 0}}, {8}, 8},
    {{"Aligned", plain, {{"C", false}, {"A8", false}}, {}}, 16, 9, {{"C", 0}, {"A8", 8}}, {}, 8},
    {{"VirtualAligned", plain, {{"A8", true}}, {"."}}, 16, 5, {{"A8", 8}}, {4}, 8},
    // Without its virtual base the class is aligned to the byte.
    {{"Lower", plain, {{"C", false}, {"VirtualAligned", false}}, {}},
     16,
     6,
     {{"C", 5}, {"VirtualAligned", 0}, {"A8", 8}},
     {},
     8},
    // Packing counts for bases too.
    {{"Packed", plain, {{"C", false}, {"A8", false}}, {"P8"}, 2},
     12,
     12,
     {{"C", 0}, {"A8", 2}},
     {4},
     2},
};

TEST_F(LAYOUT, EmptyBases) {
  check({std::begin(empty_base_rows), std::end(empty_base_rows)});
  EXPECT_TRUE(is_empty_class_type(classes["BaseMoves"]));
  EXPECT_TRUE(is_empty_class_type(classes["ZeroWidth"]));
  EXPECT_FALSE(is_empty_class_type(classes["OnField"]));
  EXPECT_FALSE(is_empty_class_type(integer_type(ik_int)));
}

TEST_F(LAYOUT, VirtualBases) {
  build({"E0", plain, {}, {}});
  std::vector<a_layout_row> rows(std::begin(virtual_rows), std::end(virtual_rows));
  rows.insert(rows.end() - 1, {{"E2v", plain, {{"E", false}}, {}}, 1, 1, {{"E", 0}}, {}});
  check(rows);
  EXPECT_EQ(supplement("A")->virtual_function_info_offset, -3);
  for (const char* name : {"P", "Extended", "Diamond", "Claimed", "OwnPointer"})
    EXPECT_EQ(supplement(name)->virtual_function_info_offset, 0) << name;
  EXPECT_EQ(supplement("OwnPointer")->primary_base, nullptr);
  EXPECT_STREQ(supplement("PrimaryFirst")->primary_base->type->source_corresp.name, "P");
  EXPECT_STREQ(supplement("Indirect")->primary_base->type->source_corresp.name, "N");
  EXPECT_FALSE(is_empty_class_type(classes["VirtualEmpty"]));
}

TEST_F(LAYOUT, Alignment) {
  check({std::begin(alignment_rows), std::end(alignment_rows)});
  packing_applies_to_base_classes = 0;
  a_type* unpacked = build({"Unpacked", plain, {{"C", false}, {"A8", false}}, {"P8"}, 2});
  EXPECT_EQ(base_offsets(unpacked).back().second, 8u);
  EXPECT_EQ(field_offsets(unpacked), std::vector<uint64_t>{10});
  // In GNU C++ packing doesn't reach into a class that isn't POD.
  gnu_mode = gpp_mode = 1;
  EXPECT_EQ(field_offsets(build({"Pods", plain, {}, {".", "P8"}, 2})),
            (std::vector<uint64_t>{0, 2}));
  EXPECT_EQ(total_warnings, 0u);
  EXPECT_EQ(field_offsets(build({"NotPods", plain, {}, {".", "A8"}, 2})),
            (std::vector<uint64_t>{0, 8}));
  EXPECT_NE(messages().find("packing attribute on the parent type is ignored"), std::string::npos);
}

// A class that ends with a bit-field reaches to the end of its container.
TEST_F(LAYOUT, TailPadding) {
  build({"Padded", plain, {}, {".", ":3"}});
  build({"Pod", pod, {}, {".", ":3"}});
  EXPECT_EQ(classes["Padded"]->size, 4u);
  EXPECT_EQ(supplement("Padded")->nonvirtual_size, 2u);
  warn_about_tail_padding_use = 1;
  build({"Reused", plain, {{"Padded", false}}, {"."}});
  EXPECT_EQ(field_offsets(classes["Reused"]), std::vector<uint64_t>{2});
  EXPECT_EQ(classes["Reused"]->size, 3u);
  EXPECT_NE(messages().find("size of class is affected by tail padding"), std::string::npos);
  EXPECT_NE(messages().find("uses tail padding of a base class"), std::string::npos);
  build({"OfPod", plain, {{"Pod", false}}, {"."}});
  EXPECT_EQ(field_offsets(classes["OfPod"]), std::vector<uint64_t>{4});
  reuse_tail_padding = 0;
  build({"Kept", plain, {{"Padded", false}}, {"."}});
  EXPECT_EQ(field_offsets(classes["Kept"]), std::vector<uint64_t>{4});
  EXPECT_EQ(total_errors, 0u);
}

TEST_F(LAYOUT, Limits) {
  uint64_t greatest_offset = targ_max_base_class_offset;
  build({"Big", pod, {}, {".[400000000]"}});
  build({"P", polymorphic, {}, {}});
  EXPECT_EQ(total_errors, 0u);
  build({"FarBase", plain, {{"Big", false}, {"P", true}}, {}});
  EXPECT_EQ(total_errors, 0u); // the primary base lies in front
  build({"A", plain, {}, {"int"}});
  build({"Far", plain, {{"Big", false}, {"A", false}}, {}});
  EXPECT_NE(messages().find("offset of base class \"A\" within class \"Far\" is too large"),
            std::string::npos);
  EXPECT_GT(supplement("Far")->base_classes->next->offset, greatest_offset);
  build({"TooLarge", plain, {{"Big", false}}, {"Big", "int"}});
  EXPECT_NE(messages().find("class is too large"), std::string::npos);
  EXPECT_EQ(classes["TooLarge"]->size, 400000004u); // the last good place
}

// The behaviours that other processors have.
TEST_F(LAYOUT, Modes) {
  static const struct {
    int* mode;
    int value;
    std::vector<const char*> fields;
    std::vector<uint64_t> bit_offsets;
    uint64_t size;
  } rows[] = {
      {&targ_bit_field_container_size, -1, {":15", ":10"}, {0, 15}, 4},
      {&targ_bit_field_container_size, 2, {":15", ":10"}, {0, 16}, 4},
      {&targ_bit_field_container_size, 0, {":15", ":10"}, {0, 15}, 4},
      {&targ_zero_width_bit_field_alignment, -1, {":3", ":0", ":3"}, {0, 8, 8}, 4},
      {&targ_zero_width_bit_field_alignment, 4, {":3", ":0", ":3"}, {0, 32, 32}, 8},
      {&targ_zero_width_bit_field_alignment, 0, {":3", ":0", ":3"}, {0, 8, 8}, 4},
      // A container holds fields of its own type only, and all of it is taken.
      {&targ_microsoft_bit_field_allocation, 1, {":3", ".:2", ".:2", "."}, {0, 32, 34, 40}, 6},
      {&targ_microsoft_bit_field_allocation, 1, {":30", ":3", "."}, {0, 32, 64}, 9},
      {&targ_microsoft_bit_field_allocation, 1, {":3", ":0", ".:1"}, {0, 32, 32}, 5},
      {&targ_microsoft_bit_field_allocation, 0, {":3", ".:2", ".:2", "."}, {0, 3, 5, 8}, 4},
  };
  int row_number = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(++row_number);
    int saved = *row.mode;
    *row.mode = row.value;
    std::string name = "M" + std::to_string(row_number);
    a_type* type = build({name.c_str(), plain, {}, row.fields});
    *row.mode = saved;
    std::vector<uint64_t> bit_offsets;
    for (a_field* field = type->variant.class_struct_union.fields; field; field = field->next)
      bit_offsets.push_back(field->offset * 8 + field->bit_offset);
    EXPECT_EQ(bit_offsets, row.bit_offsets);
    EXPECT_EQ(type->size, row.size);
  }
}

TEST_F(LAYOUT, OrderOfAccess) {
  a_type* type = build({"Accesses", plain, {}, {"int", ".", "int"}});
  a_field* first = type->variant.class_struct_union.fields;
  first->source_corresp.access = as_private;
  first->next->source_corresp.access = as_protected;
  for (bool in_order : {true, false}) {
    targ_field_alloc_sequence_equals_decl_sequence = in_order;
    type->variant.class_struct_union.layout_pending = true;
    do_class_layout(type);
    EXPECT_EQ(field_offsets(type),
              in_order ? (std::vector<uint64_t>{0, 4, 5}) : (std::vector<uint64_t>{5, 4, 0}));
  }
  targ_field_alloc_sequence_equals_decl_sequence = 1;
}

TEST_F(LAYOUT, DeclaredContainers) {
  static const struct {
    uint64_t container_bits, alignment_bits, start, size, offset;
    bool holds;
  } rows[] = {
      {32, 8, 8, 3, 0, true},     {32, 8, 30, 10, 8, true}, {32, 32, 30, 10, 32, false},
      {16, 16, 16, 16, 16, true}, {8, 8, 3, 8, 8, false},
  };
  for (const auto& row : rows) {
    uint64_t offset = 77;
    EXPECT_EQ(TYPE_PKG::get_container_offset_for_field(row.container_bits, row.alignment_bits,
                                                       row.start, row.size, &offset),
              row.holds);
    EXPECT_EQ(offset, row.offset) << row.start;
  }
}

// Every level has the last one as a base twice, so that the number of subobjects
// doubles.
TEST_F(LAYOUT, ManyEmptySubobjects) {
  std::deque<std::string> names = {"B0"};
  auto name = [&names](const char* prefix, int level) {
    names.push_back(prefix + std::to_string(level));
    return names.back().c_str();
  };
  build({"B0", plain, {}, {}});
  for (int level = 1; level < 32 && total_errors == 0; ++level) {
    const char* below = name("B", level - 1);
    a_class_spec left = {name("L", level), plain, {{below, false}}, {}};
    a_class_spec right = {name("R", level), plain, {{below, false}}, {}};
    build(left);
    build(right);
    a_type* type = build({name("B", level), plain, {{left.name, false}, {right.name, false}}, {}});
    if (level < 10) {
      EXPECT_EQ(type->size, UINT64_C(1) << level);
    }
  }
  EXPECT_NE(messages().find("class is too large"), std::string::npos);
}

} // namespace
