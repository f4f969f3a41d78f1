// RUN: ! %krtparse --g++ --gnu_version=60000 --no_code_gen --remarks --display_error_number %s 2> %t.err
// RUN: %FileCheck %s --implicit-check-not='{{error|warning}} #' < %t.err
// Standard attributes (C++11 7.6).

[[noreturn]] void stop();
void stop_too [[noreturn]] ();
[[noreturn, , ]] [[]] void stop_three();
// CHECK: line [[#@LINE+1]]: error #2103: attribute appears more than once
[[noreturn, noreturn]] void twice();

void late();
// CHECK: line [[#@LINE+1]]: error #2115: attribute "noreturn" did not appear on original declaration
[[noreturn]] void late();
[[noreturn]] void stop();

[[deprecated]] int old();
[[deprecated("use new")]] extern int old_value;
typedef int old_type [[deprecated]];
int user() {
  // CHECK: line [[#@LINE+1]]: warning #1718-D: "old_value" {{.*}}use new
  int value = old_value;
  // CHECK: line [[#@LINE+1]]: warning #1291-D: "old"
  return value + old();
}
// CHECK: line [[#@LINE+1]]: warning #1291-D: {{.*}}"old_type"
old_type new_variable;

// In the namespace of the GNU extensions the GNU rules hold.
struct [[gnu::packed]] packed { int a : 7; int b : 30; };
static_assert(sizeof(packed) == 5, "");
[[gnu::__unused__]] static int unused_value;
// CHECK: line [[#@LINE+1]]: warning #2104-D: attribute "gnu::malloc" does not apply here
[[gnu::malloc]] extern int not_a_function;

// CHECK: line [[#@LINE+2]]: warning #3163-D: attribute namespace "elsewhere" is unrecognized
// CHECK: line [[#@LINE+1]]: remark #1173-D: unknown attribute "elsewhere::fast"
[[elsewhere::fast(1, {2})]] int unknown_namespace();
// CHECK: line [[#@LINE+1]]: warning #1173-D: unknown attribute "unroll"
[[unroll(4)]] int no_namespace();
// CHECK: line [[#@LINE+1]]: error #2104: attribute "carries_dependency" does not apply here
[[carries_dependency]] int variable;

alignas(16) int aligned_value;
struct alignas(8) an_aligned_struct { char c; };
static_assert(sizeof(an_aligned_struct) == 8, "");
alignas(double) char like_double;
alignas(0) char no_alignment;
// CHECK: line [[#@LINE+1]]: error #2830: alignas does not apply here
typedef alignas(4) int bad_typedef;
// CHECK: line [[#@LINE+2]]: error #126: expected a "("
// CHECK: line [[#@LINE+1]]: error #80: expected a type specifier
alignas int no_value;

// CHECK: line [[#@LINE+1]]: warning #2104-D: attribute "unused" does not apply here
namespace [[deprecated]] old_namespace __attribute__((unused)) { int member; }
// CHECK: line [[#@LINE+1]]: warning #3104-D: attribute "abi_tag" is ignored on a namespace that is not inline
namespace tagged __attribute__((__abi_tag__("one"))) { int member; }
inline namespace inline_tagged __attribute__((__abi_tag__("two"))) { int other_member; }
// CHECK: line [[#@LINE+1]]: warning #2104-D: attribute "unused" does not apply here
using namespace tagged __attribute__((unused));
