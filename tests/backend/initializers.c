// Initial data: order, gaps, members of unions, addresses, and what is skipped.
// RUN: %krtparse --i_output_file=%t.if %s && %ifdump %t.if | %FileCheck %s

struct node {
  struct node *next;
  int value;
  struct {
    int b, c;
  } inner;
};
// CHECK-LABEL: init chain
// CHECK-NEXT: (UAND:struct node* (NAME:struct node chain))
// CHECK-NEXT: (LCON:int 3)
// CHECK-NEXT: (SKIP:int 2)
struct node chain = {&chain, 3};
// CHECK-LABEL: init bf
// CHECK-NEXT: (LCON:unsigned 1)
// CHECK-NEXT: (LCON:int -3)
// CHECK-NEXT: init padded
struct {
  unsigned a : 3, : 2;
  int c : 4;
} bf = {1, -3};
// CHECK-NEXT: (ICON:char 97)
// CHECK-NEXT: (ICON:char 98)
// CHECK-NEXT: (ICON:char 0)
// CHECK-NEXT: (SKIP:int 5)
char padded[8] = "ab";
// CHECK-LABEL: init exact
// CHECK-NEXT: (ICON:char 97)
// CHECK-NEXT: (ICON:char 98)
char exact[2] = "ab";
// CHECK-NEXT: init matrix
// CHECK-NEXT: (LCON:int 1)
// CHECK-NEXT: (SKIP:int 2)
// CHECK-NEXT: (LCON:int 2)
// CHECK-NEXT: (LCON:int 3)
// CHECK-NEXT: (SKIP:int 1)
// CHECK-NEXT: (SKIP:int 3)
int matrix[3][3] = {{1}, {2, 3}};
// A pointer into an object: the offset is in bytes, and a conversion comes first.
// CHECK-LABEL: init into
// CHECK-NEXT: (PLUS:int* (UAND:int* (NAME:struct node chain)) (LCON:long 4))
int *into = &chain.value;
// CHECK-LABEL: init bytes
// CHECK-NEXT: (PCONV:char* (PLUS:struct node* (UAND:struct node* (NAME:struct node chain)) (LCON:long 4)))
char *bytes = (char *)&chain.value;
// CHECK-LABEL: init array
// CHECK-NEXT: (PCONV:void* (UAND:int[3][3]* (NAME:int[3][3] matrix)))
void *array = matrix;
// CHECK-LABEL: init function
// CHECK-NEXT: (PCONV:void* (UAND:int()* (NAME:int() declared)))
int declared();
void *function = (void *)declared;
// CHECK-LABEL: init text
// CHECK-NEXT: (PCONV:unsigned char* (SCON:char* "a\x00"))
unsigned char *text = (unsigned char *)"a";
// CHECK-LABEL: init constant_text
// CHECK-NEXT: (SCON:const char* "a\x00")
const char *constant_text = "a";
// CHECK-LABEL: init texts
// CHECK-NEXT: (SCON:char* "a\x00")
// CHECK-NEXT: (SKIP:int 1)
char *texts[2] = {"a"};
// Plain char is unsigned.
// CHECK-LABEL: init high
// CHECK-NEXT: (ICON:char 255)
// CHECK-NEXT: (ICON:char 128)
// CHECK-NEXT: init signed_high
// CHECK-NEXT: (ICON:signed char -1)
char high[2] = "\xff\x80";
signed char signed_high[1] = "\xff";
// An address that is a number shows its conversion, a null pointer doesn't.
// CHECK-LABEL: init port
// CHECK-NEXT: (PCONV:int* (LCON:unsigned 4294967280))
int *port = (int *)-16;
// CHECK-LABEL: init null
// CHECK-NEXT: (LCON:void* 0)
void *null = 0;
// An empty initialiser of an array would be no data; nor is a missing one.
// CHECK-NOT: init tentative
int tentative;
// CHECK: section types
// CHECK: symbol tentative class global
