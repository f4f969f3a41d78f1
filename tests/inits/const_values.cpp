// RUN: %krtparse --g++ --gnu_version=60000 --no_code_gen %s
// RUN: %krtparse --strict --c++ --no_code_gen %s
// A const integer initialised by an expression of constants is a constant (C++11
// 5.19 p3).

const int one = 1;
const int two = one + 1;
int of_two[two];
struct Statics {
  static const int first = 1;
  static const int second = first + 1;
  enum { third = second + 1 };
  int array[second];
  int bits : third;
};
const unsigned size = Statics::second * sizeof(int);
int of_size[size];
int function(int i) {
  const int local = two + 1;
  int array[local];
  array[0] = i;
  switch (i) {
  case two:
  case local:
    return array[0];
  }
  return 0;
}
