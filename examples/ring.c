/* Bytes of a serial port, received by an interrupt handler and read by the
   main program: volatile registers, bit-fields, function pointers. */
#include "ring.h"

static struct port port;
static struct ring received;

typedef void handler(void);
static handler *vectors[4];

int ring_put(struct ring *ring, u8 byte) {
  if (ring->head - ring->tail == RING_SIZE) {
    ring->lost++;
    return 0;
  }
  ring->bytes[ring->head % RING_SIZE] = byte;
  ring->head++;
  return 1;
}

int ring_get(struct ring *ring, u8 *byte) {
  if (ring->head == ring->tail)
    return 0;
  *byte = ring->bytes[ring->tail % RING_SIZE];
  ring->tail++;
  return 1;
}

static void receive_interrupt(void) {
  if (port.status.ready && !ring_put(&received, port.data))
    port.status.overrun = 1;
  port.status.ready = 0;
}

/* What the hardware does when a byte arrives. */
static void arrive(u8 byte) {
  port.data = byte;
  port.status.ready = 1;
  if (port.status.enable && vectors[port.status.enable])
    vectors[port.status.enable]();
}

static unsigned read_line(char *line, unsigned size) {
  unsigned length = 0;
  u8 byte;

  while (length + 1 < size && ring_get(&received, &byte) && byte != '\n')
    line[length++] = (char)byte;
  line[length] = '\0';
  return length;
}

int main(void) {
  static const char *const lines[] = {"ready\n", "a longer line\n", "ok\n"};
  char line[32];
  unsigned i;
  const char *c;

  vectors[2] = receive_interrupt;
  arrive('?'); /* not enabled yet */
  port.status.enable = 2;
  for (i = 0; i < sizeof lines / sizeof lines[0]; i++) {
    for (c = lines[i]; *c; c++)
      arrive((u8)*c);
    read_line(line, sizeof line);
    printf("line %u: \"%s\", %u bytes in all\n", i, line, received.tail);
  }
  for (i = 0; i < RING_SIZE + 5; i++)
    arrive((u8)('a' + i));
  printf("waiting %u, lost %u, overrun %d\n", received.head - received.tail, received.lost,
         port.status.overrun);
  return received.lost == 5 ? 0 : 1;
}
