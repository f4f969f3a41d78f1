// A long label widens its column by five blanks; 31 lines later it is a fifth
// narrower, down to ten.
// RUN: rm -f %t.ah && %krtparse --asmheaders --ah_output_file=%t.ah %s
// RUN: grep -n '\.emember' %t.ah | sed 's/^[0-9]*:[A-Za-z0-9_]*//' > %t.lines
// RUN: %FileCheck %s --match-full-lines --strict-whitespace < %t.lines

#define TEN(p) p##0, p##1, p##2, p##3, p##4, p##5, p##6, p##7, p##8, p##9
enum e {
  TEN(a),
  long_enumerator,
  TEN(b),
  TEN(c),
  TEN(d),
  TEN(f),
  TEN(g),
  TEN(h),
  TEN(i)
};
// 20 columns for the label itself and 30 lines behind it.
//      CHECK:      .emember 10          {{$}}
// CHECK-COUNT-30:                   .emember {{[0-9]+}}          {{$}}
// CHECK-COUNT-31:               .emember {{[0-9]+}}          {{$}}
// CHECK-NEXT:           .emember 72          {{$}}
