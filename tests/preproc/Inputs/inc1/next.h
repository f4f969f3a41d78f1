from_inc1
#include_next <next.h>
