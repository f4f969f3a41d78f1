// The IL file holds the regions in memory; what the compiler goes on to write
// is the same with it and without.
//
// RUN: rm -rf %t && mkdir -p %t && cd %t
// RUN: %krtparse --c --i_output_file=plain.if %s
// RUN: test ! -e write_cil_file.cil
// RUN: %krtparse --c --write_cil_file --i_output_file=with.if %s
// RUN: %ifdump plain.if | grep -v -i "write_cil_file\|plain.if" > plain.txt
// RUN: %ifdump with.if | grep -v -i "write_cil_file\|with.if" > with.txt
// RUN: cmp plain.txt with.txt
// RUN: head -c 21 write_cil_file.cil | head -1 | grep "^ZNT IL file (v4.13)"
// RUN: grep -q -a "a text in the data" write_cil_file.cil
//
// An error leaves no IL file, and one that can't be written no other file.
// RUN: %krtparse --c --write_cil_file -DBROKEN %s; test $? = 2
// RUN: test ! -e write_cil_file.cil
// RUN: ln -s /dev/full write_cil_file.cil
// RUN: %krtparse --c --write_cil_file %s > full.txt 2>&1; test $? = 4
// RUN: %FileCheck %s < full.txt
// CHECK: error while writing

struct node {
  int key;
  struct node* next;
};
static const char* text = "a text in the data";
static int count;

static int unused(void) {
  return count;
}

int length(struct node* list) {
  int n = 0;
  while (list) {
    struct node* next = list->next;
    n += list->key;
    list = next;
  }
  count++;
  return n + *text;
}

#ifdef BROKEN
int broken = ;
#endif
