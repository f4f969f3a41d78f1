// RUN: %krtparse --gcc --no_code_gen %s > %t.out 2>&1
// RUN: %FileCheck %s < %t.out
// RUN: %krtparse --c99 --strict --no_code_gen %s > %t.out 2>&1; test $? -eq 2

/* In GNU C a declaration at file scope may do without specifiers. */
// CHECK: line [[@LINE+1]]: warning: explicit type is missing ("int" assumed)
alone;
// CHECK: line [[@LINE+1]]: warning: explicit type is missing ("int" assumed)
first, second = 2, many[3];
// CHECK: line [[@LINE+1]]: warning: explicit type is missing ("int" assumed)
plain(x) {
  return x + alone + second + many[first];
}
// CHECK: line [[@LINE+1]]: warning: explicit type is missing ("int" assumed)
__attribute__((noinline)) behind(int x) {
  return plain(x);
}
