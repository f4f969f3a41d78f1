// The whole text of an assembly header, apart from the macros of the tool. The
// names of types without one are numbers of their own.
// RUN: rm -rf %t && mkdir %t && cp %s %t/d.c && cd %t && %krtparse --asmheaders d.c > d.log 2>&1
// RUN: test ! -s d.log && test ! -e d.if && grep -v '__[^T]' d.ah > d.own
// RUN: diff %S/Inputs/declarations.ah d.own
// RUN: grep -q '\.define "1",__ASM_HEADER__' d.ah
// The predefined macros show in the listing of -D.
// RUN: %krtparse --asmheaders --suppress_ah_warnings -DMINE=3 --ah_output_file=other.ah d.c
// RUN: grep -q '\.define "3",MINE' other.ah && ! grep WARNING other.ah

#define N 10
#define FLAG
#define TEXT "a"
#define ESCAPED "a\"b"
#define PASTE a##b
#define PASTE_WIDE a ## b
#define CALL(x, y) x
#define TWO_TEXTS "x" "y"
#define MIXED "x" y
#define GONE 1
#undef GONE
#define AGAIN 1
#undef AGAIN
#define AGAIN (2)
#define CALL_NO_MORE(x) x
#undef CALL_NO_MORE
#define CALL_NO_MORE 1

enum color { RED, GREEN = 5, BLUE = -1 };
enum { NAMELESS };
enum wide { WIDE = 0xFFFFFFFF };

struct point {
  char c;
  int i;
};
struct bits {
  unsigned a : 3;
  unsigned : 2;
  unsigned b : 6;
  short s;
  unsigned last : 1;
};
typedef struct {
  struct point p, q[2][3];
  union {
    int number;
    char letter;
  } u;
  enum color color;
  enum wide wide;
  double (*function)(int);
  unsigned char flag;
} nameless_struct;
union small_last {
  long long big;
  char small;
};
struct incomplete;

typedef int number;
typedef struct point point_type;
typedef point_type point_type_again;
typedef const enum color color_type;
typedef struct point *pointer;

int function(void);
extern int other(int), printf(const char *, ...);
static int local(void) {
  return 1;
}
int defined(void) {
  return local();
}
extern struct point origin;
extern color_type tint;
extern nameless_struct object;
extern int plain, list[3];
int tentative;
static int internal = 3;
int *use = &internal;
