// The alignment and packing that attributes ask for.
// RUN: %krtparse --i_output_file=%t.if %s
// RUN: %krtparse --display_error_number -DFAULTS %s > %t.err 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.err

#define SAME(a, b) extern char check[(a) == (b) ? 1 : -1]
#define OFFSET(type, member) __builtin_offsetof(type, member)
#define ALIGNED(n) __attribute__((aligned(n)))
#define PACKED __attribute__((packed))

struct aligned_member { char c; int i ALIGNED(4); char d; };
SAME(OFFSET(struct aligned_member, i), 4);
SAME(sizeof(struct aligned_member), 12);
SAME(__alignof__(struct aligned_member), 4);

struct ALIGNED(8) aligned_class { char c; };
SAME(sizeof(struct aligned_class), 8);
struct behind { char c; } ALIGNED(4);
SAME(sizeof(struct behind), 4);
struct holder { char c; struct aligned_class a; struct behind b[2]; };
SAME(OFFSET(struct holder, a), 8);
SAME(OFFSET(struct holder, b[1]), 20);
SAME(sizeof(struct holder), 24);

// Packing caps what a type asks for, but not what the member does.
struct packed { char c; struct aligned_class a; int i ALIGNED(4); } PACKED;
SAME(OFFSET(struct packed, a), 1);
SAME(OFFSET(struct packed, i), 12);
SAME(sizeof(struct packed), 16);
struct PACKED packed_in_front { char c; struct aligned_class a; };
SAME(sizeof(struct packed_in_front), 9);
struct packed_member { char c; struct aligned_class a PACKED; struct behind b; };
SAME(OFFSET(struct packed_member, a), 1);
SAME(OFFSET(struct packed_member, b), 12);
#pragma pack(push, 2)
struct capped { char c; struct aligned_class a; int i ALIGNED(4); };
SAME(OFFSET(struct capped, a), 2);
SAME(OFFSET(struct capped, i), 12);
SAME(sizeof(struct capped), 16);
struct size_of_capped { struct behind b; char c; };
SAME(sizeof(struct size_of_capped), 6);
SAME(__alignof__(struct size_of_capped), 2);
#pragma pack(pop)

// A packed bit-field follows its neighbour at once, and has no container to
// which the class would reach.
struct bits { int a : 20, b : 20, c : 3; } PACKED;
SAME(sizeof(struct bits), 6);
struct short_bits { char c; int a : 3; } PACKED;
SAME(sizeof(struct short_bits), 2);
struct split { int a : 30; int b PACKED : 4; };
SAME(sizeof(struct split), 5);
struct aligned_bits { int a : 3; int b : 3 ALIGNED(4); };
SAME(sizeof(struct aligned_bits), 8);

// A width of zero closes the byte only where the fields aren't packed.
struct packed_zero { int a : 3; int : 0; int b : 3; } PACKED;
SAME(sizeof(struct packed_zero), 1);
#pragma pack(push, 1)
struct pragma_zero { int a : 3; int : 0; int b : 3; } PACKED;
SAME(sizeof(struct pragma_zero), 2);
#pragma pack(pop)
// Of 1 a byte-aligned type has no alignment to lose.
struct unreduced { char c; int i ALIGNED(1); };
SAME(sizeof(struct unreduced), 5);

typedef union { int *i; char *c; } any_pointer __attribute__((transparent_union));
union of_pointers { int *i; char c; } __attribute__((transparent_union));

#ifdef FAULTS
// CHECK: line [[#@LINE+1]]: error #1168: invalid attribute for field "b"
struct unloadable { long long a : 6, b : 60; } PACKED;
// CHECK: line [[#@LINE+1]]: error #1168: invalid attribute for field "<unnamed>"
struct unloadable_gap { long long a : 6, : 59; } PACKED;
struct loadable { long long a : 6, b : 58; } PACKED;
// CHECK: line [[#@LINE+1]]: warning #1236-D: a reduction in alignment without the "packed" attribute is ignored
struct reduced { char c; struct aligned_class a ALIGNED(1); };
SAME(OFFSET(struct reduced, a), 8);
struct reduced_packed { char c; struct aligned_class a PACKED ALIGNED(2); };
SAME(OFFSET(struct reduced_packed, a), 2);
// CHECK: line [[#@LINE+1]]: warning #1236-D
struct ALIGNED(2) reduced_class { struct behind b; };
SAME(__alignof__(struct reduced_class), 4);
// CHECK: line [[#@LINE+1]]: warning #1167-D: invalid attribute for "struct behind"
extern struct ALIGNED(8) behind late;
SAME(__alignof__(struct behind), 4);
// CHECK: line [[#@LINE+1]]: warning #2159-D
union floating { float f; int i; } __attribute__((transparent_union));
// CHECK: line [[#@LINE+1]]: warning #1185-D: union cannot be transparent because of its field "i"
union wider { char c; int i; } __attribute__((transparent_union));
// CHECK: line [[#@LINE+1]]: warning #1185-D
typedef union { char c; int i; } wider_typedef __attribute__((transparent_union));
#endif
