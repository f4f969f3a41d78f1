/* Functions that don't return (C11 7.23). */

#ifndef _STDNORETURN_H
#define _STDNORETURN_H

#ifndef __cplusplus
#define noreturn _Noreturn
#endif

#endif
