/* Boolean type and values (C99 7.16). */

#ifndef _STDBOOL_H
#define _STDBOOL_H

#ifndef __cplusplus
#if __STDC_VERSION__ >= 199901L || defined(__GNUC__)
#define bool _Bool
#else
#define bool __znt_bool_type__
#endif
#define true 1
#define false 0
#endif
#define __bool_true_false_are_defined 1

#endif
