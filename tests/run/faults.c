// RUN: %krtparse --c99 --i_output_file=%t.if %s
// RUN: (%ifrun %t.if 2>&1 || true) | %FileCheck --check-prefix=ADDRESS %s
// RUN: (%ifrun %t.if copy 2>&1 || true) | %FileCheck --check-prefix=COPY %s
// RUN: (%ifrun %t.if copy missing 2>&1 || true) | %FileCheck --check-prefix=MISSING %s
// RUN: (%ifrun %t.if 1 2 3 2>&1 || true) | %FileCheck --check-prefix=ABORT %s
// RUN: (%ifrun --stack=1 --heap=1 %t.if 1 2 3 4 2>&1 || true) | %FileCheck --check-prefix=ROOM %s
// RUN: (%ifrun --trace %t.if 1 2 3 4 5 2>&1 || true) | %FileCheck --check-prefix=TRACE %s
// RUN: (%ifrun --heap=0 %t.if 2>&1 || true) | %FileCheck --check-prefix=USAGE %s

/* A message tells the fault, the function, the line, the record and the
   callers. */
void abort(void);
void *malloc(unsigned long size);
void *memcpy(void *to, const void *from, unsigned long size);
int missing(int);

// ADDRESS: ifrun: bad address 0x00000010 in function get at {{.*}}faults.c:[[@LINE+4]]:3, record expr at offset {{[0-9]+}}
// ADDRESS-NEXT: called by choose at {{.*}}faults.c:[[@LINE+9]]:{{[0-9]+}}, record expr at offset
// ADDRESS-NEXT: called by main at {{.*}}faults.c:
static int get(int *p) {
  return *p;
}

static int choose(int count) {
  switch (count) {
  case 1:
    return get((int *)16);
  case 2: // COPY: bad address 0x{{.*}} in function memcpy, called by choose at {{.*}}faults.c:[[@LINE+1]]:
    return memcpy((void *)16, "text", 5) != 0;
  case 3: // MISSING: undefined function missing in function choose at {{.*}}faults.c:[[@LINE+1]]:
    return missing(1);
  case 4: // ABORT: in function abort, called by choose at {{.*}}faults.c:[[@LINE+1]]:
    abort();
  case 5: // ROOM: stack overflow in function choose at {{.*}}faults.c:[[@LINE+1]]:
    return malloc(2000000) ? 0 : choose(5) + choose(5);
  default:
    return 0;
  }
}

// TRACE: main at {{.*}}faults.c:[[@LINE+6]]:3, record expr at offset {{[0-9]+}}: RETURN
// TRACE: call choose(6)
// TRACE: return from choose
// TRACE: return from main
// USAGE: usage: ifrun
int main(int argc, char **argv) {
  return choose(argc);
}
