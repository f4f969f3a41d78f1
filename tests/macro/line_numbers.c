// RUN: %krtparse --c99 -P %s | grep -v '^ *$' | %FileCheck %s
#define L __LINE__
#define id(x) x
#line 100
__LINE__ L id(L)
/* A comment
   over two lines */ __LINE__ L /*
*/ L
id(
__LINE__
L) __LINE__ id(L)
a __LINE__ \
L
id
(L __LINE__)
#if __LINE__ == 111 /*
*/
good
#endif
// CHECK:      {{^}}100 100 100
// CHECK:      {{^}}  102 102   103
// CHECK:      {{^}}104 104 106 106
// CHECK:      {{^}}a
// CHECK-SAME: 107
// CHECK-SAME: 107
// CHECK:      {{^}}109 109
// CHECK-NEXT: good
