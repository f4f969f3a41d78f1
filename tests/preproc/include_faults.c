// RUN: %krtparse --c99 -I%S/Inputs -DNONE %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=NONE %s < %t.out
// RUN: %krtparse --c99 -I%S/Inputs -DNO_NAME %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=NO-NAME %s < %t.out
// RUN: %krtparse --c99 -I%S/Inputs -DEMPTY_NAME %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=NO-NAME %s < %t.out
// RUN: %krtparse --c99 -I%S/Inputs -DUNCLOSED %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=NO-NAME %s < %t.out
// RUN: %krtparse --c99 -I%S/Inputs -DSELF %s > %t.out 2>&1; test $? -eq 4
// RUN: %FileCheck --check-prefix=SELF %s < %t.out
// RUN: %krtparse --c99 -P -I%S/Inputs -DUNBALANCED %s > %t.out 2>&1; test $? -eq 2
// RUN: %FileCheck --check-prefix=UNBALANCED %s < %t.out
// RUN: %krtparse --c99 -P -I%S/Inputs -DEXTRA %s 2>&1 | %FileCheck --check-prefix=EXTRA %s

#ifdef NONE
#include "no_such_file.h"
// NONE: include_faults.c", line [[@LINE-1]]: fatal error: cannot open source file "no_such_file.h"
#endif
#ifdef NO_NAME
#include no_name
#endif
#ifdef EMPTY_NAME
#include <>
#endif
#ifdef UNCLOSED
#include "unclosed
#endif
// NO-NAME: fatal error: expected a file name
#ifdef SELF
#include "self.h"
// SELF: fatal error: #include file "{{.*}}self.h" includes itself
#endif
#ifdef UNBALANCED
// UNBALANCED: "{{.*}}open_if.h", line 1: error: the #endif for this directive is missing
#include "open_if.h"
// UNBALANCED: "{{.*}}skip_to_end.h", line 1: error: the #endif for this directive is missing
#include "skip_to_end.h"
#if 1
// UNBALANCED: "{{.*}}close_if.h", line 1: error: the #if for this directive is missing
#include "close_if.h"
#endif
// UNBALANCED: {{^}}still_there
still_there
#endif
#ifdef EXTRA
// EXTRA: line [[@LINE+1]]: warning: extra text after expected end of preprocessing directive
#include "once.h" extra
// EXTRA: line [[@LINE+1]]: warning: #include_next cannot be used in the primary source file
#include_next "guarded.h"
#endif
