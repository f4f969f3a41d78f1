// Private to the scanner and the macro expansion.

#ifndef LEXICAL_INT_H
#define LEXICAL_INT_H

#include "lexical.h"
#include "source_line.h"

#endif
