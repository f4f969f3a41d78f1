#include "class_decl_int.h"
__attribute__((weak)) void check_members_of_complete_class(a_type*) {}
