// Raw strings leave the preprocessor as they came, over lines and in macros.
// RUN: %krtparse --g++ --gnu_version=60000 -E %s > %t.out
// RUN: %FileCheck --match-full-lines --strict-whitespace %s < %t.out
#define X expanded
#define ID(x) x
//      CHECK:a R"(X "q" \n)" expanded
a R"(X "q" \n)" X
//      CHECK:b R"d(one ??= two \
// CHECK-NEXT:three )" X )d" expanded
b R"d(one ??= two \
three )" X )d" X
//      CHECK:c R"(
// CHECK-NEXT:// no comment
// CHECK-NEXT:#define NO
// CHECK-NEXT:)" expanded
c ID(R"(
// no comment
#define NO
)") X
//      CHECK:d u8R"(x)" "y"_sfx "y" expanded
d u8R"(x)" "y"_sfx "y"X
//      CHECK:e "line 25"
#define STR(x) #x
#define XSTR(x) STR(x)
e XSTR(line __LINE__)
