// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: %ifrun %t.if > %t.out
// RUN: gcc -std=c99 -w -funsigned-char %s -o %t.host
// RUN: %t.host > %t.expected
// RUN: diff %t.expected %t.out

/* Statements: loops, switches, jumps, static locals, scopes. */
int printf(const char *format, ...);

static int classify(int n) {
  switch (n) {
  case -1:
    return 1;
  case 0:
    n = 50;
    /* falls through */
  case 1:
  case 2:
    n++;
    break;
  default:
    n = -n;
    break;
  case 1000:
    n = 5;
  }
  return n;
}

static int of_char(char c) {
  switch (c) {
  case 'a': case 'e': case 'i':
    return 1;
  case '\377':
    return 2;
  }
  return 0;
}

static int of_long_long(long long n) {
  switch (n) {
  case 1LL << 40:
    return 40;
  case -(1LL << 40):
    return -40;
  case 0:
    return 0;
  }
  return 1;
}

static int duff(int count) {
  int steps = 0, n = (count + 3) / 4;
  switch (count % 4) {
  case 0: do { steps++;
  case 3:      steps += 10;
  case 2:      steps += 100;
  case 1:      steps += 1000;
          } while (--n > 0);
  }
  return steps;
}

static int counter(int step) {
  static int value = 100, calls;
  calls++;
  {
    static int value = 5;
    value *= 2;
    step += value;
  }
  return value += step + calls;
}

static int other_counter(void) {
  static int value = 7;
  return value--;
}

static int gotos(int n) {
  int sum = 0;
again:
  if (n <= 0)
    goto done;
  for (;;) {
    sum += n;
    if (sum & 1)
      break;
    if (--n < 0)
      goto done;
  }
  --n;
  goto again;
done:
  return sum;
}

static int loops(void) {
  int i, j, sum = 0;
  for (i = 0, j = 10; i < j; i++, --j) {
    if (i == 2)
      continue;
    sum += i * j;
    if (sum > 40)
      break;
  }
  printf("%d %d %d\n", i, j, sum);
  while (i--)
    for (int k = 0; k < 5; k++) {
      if (k == i)
        break;
      sum += k;
    }
  do {
    sum -= 3;
    if (sum % 5 == 0)
      continue;
    j++;
  } while (sum > 0 && j < 100 || j == 6);
  printf("%d %d %d\n", i, j, sum);
  for (; sum < 100 && (sum + j) * 2 - i != 7 && !(sum == 50 || j == 1000) && sum + 1 > sum - 1;)
    sum += 7;
  while ((i = i + 3) < 20 && (j = j - i) > -1000 && (i ^ j) != 12345 && ~i && i * j != 1)
    sum ^= j;
  return sum;
}

static int shadow(int a) {
  int b = a;
  {
    int a = b + 1;
    {
      int b = a * 2;
      a = b;
    }
    b = a;
  }
  return a * 1000 + b;
}

static int ackermann(int m, int n) {
  return !m ? n + 1 : ackermann(m - 1, n ? ackermann(m, n - 1) : 1);
}

static int is_odd(unsigned n);
static int is_even(unsigned n) {
  return n == 0 || is_odd(n - 1);
}
static int is_odd(unsigned n) {
  return n != 0 && is_even(n - 1);
}

static void nothing(int n) {
  if (n)
    return;
  printf("nothing\n");
}

enum color { RED, GREEN = 5, BLUE };

int main(void) {
  int i;
  enum color c = GREEN;

  for (i = -2; i < 4; i++)
    printf("%d ", classify(i));
  printf("%d\n", classify(1000));
  printf("%d %d %d\n", of_char('e'), of_char((char)255), of_char('x'));
  printf("%d %d %d %d\n", of_long_long(1LL << 40), of_long_long(-1LL << 40), of_long_long(0),
         of_long_long(256));
  for (i = 1; i < 9; i++)
    printf("%d ", duff(i));
  printf("\n");
  for (i = 1; i < 4; i++)
    printf("%d %d\n", counter(i), other_counter());
  printf("%d %d\n", gotos(9), gotos(14));
  printf("%d\n", loops());
  printf("%d\n", shadow(3));
  printf("%d\n", ackermann(2, 9));
  printf("%d %d\n", is_even(100), is_odd(100));
  nothing(1);
  nothing(0);
  switch (c) {
  case RED:
    printf("red\n");
    break;
  case BLUE:
    printf("blue\n");
  }
  switch (i)
    default:
      printf("only a default %d\n", i);
  switch (i) {
  }
  printf("%d\n", c == GREEN ? c + BLUE : RED);
  if (i) ; else printf("never\n");
  return (i = 3, i - 3);
}
