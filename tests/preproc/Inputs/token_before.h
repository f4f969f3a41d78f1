token_before
#ifndef TOKEN_BEFORE_H
#define TOKEN_BEFORE_H
#endif
