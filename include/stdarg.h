/* Variable arguments (C99 7.15). The arguments follow the last parameter in
   memory, in slots of a multiple of 4 bytes; the slot of one that is passed by
   reference holds its address. The C library's headers ask by __need___va_list for
   the type __gnuc_va_list alone. */

#ifndef __GNUC_VA_LIST
#define __GNUC_VA_LIST
typedef char* __gnuc_va_list;
#endif

#ifdef __need___va_list
#undef __need___va_list
#elif !defined(_STDARG_H)
#define _STDARG_H

typedef __gnuc_va_list va_list;

#ifdef __GNUC__

#define va_start(list, last) __builtin_va_start(list, last)
#define va_arg(list, type) __builtin_va_arg(list, type)
#define va_end(list) __builtin_va_end(list)
#define __va_copy(to, from) __builtin_va_copy(to, from)

#else

#define __va_slot(type) (sizeof(type) + 3 & ~3u)
#define __va_next(list, type) (((list) += __va_slot(type)) - __va_slot(type))

#define va_start(list, last) ((void)((list) = (char*)__va_parmadr(last) + __va_slot(last)))
#define va_arg(list, type)                                                                         \
  (*(__va_argref(type) ? *(type**)__va_next(list, type*) : (type*)__va_next(list, type)))
#define va_end(list) ((void)(list))
#define __va_copy(to, from) ((void)((to) = (from)))

#endif

#if __STDC_VERSION__ >= 199901L || __cplusplus >= 201103L || !__QL_STRICT_ANSI_MODE__
#define va_copy(to, from) __va_copy(to, from)
#endif

#endif
