/* A ring buffer between an interrupt handler and the main program. */
#ifndef RING_H
#define RING_H

#include "runtime.h"

#define RING_SIZE 16u /* a power of two */

typedef unsigned char u8;

/* One side writes `head` alone, the other one `tail`: no lock is needed. */
struct ring {
  volatile unsigned head, tail; /* counts; their lowest bits are the places */
  volatile unsigned lost;
  u8 bytes[RING_SIZE];
};

/* The registers of a serial port. */
struct port {
  volatile u8 data;
  volatile struct {
    u8 ready : 1;
    u8 overrun : 1;
    u8 : 4;
    u8 enable : 2;
  } status;
};

int ring_put(struct ring *ring, u8 byte);
int ring_get(struct ring *ring, u8 *byte);

#endif
