/* Counts the words of a text: a hash table with chained buckets, strings,
   linked lists, pointers to functions, bit-fields, variable arguments. */
#include "words.h"

static void *allocate(size_t size) {
  void *p = malloc(size);

  if (!p) {
    puts("out of memory");
    exit(1);
  }
  return p;
}

static unsigned hash(const char *text, size_t length) {
  unsigned h = 2166136261u;

  while (length-- > 0)
    h = (h ^ (unsigned char)*text++) * 16777619u;
  return h;
}

static int same(const char *a, const char *b, size_t length) {
  while (length && *a == *b)
    a++, b++, length--;
  return length == 0 && *a == '\0';
}

word *find_word(struct word_table *t, const char *text, size_t length, int enter) {
  word **slot = &t->bucket[hash(text, length) % HASH_SIZE], *w;

  for (w = *slot; w; w = w->next)
    if (same(w->text, text, length))
      return w;
  if (!enter)
    return NULL;
  w = allocate(sizeof(word));
  memset(w, 0, sizeof *w);
  w->text = memcpy(allocate(length + 1), text, length);
  w->text[length] = '\0';
  w->next = *slot;
  t->size++;
  return *slot = w;
}

static int is_letter(int c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '\'';
}

static void count_words(struct word_table *t, const char *text) {
  unsigned position = 0;

  while (*text) {
    const char *start;
    word *w;

    while (*text && !is_letter(*text))
      text++;
    for (start = text; is_letter(*text);)
      ++text;
    if (text == start)
      break;
    w = find_word(t, start, (size_t)(text - start), 1);
    position++;
    if (!w->count++)
      w->u.where.first = position;
    else
      w->u.where.seen_twice = 1;
    w->u.where.last = position;
  }
}

static int by_text(const word *a, const word *b) {
  return strcmp(a->text, b->text);
}

static int by_count(const word *a, const word *b) {
  return a->count != b->count ? (a->count < b->count ? 1 : -1) : by_text(a, b);
}

static void print_sorted(struct word_table *t, word_order order, int most) {
  word **list = allocate(sizeof *list * (size_t)t->size), *w;
  int n = 0, i, j;

  for_each_word(t, i, w) {
    for (j = n++; j > 0 && order(list[j - 1], w) > 0; j--)
      list[j] = list[j - 1];
    list[j] = w;
  }
  for (i = 0; i < n && i < most; i++)
    printf("%3u %-8s first %2u last %2u%s\n", list[i]->count, list[i]->text,
           list[i]->u.where.first, list[i]->u.where.last,
           list[i]->u.where.seen_twice ? " *" : "");
}

static const char text[] = "How much wood would a woodchuck chuck, if a woodchuck could chuck wood? "
                           "A woodchuck would chuck all the wood he could chuck "
                           "if a woodchuck could chuck wood. Couldn't he?";

int main() {
  static struct word_table table;
  word_order orders[2];
  int i;

  orders[0] = by_count;
  orders[1] = &by_text;
  count_words(&table, text);
  printf("%d different words\n", table.size);
  for (i = 0; i < 2; i++) {
    puts(i ? "by text:" : "by count:");
    print_sorted(&table, orders[i], 6 + 2 * i);
  }
  if (find_word(&table, "wood", 4, 0) && !find_word(&table, "coal", 4, 0))
    puts("wood, but no coal");
  return 0;
}
