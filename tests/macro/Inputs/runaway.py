"""Writes files whose one line of macros would expand without end in effect."""

import sys

DEPTH = 40


def write(name, lines, use):
    with open(sys.argv[1] + "." + name + ".c", "w") as file:
        file.write("\n".join(lines) + "\n" + use + "\n")


def chain(name, first, step, use):
    lines = first + [step % {"n": n, "m": n - 1} for n in range(1, DEPTH + 1)]
    write(name, lines, use % DEPTH)


def nested(name, macro, use, argument, depth):
    write(name, [macro], (use[0] * depth) + argument + (use[1] * depth))


# Each macro names the one before twice: in the text, around an argument, inside
# an argument.
chain("grow", ["#define a0 x x"], "#define a%(n)d a%(m)d a%(m)d", "a%d")
chain("double", ["#define d(x) x x", "#define a0 1"], "#define a%(n)d d(a%(m)d)", "a%d")
chain("inside", ["#define a0(x) x"], "#define a%(n)d(x) a%(m)d(a%(m)d(x))", "a%d(1)")
# Calls in calls, with an argument that nobody needs.
nested("unused", "#define k(x, y) x", ("k(", "," + "z " * 2000 + ")"), "1", 700)
# Names that lead to one another, each in the expansion of the one before.
write("long", ["#define b%d b%d" % (n, n + 1) for n in range(60000)], "b0")
