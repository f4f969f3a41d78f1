#pragma GCC system_header
in_system_header
#warning not in a system header
