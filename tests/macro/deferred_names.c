// RUN: %krtparse --c99 -P %s | %FileCheck %s
// An iteration by deferred names: each rescanning does one step.
#define EMPTY()
#define DEFER(x) x EMPTY()
#define OBSTRUCT(x) x DEFER(EMPTY)()
#define EVAL(...) EVAL1(EVAL1(EVAL1(__VA_ARGS__)))
#define EVAL1(...) EVAL2(EVAL2(EVAL2(__VA_ARGS__)))
#define EVAL2(...) EVAL3(EVAL3(EVAL3(__VA_ARGS__)))
#define EVAL3(...) __VA_ARGS__
#define CAT(a, ...) a ## __VA_ARGS__
#define INC(x) CAT(INC_, x)
#define INC_0 1
#define INC_1 2
#define INC_2 3
#define INC_3 4
#define INC_4 5
#define INC_5 done
#define COUNT(x) x INNER DEFER(COUNT_ID)()(INC(x))
#define INNER ,
#define COUNT_ID() COUNT
EVAL(COUNT(0))
// CHECK: {{^}}0 , 1 , 2 , 3 , 4 , 5 , done
