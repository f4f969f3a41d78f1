// RUN: %krtparse --c99 -P %s | %FileCheck %s
#define COLORS(X) \
  X(red, 1)       \
  X(green, 2)
#define AS_ENUM(name, value) color_##name = value,
#define AS_TEXT(name, value) [value] = #name,
enum { COLORS(AS_ENUM) };
// CHECK: enum { color_red = 1, color_green = 2, };
const char *names[] = { COLORS(AS_TEXT) };
// CHECK: { [1] = "red", [2] = "green", };
