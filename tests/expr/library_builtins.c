// RUN: %krtparse --gcc --no_code_gen %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=": error" < %t.out
// RUN: %krtparse --gcc -DGOOD --i_output_file=%t.if %s
// RUN: %ifdump %t.if | %FileCheck %s --check-prefix=IF

/* Builtin functions that stand for library functions: their types, their folds in
   constant expressions, and what a call becomes. */
int folded[] = {
    [__builtin_clz(1)] = __builtin_ffs(8),
    [__builtin_popcountll(7)] = __builtin_isnan(__builtin_nan("")),
};
char sizes[sizeof(__builtin_memset(0, 0, 0)) == 4 && sizeof(__builtin_bswap16(1)) == 2 ? 1 : -1];
double values[] = {__builtin_inf(), __builtin_fabs(-1.0)};

// IF: CALL:int {{.*}} __clzsi2
int zeros(unsigned word) {
  return __builtin_clz(word);
}

// IF: FGT:int
int greater(float a, double b) {
  return __builtin_isgreater(a, b) + (__builtin_object_size(&a, 0) == -1u);
}

// IF: UCALL:void {{.*}} abort
// IF: CALL:int {{.*}} printf
int ends(int n, char *text) {
  __builtin_prefetch(text, 0, 1);
  if (n == 0)
    __builtin_unreachable();
  else if (n == 1)
    return __builtin_printf("%s\n", __builtin_strcpy(text, "x"));
  __builtin_trap();
}

#ifndef GOOD
int variable;
// CHECK: line [[@LINE+1]]: error: expression must have a constant value
int not_folded[__builtin_clz(variable)];
void calls(void) {
  // CHECK: line [[@LINE+1]]: error: too few arguments in function call
  __builtin_strcpy("a");
  // CHECK: line [[@LINE+1]]: warning: a value of type "char *" cannot be used to initialize an entity of type "int"
  int number = __builtin_strchr("abc", 'b');
  // CHECK: line [[@LINE+1]]: error: too few arguments in function call
  variable = number + __builtin_isless(1.0);
}
#endif
