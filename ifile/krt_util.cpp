#include "krt_util.h"

const int icode_cpu_id = 1100;
