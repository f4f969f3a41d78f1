// The program of a small controller: samples of a sensor are taken by an interrupt,
// filtered, judged, and counted in memory that survives a reset. It shows where
// code and data go: sections, interrupts, fixed places, kept symbols, and what the
// compiler is told about loops.

#include "runtime.h"

enum { window = 8, num_samples = 64, limit = 900 };

// A register block, behind the vectors.
typedef struct {
  unsigned control;
  unsigned sample;
} timer_block;

#pragma LOCATION(timer, 0x1000)
#pragma DATA_ALIGN(timer, 16)
timer_block timer;

// Not cleared at start-up; whether it holds anything, the mark tells.
#pragma NOINIT(boot_mark)
unsigned boot_mark;
// Written to memory that lasts.
#pragma PERSISTENT(alarms)
unsigned alarms = 0x100;

#pragma DATA_SECTION(ring, ".fast_data")
static int ring[window];
static unsigned next_slot;
static int last_mean;

// Nothing in the program reads it, a debugger does.
#pragma RETAIN(build_id)
static const char build_id[] = "firmware 1.0";

#pragma SET_CODE_SECTION(".fast_code")

// The mean of the last samples. The window is a power of two.
#pragma FUNC_CANNOT_INLINE(mean_of_window)
static int mean_of_window(void) {
  int sum = 0;
  int i;
#pragma MUST_ITERATE(window, window, window)
#pragma UNROLL(4)
  for (i = 0; i < window; i++)
    sum += ring[i];
  return sum / window;
}

static void take_sample(int sample) {
  ring[next_slot % window] = sample;
  next_slot++;
  last_mean = mean_of_window();
}

#pragma INTERRUPT(timer_isr)
#pragma FUNC_EXT_CALLED(timer_isr)
void timer_isr(void) {
#pragma FORCEINLINE
  take_sample((int)timer.sample);
  if (last_mean > limit)
    alarms++;
}

#pragma SET_CODE_SECTION()

// A power failure is no time for a trace.
#pragma NMI_INTERRUPT(power_fail_isr)
#pragma NO_HOOKS(power_fail_isr)
void power_fail_isr(void) {
  boot_mark = 0;
}

// The table that the start-up code copies to the place of the vectors.
typedef void (*vector)(void);
#pragma DATA_SECTION(vectors, ".vectors")
#pragma RETAIN(vectors)
const vector vectors[] = {timer_isr, power_fail_isr};

// In the simulation nobody else makes samples: a ramp with a spike.
static unsigned made_sample(unsigned n) {
  return n * 13 % 512 + (n > 40 && n < 52 ? 800 : 0);
}

int main(void) {
  unsigned n;
  boot_mark = 0xb007;
  timer.control = 1;
  for (n = 0; n < num_samples; n++) {
    timer.sample = made_sample(n);
    vectors[0]();
    if (n % window == window - 1)
      printf("%2u: mean %d, alarms %u\n", n, last_mean, alarms - 0x100);
  }
#pragma PROB_ITERATE(1, 2)
  while (boot_mark != 0)
    vectors[1]();
  printf("mark %u, %u samples\n", boot_mark, next_slot);
  return 0;
}
