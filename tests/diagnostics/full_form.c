// The full form: the source line as it stands in the file, and a caret.
//
// RUN: mkdir -p %t.dir && cp %s %t.dir/full.c && cd %t.dir
// RUN: %krtparse -E --no_brief_diagnostics full.c > %t.i 2> %t.err; test $? -eq 2
// RUN: %FileCheck --strict-whitespace --match-full-lines --check-prefix=FULL %s < %t.err
//
// The brief form has neither the line nor the wrapping.
// RUN: %krtparse -E full.c > %t.i 2> %t.err; test $? -eq 2
// RUN: %FileCheck --check-prefix=BRIEF --implicit-check-not='{{^ }}' %s < %t.err
//
// RUN: %krtparse -E --no_brief_diagnostics --no_wrap_diagnostics full.c > %t.i 2> %t.err; test $? -eq 2
// RUN: %FileCheck --check-prefix=LONG %s < %t.err
#define ONE one two three
#define PAIR(a, b) a b

	#	frobnicate
//      FULL:"full.c", line [[@LINE-1]]: error: unrecognized preprocessing directive
// FULL-NEXT:  	#	frobnicate
// FULL-NEXT:  	 	^
//FULL-EMPTY:
#warning this text is long enough that it goes on in a second line of the message
// FULL-NEXT:"full.c", line [[@LINE-1]]: warning: #warning directive: this text is long enough that
// FULL-NEXT:          it goes on in a second line of the message
// FULL-NEXT:  #warning this text is long enough that it goes on in a second line of the message
// FULL-NEXT:   ^
//FULL-EMPTY:
// BRIEF: line [[@LINE-6]]: warning: #warning directive: this text is long enough that it goes on in a second line of the message
// LONG: warning: #warning directive: this text is long enough that it goes on in a second line of the message
ONE PAIR(1) ONE PAIR(1, 2, 3) /* é */ PAIR(é)
// FULL-NEXT:"full.c", line [[@LINE-1]]: error: too few arguments in invocation of macro "PAIR"
// FULL-NEXT:  ONE PAIR(1) ONE PAIR(1, 2, 3) /* é */ PAIR(é)
// FULL-NEXT:      ^
//FULL-EMPTY:
// FULL-NEXT:"full.c", line [[@LINE-5]]: error: too many arguments in invocation of macro "PAIR"
// FULL-NEXT:  ONE PAIR(1) ONE PAIR(1, 2, 3) /* é */ PAIR(é)
// FULL-NEXT:                  ^
//FULL-EMPTY:
// FULL-NEXT:"full.c", line [[@LINE-9]]: error: too few arguments in invocation of macro "PAIR"
// FULL-NEXT:  ONE PAIR(1) ONE PAIR(1, 2, 3) /* é */ PAIR(é)
// FULL-NEXT:                                        ^
//FULL-EMPTY:
#ifdef ONE spliced \
  line
#endif
// FULL-NEXT:"full.c", line [[@LINE-3]]: warning: extra text after expected end of preprocessing
// FULL-NEXT:          directive
// FULL-NEXT:  #ifdef ONE spliced \
// FULL-NEXT:             ^
//FULL-EMPTY:
#line 7 "other.h"
#frobnicate
// FULL-NEXT:"other.h", line 7: error: unrecognized preprocessing directive
// FULL-NEXT:  #frobnicate
// FULL-NEXT:   ^
//FULL-EMPTY:
// FULL-NEXT:5 errors detected in the compilation of "full.c".
