// RUN: %krtparse -n --c++ --display_error_number %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck %s < %t.out
// Type traits have their answers at compile time.
struct P { int a, b; };
union U { int a; };
enum E { e };
char answers[__is_pod(P) && __is_pod(int) && !__is_pod(void) ? 1 : -1];
char kinds[__is_class(P) && !__is_class(U) && __is_union(U) && __is_enum(E) && !__is_enum(int) ? 1 : -1];
char bases[__is_base_of(P, P) && !__is_base_of(P, U) && !__is_base_of(int, int) ? 1 : -1];
char converts[__is_convertible_to(int, double) && !__is_convertible_to(int *, int) &&
                      __is_convertible_to(int *, void *) && !__is_convertible_to(P, int) &&
                      __is_convertible_to(void, void) ? 1 : -1];
char trivial[__has_trivial_copy(P) && __has_trivial_destructor(P) && __is_trivial(P) &&
                     __has_trivial_constructor(int) && !__has_virtual_destructor(P) &&
                     !__is_polymorphic(P) && !__is_abstract(P) && !__has_user_destructor(P) ? 1 : -1];
char made[__is_constructible(int, double) && !__is_constructible(int, P) &&
                  __is_constructible(P) && !__is_constructible(void) ? 1 : -1];
bool size = sizeof(__is_pod(P)) == sizeof(bool);
int missing = __is_base_of(P);
// CHECK: line [[@LINE-1]]: error #255:
int unknown = __is_pod(nothing);
// CHECK-NEXT: line [[@LINE-1]]: error #80:
