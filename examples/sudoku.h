#ifndef SUDOKU_H
#define SUDOKU_H

#include "runtime.h"

enum { SIDE = 9, BOX = 3, CELLS = SIDE * SIDE };

enum outcome { NO_SOLUTION, SOLVED, BAD_PUZZLE };

/* One bit a digit, for each row, column and box. */
struct board {
  signed char cell[CELLS];
  unsigned short row[SIDE], column[SIDE], box[SIDE];
  long steps;
};

enum outcome sudoku_read(struct board *b, const char *text);
enum outcome sudoku_solve(struct board *b);
void sudoku_print(const struct board *b);

#endif
