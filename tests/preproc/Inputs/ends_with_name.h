#define call(x) [x]
call
