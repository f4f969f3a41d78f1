// RUN: %krtparse -P %s > %t.c89 2> %t.err; test $? -eq 2
// RUN: %FileCheck --check-prefix=C89 --implicit-check-not={{^only}} %s < %t.c89
// RUN: %FileCheck --check-prefix=ERR89 %s < %t.err
// RUN: %krtparse --c99 -P %s > %t.c99 2> %t.err; test $? -eq 2
// RUN: %FileCheck --check-prefix=C99 --implicit-check-not={{^only}} %s < %t.c99
// RUN: %FileCheck --check-prefix=ERR99 %s < %t.err
// Conditions are of type long before C99, of intmax_t from then on.

// ERR89: line [[@LINE+1]]: warning: integer operation result is out of range
#if 2147483647 + 1 > 0
only99_sum
#endif
// C99: only99_sum
#if 0xFFFFFFFF + 1 == 0
only89_unsigned_sum
#endif
// C89: only89_unsigned_sum
// ERR89: line [[@LINE+1]]: warning: shift count is too large
#if 1 << 40
only99_shift
#endif
// C99: only99_shift
#if ~0u == 4294967295u
only89_complement
#endif
// C89: only89_complement
#if -2147483647 - 1 < 0 && -1 >> 1 == -1 && -7 / 2 == -3 && -7 % 2 == -1
both_signed
#endif
// C89: both_signed
// C99: both_signed
#if -1 > 0u && (1 ? -1 : 0u) > 0 && (-1) / 2u > 1
both_unsigned
#endif
// C89: both_unsigned
// C99: both_unsigned
#if 0 && 1 / 0 || 1 || 1 % 0
both_silent
#endif
// C89: both_silent
// C99: both_silent

// What isn't a constant expression is false, whatever stands around it.
// ERR89: line [[@LINE+3]]: error: this operator is not allowed in a preprocessing expression
// ERR99-NOT: integer operation
// ERR99: line [[@LINE+1]]: error: this operator is not allowed in a preprocessing expression
#if !CALL(1, 2)
only_never
#else
both_else
#endif
// C89: both_else
// C99: both_else
// ERR99: line [[@LINE+1]]: error: expected an expression
#if
only_never
#elif 1
both_elif
#endif
// C89: both_elif
// C99: both_elif
// ERR99: line [[@LINE+1]]: error: this operator is not allowed in a preprocessing expression
#if 1++ || a = 1
only_never
#endif
