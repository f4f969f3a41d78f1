// Universal characters in names become letters that an assembler takes; messages show
// the name as it was written.
// RUN: %krtparse --c99 --i_output_file=%t.if %s 2>&1 | %FileCheck --check-prefix=MESSAGE %s
// RUN: %ifdump %t.if | %FileCheck %s
// MESSAGE: line [[#@LINE+2]]: warning: variable "\u{{00[eE]8}}" was declared but never referenced
// CHECK: begin_func _u00E9t_u00E9
int \u00e9t\u00e9(void) { int \u00e8; return 0; }
struct s\u00e9 { int \u00fc, plain; } object;
int variable\u00e9 = 1;
// CHECK: (RETURN:int (NAME:int(int) f) (PLUS:int (PLUS:int (NAME:int variable_u00E9) (NAME:int %_u00EE)) (STDOT:int (NAME:struct s_u00E9 object) (FIELD:int s_u00E9::_u00FC))))
int f(int \u00ee) { return variable\u00e9 + \u00ee + object.\u00fc; }
// CHECK: (NAME:int {{.*}}deja_U0001F600
int g(void) { static int deja\U0001f600; return deja\U0001f600++; }
// CHECK-NOT: \u00
