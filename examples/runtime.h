/* The library functions that the examples use, declared for the target as
   well as for a host compiler. */
#ifndef RUNTIME_H
#define RUNTIME_H

#ifdef __SIZE_T_TYPE__
typedef __SIZE_T_TYPE__ size_t;
#else
typedef __SIZE_TYPE__ size_t;
#endif

#define NULL ((void *)0)

int printf(const char *format, ...);
int puts(const char *text);
void *malloc(size_t size);
void *memcpy(void *to, const void *from, size_t size);
void *memset(void *to, int value, size_t size);
size_t strlen(const char *text);
int strcmp(const char *a, const char *b);
void exit(int status);

#endif
