// Sizes, offsets and bit offsets; everything is aligned to the byte.
// RUN: %krtparse --i_output_file=%t.if %s
// RUN: %krtparse --abi=eabi --i_output_file=%t.if %s
// RUN: %krtparse --c99 --no_gcc --i_output_file=%t.if -DSTRICT %s

#define SAME(a, b) extern char check[(a) == (b) ? 1 : -1]
#ifdef STRICT
#define OFFSET(type, member) (unsigned)&((type *)0)->member
#else
#define OFFSET(type, member) __builtin_offsetof(type, member)
#endif

struct plain { char a; int b; short c; };
SAME(sizeof(struct plain), 7);
SAME(OFFSET(struct plain, b), 1);
SAME(OFFSET(struct plain, c), 5);
struct nested { char a; struct plain p[2]; long long l; };
SAME(sizeof(struct nested), 23);
SAME(OFFSET(struct nested, p[1].c), 13);

// A bit-field is never split across its container, here its declared type.
struct cut { int a : 3; int b : 30; };
SAME(sizeof(struct cut), 5);
struct full { int a : 3; int b : 29; };
SAME(sizeof(struct full), 4);
// The container begins at the current byte, so that a field may cross a
// multiple of its size.
struct straddling { int a : 20, b : 10, c : 10; };
SAME(sizeof(struct straddling), 5);
struct narrow { unsigned char a : 3, b : 5, c : 1; };
SAME(sizeof(struct narrow), 2);
struct mixed { unsigned char a : 6; unsigned short b : 10; unsigned char c : 4; };
SAME(sizeof(struct mixed), 3);
struct wide { long long a : 30, b : 30, c : 6; };
SAME(sizeof(struct wide), 9);

// The class reaches to the end of the declared container.
struct behind_char { char c; int b : 3; };
SAME(sizeof(struct behind_char), 4);
struct lone { int a : 1; };
SAME(sizeof(struct lone), 4);
struct moved { int a; int b : 3; char c; };
SAME(sizeof(struct moved), 6);
SAME(OFFSET(struct moved, c), 5);
struct long_container { long long a : 4; };
SAME(sizeof(struct long_container), 8);

// A width of zero closes the byte.
struct closed { int a : 3; int : 0; int b : 3; };
SAME(sizeof(struct closed), 4);
struct closed_bytes { unsigned char a : 3; unsigned char : 0; unsigned char b : 3; };
SAME(sizeof(struct closed_bytes), 2);
struct unnamed { unsigned char : 4; unsigned char a : 4; unsigned char : 4; };
SAME(sizeof(struct unnamed), 2);

union widest { char a; int b; short c[5]; };
SAME(sizeof(union widest), 10);
SAME(OFFSET(union widest, c), 0);
union of_bits { int a : 3; unsigned char b : 7; };
SAME(sizeof(union of_bits), 4);

struct flexible { int a; char rest[]; };
SAME(sizeof(struct flexible), 4);
SAME(OFFSET(struct flexible, rest), 4);
struct flexible_words { char a; int rest[]; };
SAME(sizeof(struct flexible_words), 1);

struct later;
struct later *forward;
struct later { int a, b; };
SAME(sizeof *forward, 8);

#ifdef STRICT
struct nothing { int : 0; };
SAME(sizeof(struct nothing), 1);
#else
struct nothing {};
SAME(sizeof(struct nothing), 0);
struct no_elements { int a[0]; };
SAME(sizeof(struct no_elements), 0);
#endif

enum small { ONE = 1 };
SAME(sizeof(enum small), 4);
SAME(sizeof(int *), 4);
SAME(sizeof(int (*)(void)), 2);
SAME(sizeof(long), 4);
SAME(sizeof(long long), 8);
SAME((char)-1 > 0, 1);
SAME('\xff', 255);
