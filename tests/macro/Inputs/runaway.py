"""Writes two files in which 40 macros use one another twice."""

import sys


def chain(name, first, step, depth=40):
    lines = first + [step % {"n": n, "m": n - 1} for n in range(1, depth + 1)]
    with open(sys.argv[1] + "." + name + ".c", "w") as file:
        file.write("\n".join(lines) + "\na%d\n" % depth)


chain("grow", ["#define a0 x x"], "#define a%(n)d a%(m)d a%(m)d")
chain("double", ["#define d(x) x x", "#define a0 1"], "#define a%(n)d d(a%(m)d)")
