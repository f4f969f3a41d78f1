/* RUN: %krtparse --no_code_gen --old_c --display_error_number %s > %t.out 2>&1; test $? -eq 2
   RUN: %FileCheck %s < %t.out
   A cast between types of one size is still an lvalue in old C. */
int i, *ip;
char c;
struct s { unsigned bits : 3; } s1;
old_style() {
  (unsigned)i = 1;
  (int)ip = 3;
  ((unsigned)i)++;
  ip = (int *)&(unsigned)i;
  (char)i = 1;
/* CHECK: line [[@LINE-1]]: error #138:
   */
  (float)i = 1;
/* CHECK: line [[@LINE-1]]: error #138:
   */
  (unsigned)s1.bits = 1;
/* CHECK: line [[@LINE-1]]: error #138:
   */
}
