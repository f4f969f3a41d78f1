"""What the scripts that go through gcc's C torture programs share: the options of
the compiler, and the lists of programs with reasons."""

import os
import re

HERE = os.path.dirname(os.path.abspath(__file__))
# What gcc's own test driver passes on, or what a program needs; and our word for it.
OPTIONS_OF_PROGRAMS = {
    "-fgnu89-inline": "--gcc89_inlining",
    r"_Alignas|_Thread_local": "--c11",
    # newlib knows jmp_buf for a fixed list of processors.
    r"<setjmp\.h>": "-D__i386__",
}


def listed(name):
    """{program: reason}"""
    known = {}
    with open(os.path.join(HERE, name)) as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                program, reason = line.split(None, 1)
                known[program] = reason.strip()
    return known


def options(headers):
    own = os.path.join(HERE, "..", "..", "include")
    return ["--gcc", "--c99", "--nonstd_gnu_keywords", "--no_warnings",
            "-D__IEEE_LITTLE_ENDIAN",
            "--sys_include=" + os.path.join(headers, "usr/include/newlib"), "--sys_include=" + own]


def own_options(path):
    with open(path, errors="replace") as source:
        text = source.read()
    return [ours for theirs, ours in OPTIONS_OF_PROGRAMS.items() if re.search(theirs, text)]
