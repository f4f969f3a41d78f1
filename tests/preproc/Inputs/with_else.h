#ifndef WITH_ELSE_H
#define WITH_ELSE_H
first_reading
#else
later_reading
#endif
