// The numbers of the diagnostic catalogue by their tags: ec_exp_semicolon is 66.

#ifndef ERROR_CODES_H
#define ERROR_CODES_H

enum an_error_tag : int {
#define DIAG(number, tag, text) ec_##tag = number,
#define TEXT(number, text)
#include "error_catalogue.def"
#undef DIAG
#undef TEXT
};

#endif
