/* Common definitions (C99 7.17). A macro __need_... asks for one of them alone;
   the C library's headers do so. */

#if !defined(__need_size_t) && !defined(__need_wchar_t) && !defined(__need_NULL) &&                \
    !defined(__need_ptrdiff_t) && !defined(__need_wint_t)
#define __need_size_t
#define __need_wchar_t
#define __need_NULL
#define __need_ptrdiff_t
#define __need_offsetof
#endif

#if defined(__need_size_t) && !defined(_SIZE_T)
#define _SIZE_T
typedef __SIZE_T_TYPE__ size_t;
#endif

#if defined(__need_ptrdiff_t) && !defined(_PTRDIFF_T)
#define _PTRDIFF_T
typedef __PTRDIFF_T_TYPE__ ptrdiff_t;
#endif

#if defined(__need_wchar_t) && !defined(_WCHAR_T)
#define _WCHAR_T
typedef __WCHAR_T_TYPE__ wchar_t;
#endif

#if defined(__need_wint_t) && !defined(_WINT_T)
#define _WINT_T
typedef unsigned int wint_t;
#endif

#ifdef __need_NULL
#undef NULL
#ifdef __cplusplus
#define NULL 0
#else
#define NULL ((void*)0)
#endif
#endif

#ifdef __need_offsetof
#undef offsetof
#ifdef __GNUC__
#define offsetof(type, member) __builtin_offsetof(type, member)
#else
#define offsetof(type, member) ((size_t)__intaddr__(&((type*)0)->member))
#endif
#if !defined(_MAX_ALIGN_T) && (__STDC_VERSION__ >= 201112L || __cplusplus >= 201103L)
#define _MAX_ALIGN_T
typedef long long max_align_t;
#endif
#endif

#undef __need_size_t
#undef __need_wchar_t
#undef __need_NULL
#undef __need_ptrdiff_t
#undef __need_wint_t
#undef __need_offsetof
