// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* _Bool objects hold 0 or 1 whatever is done to them, and the expression that
   leads to the object is evaluated once. */
int printf(const char *format, ...);

struct s { int pad; _Bool flag; unsigned n : 3; _Bool bit : 1; } objects[3];
_Bool flags[4];
int calls;

static _Bool *next_flag(void) { return &flags[calls++]; }
static struct s *next_object(void) { return &objects[calls++ % 3]; }

int main(void) {
  _Bool b = 5, c;
  int i, two = 2, *p = &two;
  b += 1; printf("%d", b); b -= 1; printf("%d", b); b = two; b *= two; printf("%d", b);
  b--; printf("%d", b); --b; printf("%d", b); c = b++; printf("%d%d", b, c);
  c = b--; printf("%d%d", b, c); b |= 4; printf("%d", b); b <<= 3; printf("%d", b);
  b &= 2; printf("%d", b); b = p; printf("%d", b); b ^= 1; printf("%d\n", b);

  *next_flag() += 2; (*next_flag())++; ++*next_flag(); c = (*next_flag())--;
  printf("%d %d%d%d%d %d\n", calls, flags[0], flags[1], flags[2], flags[3], c);
  calls = 0;
  next_object()->flag |= 8; next_object()->bit += 3; c = next_object()->bit++;
  printf("%d %d%d%d %d%d%d %d\n", calls, objects[0].flag, objects[1].flag, objects[2].flag,
         objects[0].bit, objects[1].bit, objects[2].bit, c);
  i = 0;
  flags[i++] = 4; flags[i++] -= 3; objects[i--].flag = two; flags[i++]--;
  printf("%d %d%d%d%d\n", i, flags[0], flags[1], flags[2], flags[3]);
  return (_Bool)two + (_Bool)0 - 1;
}
