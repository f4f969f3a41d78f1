#!/usr/bin/env python3
"""Times krtparse beside the front ends of other compilers.

Prints the median of user plus system time of many runs, in milliseconds, for
an empty file and for a long one that is made here. A compiler that fails on an
input is shown with its exit status instead of a time."""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile

INPUTS = {"empty.c": (200, ""), "long.c": (15, None)}


def long_program(functions=4000):
    """A program of many small functions over structs, arrays and macros."""
    parts = ["#define MIX(a, b) (((a) << 5) ^ ((b) >> 3) ^ (a))\n",
             "struct node { int key; unsigned value; struct node *next; };\n"]
    for n in range(functions):
        parts.append(f"""
/* Step {n} of the mixer. */
static int table_{n}[4] = {{ {n}, {n} + 1, {n} * 2, {n} ^ 7 }};
int step_{n}(struct node *list, unsigned seed)
{{
  unsigned sum = seed;
  int i;
  for (i = 0; i < 4; i++)
    sum = MIX(sum, (unsigned)table_{n}[i]);
  while (list) {{
    if (list->key > {n})
      list->value += sum;
    else
      list->value -= MIX(sum, list->value);
    list = list->next;
  }}
  return (int)(sum & 0x7fff);
}}
""")
    return "".join(parts)


def cpu_milliseconds(command, directory):
    """User plus system time of one run; a negative exit status on failure."""
    process = subprocess.Popen(command, cwd=directory, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"status {process.returncode}")
    return 1000 * (usage.ru_utime + usage.ru_stime)


def main():
    compilers = {
        "krtparse": [sys.argv[1], "--c"],
        "gcc -fsyntax-only": ["gcc", "-fsyntax-only"],
        "clang -fsyntax-only": ["clang", "-fsyntax-only"],
        "tcc -c": ["tcc", "-c"],
    }
    directory = tempfile.mkdtemp()
    try:
        print(f"{'user + system, ms (median)':28}" + "".join(f"{name:>14}" for name in INPUTS))
        for name, (_, text) in INPUTS.items():
            with open(os.path.join(directory, name), "w", encoding="ascii") as file:
                file.write(long_program() if text is None else text)
        for compiler, command in compilers.items():
            row = f"{compiler:28}"
            for name, (repetitions, _) in INPUTS.items():
                try:
                    times = [cpu_milliseconds(command + [name], directory)
                             for _ in range(repetitions)]
                    row += f"{statistics.median(times):14.2f}"
                except RuntimeError as failure:
                    row += f"{str(failure):>14}"
            print(row)
    finally:
        shutil.rmtree(directory)


if __name__ == "__main__":
    main()
