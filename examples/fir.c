/* The same filter twice: in float, and in 16-bit fixed point with a 64-bit
   accumulator, rounding and saturation. */
#include "fir.h"

#define PI 3.14159265358979323846f

/* The sine by its series, exact enough for the design of the filter. */
static float sine(float x) {
  float term, sum;
  int i;

  while (x > PI)
    x -= 2 * PI;
  while (x < -PI)
    x += 2 * PI;
  term = sum = x;
  for (i = 3; i < 20; i += 2) {
    term *= -x * x / (float)(i * (i - 1));
    sum += term;
  }
  return sum;
}

static q15 saturated(long long value) {
  if (value > ONE_Q15 - 1)
    return ONE_Q15 - 1;
  return value < -ONE_Q15 ? -ONE_Q15 : (q15)value;
}

/* An ideal low pass, cut to TAPS samples by a raised cosine. `cutoff` is a part
   of the sample rate. */
void filter_init(struct filter *f, float cutoff) {
  float sum = 0;
  int i;

  memset(f, 0, sizeof *f);
  for (i = 0; i < TAPS; i++) {
    float x = (float)(i - TAPS / 2);
    float window = 0.54f + 0.46f * sine(PI / 2 + 2 * PI * x / (TAPS - 1));
    f->taps[i] = window * (x == 0 ? 2 * cutoff : sine(2 * PI * cutoff * x) / (PI * x));
    sum += f->taps[i];
  }
  for (i = 0; i < TAPS; i++) {
    f->taps[i] /= sum;
    f->fixed_taps[i] = saturated((long long)(f->taps[i] * ONE_Q15 + (f->taps[i] < 0 ? -0.5f : 0.5f)));
  }
}

float filter_float(struct filter *f, float sample) {
  float sum = 0;
  int i;

  f->history[f->next] = sample;
  for (i = 0; i < TAPS; i++)
    sum += f->taps[i] * f->history[(f->next + TAPS - i) % TAPS];
  return sum;
}

q15 filter_fixed(struct filter *f, q15 sample) {
  long long sum = ONE_Q15 / 2;
  int i;

  f->fixed_history[f->next] = sample;
  for (i = 0; i < TAPS; i++)
    sum += (long)f->fixed_taps[i] * f->fixed_history[(f->next + TAPS - i) % TAPS];
  return saturated(sum >> 15);
}

int main(void) {
  static struct filter f;
  int i, largest = 0;

  filter_init(&f, 0.1f);
  for (i = 0; i < TAPS; i++)
    printf("%d%s", f.fixed_taps[i], i + 1 < TAPS ? " " : "\n");
  for (i = 0; i < 200; i++) {
    /* a slow wave that passes and a fast one that doesn't */
    float sample = 0.5f * sine(0.2f * (float)i) + 0.4f * sine(2.6f * (float)i);
    float smooth = filter_float(&f, sample);
    q15 fixed = filter_fixed(&f, (q15)(sample * ONE_Q15));
    int difference = (int)(smooth * ONE_Q15) - fixed;
    f.next = (f.next + 1) % TAPS;
    if (difference < 0)
      difference = -difference;
    if (difference > largest)
      largest = difference;
    if (i % 25 == 24)
      printf("%3d: %.3f %.3f\n", i, smooth, (float)fixed / ONE_Q15);
  }
  printf("fixed point is %s\n", largest < 8 ? "close" : "off");
  return largest < 8 ? 0 : 1;
}
