#ifndef WORDS_H
#define WORDS_H

#include "runtime.h"

typedef struct word {
  struct word *next; /* in the bucket */
  char *text;
  unsigned count;
  union {
    struct {
      unsigned first : 10, last : 10, seen_twice : 1;
    } where;
    unsigned all;
  } u;
} word;

typedef int (*word_order)(const word *, const word *);

#define HASH_SIZE 31

struct word_table {
  word *bucket[HASH_SIZE];
  int size;
};

#define for_each_word(table, index, w)                                                             \
  for (index = 0; index < HASH_SIZE; index++)                                                      \
    for (w = (table)->bucket[index]; w; w = w->next)

word *find_word(struct word_table *t, const char *text, size_t length, int enter);

#endif
