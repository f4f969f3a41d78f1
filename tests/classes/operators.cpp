// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen --display_error_number %s 2> %t.err; test $? -eq 2
// RUN: %FileCheck %s --implicit-check-not=error < %t.err
// The parameters of operator functions (C++11 3.7.4, 13.5).

typedef __SIZE_TYPE__ size;
struct S {
  S operator+(int) const;
  S operator-();
  S &operator++();
  S operator++(int);
  int operator()(int, int = 1, ...);
  S *operator->();
  void *operator new(size, void *);
  void *operator new[](size);
  void operator delete(void *, size);
  // CHECK: line [[#@LINE+1]]: error #346: too many parameters for this operator function
  S operator/(int, int);
  // CHECK: line [[#@LINE+1]]: error #347: too few parameters for this operator function
  S operator%();
  // CHECK: line [[#@LINE+1]]: error #344: an operator may not be a static member function
  static S operator*(int, int);
  // CHECK: line [[#@LINE+1]]: error #502: the extra parameter of a postfix operator must have type "int"
  S operator--(char);
  // CHECK: line [[#@LINE+1]]: error #561: an operator function may not have an ellipsis parameter
  S operator|(...);
  // CHECK: line [[#@LINE+1]]: error #353: the first parameter of operator new must have type "size_t"
  void *operator new(char *);
  // CHECK: line [[#@LINE+1]]: error #354: operator new must return type "void *"
  int *operator new(size);
  // CHECK: line [[#@LINE+1]]: error #356: the first parameter of operator delete must have type "void *"
  void operator delete[](char *);
  // CHECK: line [[#@LINE+1]]: error #355: operator delete must return type "void"
  int operator delete(void *);
  // CHECK: line [[#@LINE+1]]: error #2848: a literal operator may not be a class member
  int operator "" _km(unsigned long long);
};
enum E { e };
S operator&(S, S);
E operator~(E);
// CHECK: line [[#@LINE+1]]: error #952: a nonmember operator function must have a parameter of class or enum type
int operator+(int, int);
// CHECK: line [[#@LINE+1]]: error #343: "operator =" must be a member function
S &operator=(S &, S &);
// CHECK: line [[#@LINE+1]]: error #438: a conversion function must be a nonstatic member function
operator int();
// CHECK: line [[#@LINE+1]]: error #299: expected an operator
int operator;
// CHECK: errors detected
