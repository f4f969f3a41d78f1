#ifndef TWO_GUARDS_A
#define TWO_GUARDS_A
#endif
#ifndef TWO_GUARDS_B
second_guard
#endif
