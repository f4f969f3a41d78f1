/* RUN: %krtparse -n --old_c --display_error_number %s > %t.out 2>&1; test $? -eq 0
   RUN: %krtparse -n --c99 -D NEW --display_error_number %s > %t.out 2>&1; test $? -eq 2
   RUN: %FileCheck %s < %t.out
   Old C joins an operator and a `=` behind it to an assignment, and computes
   in double. */
int a, b;
float f;
char c1[sizeof(f + f) == sizeof(double) ? 1 : -1];
int function(x) int x;
{
  a + = b;
  a - = b;
  a * = b;
  a / = 3;
  a % = 3;
  a << = 1;
  a >> = 1;
  a & = b;
  a ^ = b;
  a | = b;
  a = a - - b;
  return a + = x;
}
/* CHECK: error #95:
   CHECK-COUNT-11: error #29:
 */
