/* A crossing: a table of transitions with function pointers, a switch, enums,
   designated initialisers. */
#include "machine.h"

static const char *const names[state_count] = {
    [cars_go] = "cars go",
    [cars_stop_soon] = "cars stop soon",
    [walkers_go] = "walkers go",
    [walkers_stop_soon] = "walkers stop soon",
    [out_of_order] = "out of order",
};

static void remember(struct machine *machine) {
  machine->waiting = 1;
}

static void let_walk(struct machine *machine) {
  machine->waiting = 0;
  machine->crossings++;
}

/* Ticks are left to `duration`; the table has all other events. */
static const struct transition table[state_count][event_count] = {
    [cars_go] = {[button] = {cars_go, remember}, [fault] = {out_of_order}},
    [cars_stop_soon] = {[button] = {cars_stop_soon, remember}, [fault] = {out_of_order}},
    [walkers_go] = {[button] = {walkers_go}, [fault] = {out_of_order}},
    [walkers_stop_soon] = {[button] = {walkers_stop_soon, remember}, [fault] = {out_of_order}},
    [out_of_order] = {[button] = {out_of_order}, [fault] = {out_of_order}, [repaired] = {cars_go}},
};

/* How many ticks a state lasts; 0: until something happens. */
static int duration(const struct machine *machine) {
  switch (machine->state) {
  case cars_go:
    return machine->waiting ? 4 : 0;
  case cars_stop_soon:
  case walkers_stop_soon:
    return 2;
  case walkers_go:
    return 5;
  default:
    return 0;
  }
}

static void enter(struct machine *machine, enum state state) {
  if (state != machine->state)
    printf("%s after %d\n", names[state], machine->ticks);
  machine->ticks = state == machine->state ? machine->ticks : 0;
  machine->state = state;
}

static void handle_tick(struct machine *machine) {
  int limit = duration(machine);

  machine->ticks++;
  if (limit == 0 || machine->ticks < limit)
    return;
  if (machine->state == cars_stop_soon)
    let_walk(machine);
  enter(machine, machine->state == walkers_stop_soon ? cars_go : (enum state)(machine->state + 1));
}

void machine_handle(struct machine *machine, enum event event) {
  const struct transition *transition = &table[machine->state][event];

  if (event == tick) {
    handle_tick(machine);
    return;
  }
  if (event == repaired && machine->state != out_of_order)
    return;
  if (transition->act)
    transition->act(machine);
  enter(machine, transition->next);
}

int main(void) {
  static const char script[] = "....b......b.........f..b..r....b.................";
  struct machine machine = {cars_go, 0, 0, 0};
  const char *c;

  for (c = script; *c; c++)
    machine_handle(&machine, *c == 'b'   ? button
                             : *c == 'f' ? fault
                             : *c == 'r' ? repaired
                                         : tick);
  printf("%s, %d crossings\n", names[machine.state], machine.crossings);
  return machine.crossings == 2 ? 0 : 1;
}
