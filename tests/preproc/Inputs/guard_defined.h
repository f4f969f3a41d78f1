#if !defined(GUARD_DEFINED_H)
#define GUARD_DEFINED_H
defined_text
#endif
