/* A state machine by table: the control of a pedestrian crossing. */
#ifndef MACHINE_H
#define MACHINE_H

#include "runtime.h"

enum state { cars_go, cars_stop_soon, walkers_go, walkers_stop_soon, out_of_order, state_count };
enum event { tick, button, fault, repaired, event_count };

struct machine;
typedef void action(struct machine *machine);

/* What an event does in a state; an action of 0 means nothing. */
struct transition {
  enum state next;
  action *act;
};

struct machine {
  enum state state;
  int ticks; /* since the state was entered */
  unsigned waiting : 1;
  unsigned crossings : 15;
};

void machine_handle(struct machine *machine, enum event event);

#endif
