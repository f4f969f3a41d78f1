// The word reader of command files.

#ifndef CMD_FILE_H
#define CMD_FILE_H

#include <cstdio>

// The next word of a command file in new heap memory that the caller frees,
// or null at the end. Words are separated by white space; `/* */`, `;` and, at
// the start of a word that is no option, `#` are comments; `"..."` quotes with
// `\"` and `\\` inside; `\` outside a quote keeps the next character. An
// unterminated comment or quote ends the process with status -1.
char* fnextopt(FILE* file);

#endif
