/* A low-pass filter of finite response, in floating and in fixed point. */
#ifndef FIR_H
#define FIR_H

#include "runtime.h"

#define TAPS 15
#define ONE_Q15 32768 /* 1.0 with 15 bits behind the point */

typedef short q15;

struct filter {
  float taps[TAPS], history[TAPS];
  q15 fixed_taps[TAPS], fixed_history[TAPS];
  int next; /* the oldest sample */
};

void filter_init(struct filter *f, float cutoff);
float filter_float(struct filter *f, float sample);
q15 filter_fixed(struct filter *f, q15 sample);

#endif
