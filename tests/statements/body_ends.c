// RUN: %krtparse --c99 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// RUN: %krtparse --c89 --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s
// A body ends with its last token, whether or not blocks stand round it.
// CHECK: pragma SRC_LOOP "{{.*}}:10" "11" "11" "while" ""
// CHECK: pragma SRC_LOOP "{{.*}}:14" "15" "18" "for" ""
// CHECK: pragma SRC_LOOP "{{.*}}:20" "21" "21" "do" ""

int t, n;
void f(void) {
  while (n--)
    t++;

  t = 1;
  for (;;)
    if (n)
      t--;
    else
      break;

  do
    t--;
  while (t);
}
