/* A sudoku solver: structs, bit sets, recursion, enums, switch and goto. */
#include "sudoku.h"

#define BOX_OF(i) ((i) / SIDE / BOX * BOX + (i) % SIDE / BOX)

static int used(const struct board *b, int i) {
  return b->row[i / SIDE] | b->column[i % SIDE] | b->box[BOX_OF(i)];
}

static void flip(struct board *b, int i, int digit) {
  unsigned short bit = (unsigned short)(1 << digit);

  b->row[i / SIDE] ^= bit;
  b->column[i % SIDE] ^= bit;
  b->box[BOX_OF(i)] ^= bit;
}

enum outcome sudoku_read(struct board *b, const char *text) {
  int i = 0;

  memset(b, 0, sizeof *b);
  do {
    switch (*text) {
    case '\0':
      goto too_short;
    case ' ':
    case '/':
      continue;
    case '.':
      b->cell[i] = 0;
      break;
    default:
      if (*text < '1' || *text > '9' || used(b, i) >> (*text - '0') & 1)
        return BAD_PUZZLE;
      b->cell[i] = (signed char)(*text - '0');
      flip(b, i, b->cell[i]);
    }
    i++;
  } while (text++, i < CELLS);
  return SOLVED;

too_short:
  return BAD_PUZZLE;
}

/* The free cell with the fewest candidates, or -1. */
static int best_cell(const struct board *b) {
  int i, best = -1, fewest = SIDE + 1;

  for (i = 0; i < CELLS; i++) {
    int taken, free_digits = SIDE, digit;
    if (b->cell[i])
      continue;
    taken = used(b, i);
    for (digit = 1; digit <= SIDE; digit++)
      free_digits -= taken >> digit & 1;
    if (free_digits < fewest)
      best = i, fewest = free_digits;
  }
  return best;
}

enum outcome sudoku_solve(struct board *b) {
  int i = best_cell(b), digit;

  b->steps++;
  if (i < 0)
    return SOLVED;
  for (digit = 1; digit <= SIDE; digit++) {
    if (used(b, i) & 1 << digit)
      continue;
    b->cell[i] = (signed char)digit;
    flip(b, i, digit);
    if (sudoku_solve(b) == SOLVED)
      return SOLVED;
    flip(b, i, digit);
    b->cell[i] = 0;
  }
  return NO_SOLUTION;
}

void sudoku_print(const struct board *b) {
  int i;
  char line[SIDE * 2 + 1];

  for (i = 0; i < CELLS; i++) {
    line[i % SIDE * 2] = (char)('0' + b->cell[i]);
    line[i % SIDE * 2 + 1] = ' ';
    if (i % SIDE == SIDE - 1) {
      line[SIDE * 2 - 1] = '\0';
      puts(line);
    }
  }
}

static const char *const puzzles[] = {
    "53..7..../6..195.../.98....6./8...6...3/4..8.3..1/7...2...6/.6....28./...419..5/....8..79",
    "8......../..36...../.7..9.2../.5...7.../....457../...1...3./..1....68/..85...1./.9....4..",
    "55......./........./........./........./........./........./........./........./.........",
    "12345678",
};

int main(void) {
  static struct board board;
  const char *const *p;

  for (p = puzzles; p < puzzles + sizeof puzzles / sizeof *puzzles; p++) {
    if (sudoku_read(&board, *p) == BAD_PUZZLE) {
      printf("not a puzzle: %.20s\n", *p);
      continue;
    }
    if (sudoku_solve(&board) != SOLVED) {
      puts("no solution");
      continue;
    }
    sudoku_print(&board);
    printf("(%ld steps)\n", board.steps);
  }
  return 0;
}
