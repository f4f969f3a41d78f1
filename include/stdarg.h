/* Variable arguments (C99 7.15). The arguments follow the last parameter in
   memory, each at its own size. The C library's headers ask by __need___va_list
   for the type __gnuc_va_list alone. */

#ifndef __GNUC_VA_LIST
#define __GNUC_VA_LIST
typedef char *__gnuc_va_list;
#endif

#ifdef __need___va_list
#undef __need___va_list
#elif !defined(_STDARG_H)
#define _STDARG_H

typedef __gnuc_va_list va_list;

#define va_start(list, last) ((void)((list) = (char *)__va_parmadr(last) + sizeof(last)))
#define va_arg(list, type) (*(type *)(((list) += sizeof(type)) - sizeof(type)))
#define va_end(list) ((void)(list))
#define __va_copy(to, from) ((void)((to) = (from)))
#if __STDC_VERSION__ >= 199901L || __cplusplus >= 201103L || !__QL_STRICT_ANSI_MODE__
#define va_copy(to, from) __va_copy(to, from)
#endif

#endif
