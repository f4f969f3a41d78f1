// RUN: %krtparse --c99 -P %s > %t.out 2> %t.err; test $? -eq 2
// RUN: %FileCheck --implicit-check-not=never %s < %t.out
// RUN: %FileCheck --check-prefix=ERR --implicit-check-not=line %s < %t.err
// RUN: %krtparse --c99 -P --strict %s > %t.strict 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=STRICT %s < %t.strict

#
#ifdef 123
// ERR: line [[@LINE-1]]: warning: expected an identifier
// STRICT: line [[@LINE-2]]: error: expected an identifier
never
#else junk
// ERR: line [[@LINE-1]]: warning: extra text after expected end of preprocessing directive
else_of_ifdef
#endif
// CHECK: else_of_ifdef
#ifndef +
// ERR: line [[@LINE-1]]: error: expected an identifier
never
#endif
#if 0
#if 1
#else
#else
#elif
#nonsense ' " /* which goes
on */
#endif junk
  # elif 1
elif_of_if
#elif 1 / 0
never
#else
never
#else
// ERR: line [[@LINE-1]]: error: directive is not allowed -- an #else has already appeared
never
#elif 1
// ERR: line [[@LINE-1]]: error: directive is not allowed -- an #else has already appeared
never
#endif
// CHECK: elif_of_if
#if 0
#else
live
#elif 1
// ERR: line [[@LINE-1]]: error: directive is not allowed -- an #else has already appeared
never
#endif
// CHECK: live
#if 1 extra
// ERR: line [[@LINE-1]]: error: extra text after expected end of preprocessing directive
still_true
#endif
// CHECK: still_true
#ifdef __VA_ARGS__
// ERR: line [[@LINE-1]]: error: {{.*}}__VA_ARGS__
never
#endif
#undef 1
// ERR: line [[@LINE-1]]: error: expected an identifier
#line x
// ERR: line [[@LINE-1]]: error: expected a line number
#line 0
// ERR: line [[@LINE-1]]: error: invalid line number
#line 4294967296
// ERR: line [[@LINE-1]]: error: invalid line number
#line 12 L"wide"
// ERR: line [[@LINE-1]]: error: expected a file name
#endif
// ERR: line [[@LINE-1]]: error: the #if for this directive is missing
#else
// ERR: line [[@LINE-1]]: error: the #if for this directive is missing
#elif 1
// ERR: line [[@LINE-1]]: error: the #if for this directive is missing
# /* never */ if 0
never
# if 1
// ERR: line [[@LINE-1]]: error: the #endif for this directive is missing
// ERR: line [[@LINE-4]]: error: the #endif for this directive is missing
