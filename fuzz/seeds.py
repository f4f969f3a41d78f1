#!/usr/bin/env python3
"""Writes the sources of the black-box tests into a folder, as seeds for the fuzzer.

The first byte of a seed chooses the options; the seeds take turns among the
sets."""

import pathlib
import sys

OPTION_SETS = 18
LONGEST = 20_000

tests = pathlib.Path(__file__).parent.parent / "tests"
target = pathlib.Path(sys.argv[1])
sources = [path for path in sorted(tests.glob("*/**/*"))
           if path.suffix in (".c", ".cpp", ".h") and "unit" not in path.parts]
for number, path in enumerate(sources):
    text = path.read_bytes()
    if len(text) <= LONGEST:
        choice = number % OPTION_SETS
        (target / f"seed_{number}").write_bytes(bytes([choice]) + text)
