"""Runs the parser on every pragma with wrong operands at every wrong place.

Each run has all pragmas with one list of operands at one place. It may report
what it likes, but it has to end with a status of its own, and quickly."""

import pathlib
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

parser, table = sys.argv[1], pathlib.Path(sys.argv[2])
names = re.findall(r'PRAGMA(?:_KIND)?\(pk_\w+, "(\w+)"', table.read_text())
names = sorted(set(names)) + ["STDC FP_CONTRACT", "GCC target", "unknown"]

OPERANDS = ["", "(", ")", "()", "(v", "(v)", "(f)", "(f, )", "(f, f, f, f, f)", "(v, 4) extra",
            '(v, "s")', '("s")', '("s", 1)', "(v, L\"s\")", "(1)", "(1, 2, 3, 4)", "(,,,,)", "(-1)",
            "(1.5)", "(nothing)", "(int)", "(v, v)", "(0xffffffffffffffff)", "1e9999", "{", "}",
            "(v, 99999999999999999999999999)", '(v, "' + "s" * 5000 + '")', "(" * 200, "'", '"',
            "__LINE__", "(f, \"--opt_level=99\")", "(1, OUT = {1, 8)", "push", "(push, a, b)"]

HEAD = "int v; void f(void) {}\n"
PLACES = {
    "before a brace": "void g@(void) { v = 1;\n%s\n}\n",
    "in an expression": "void g@(void) { v = 1 +\n%s\n2; }\n",
    "before else's statement": "void g@(void) { if (v) v = 1; else\n%s\nv = 2; }\n",
    "before else": "void g@(void) { if (v) v = 1;\n%s\nelse v = 2; }\n",
    "before a loop": "void g@(void) {\n%s\nwhile (v) --v; }\n",
    "between the clauses of for": "void g@(void) { for (v = 0;\n%s\nv < 3; ++v) ; }\n",
    "in a declarator": "int\n%s\nd@;\n",
    "in a struct": "struct s@ { int a;\n%s\n int b; };\n",
    "before a struct's brace": "struct s@ { int a;\n%s\n};\n",
    "in an initializer": "int a@[] = { 1,\n%s\n2 };\n",
    "in an enum": "enum e@ {\n%s\nc@ };\n",
    "in parameters": "void p@(int a,\n%s\nint b);\n",
    "in a macro's arguments": "#define ID(x) x\nint i@ = ID(1\n%s\n);\n",
    "before a declaration": "%s\nint n@;\n",
    "at a label": "void g@(void) {\n%s\nl:\n%s\nv = 1; goto l; }\n",
    "in a body of a class": "struct c@ { int m() {\n%s\nreturn 1; } };\n",
    "at the end": None,
}
LANGUAGES = {".c": ["--no_code_gen"], ".cpp": ["--c++", "--no_code_gen"]}


def source(place, operands):
    lines = [f"#pragma {name} {operands}" for name in names]
    template = PLACES[place]
    if template is None:
        return HEAD + "\n".join(lines)
    return HEAD + "".join(template.replace("@", str(number)).replace("%s", line)
                          for number, line in enumerate(lines))


def fault_of(directory, number, suffix, place, operands):
    path = directory / f"{number}{suffix}"
    path.write_text(source(place, operands))
    try:
        run = subprocess.run([parser, *LANGUAGES[suffix], "--error_limit=100000", str(path)],
                             capture_output=True, timeout=60)
    except subprocess.TimeoutExpired:
        return f"no end {place}, {operands[:40]} {suffix}"
    if run.returncode not in (0, 2) or b"INTERNAL" in run.stderr or b"internal error" in run.stderr:
        return f"status {run.returncode} {place}, {operands[:40]} {suffix}\n{run.stderr[-300:]}"
    return None


with tempfile.TemporaryDirectory() as directory, ThreadPoolExecutor(2) as pool:
    cases = [(suffix, place, operands)
             for suffix in LANGUAGES for place in PLACES for operands in OPERANDS]
    faults = list(filter(None, pool.map(
        lambda case: fault_of(pathlib.Path(directory), case[0], *case[1]), enumerate(cases))))
print("\n".join(faults) or f"{len(cases)} runs")
sys.exit(bool(faults))
