#!/usr/bin/env python3
"""Times krtparse beside other compilers, as a front end and as a preprocessor.

Each figure is the median over several runs: user plus system time in
milliseconds, for the preprocessors also the peak memory in MiB. Behind each
figure stands its ratio to gcc's. A tool that isn't installed, or fails on an
input, is shown with the reason instead."""

import os
import shutil
import statistics
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests"))
import fetch

# Headers of the C library that one translation unit can include together.
HEADERS = """aio arpa/inet assert complex cpio ctype dirent dlfcn errno fcntl fenv float
fmtmsg fnmatch ftw glob grp iconv inttypes iso646 langinfo libgen limits locale math monetary
mqueue ndbm net/if netdb netinet/in netinet/tcp nl_types poll pthread pwd regex sched search
semaphore setjmp signal spawn stdarg stdbool stddef stdint stdio stdlib string strings sys/ipc
sys/mman sys/msg sys/resource sys/select sys/sem sys/shm sys/socket sys/stat sys/statvfs
sys/time sys/times sys/types sys/uio sys/un sys/utsname sys/wait syslog tar termios tgmath time
ulimit unistd utime utmpx wchar wctype wordexp""".split()


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


def plain_text(size=20_000_000):
    """C without directives or macros, with the usual share of comments and strings."""
    parts = []
    length = 0
    n = 0
    while length < size:
        part = f"""
/* Handler {n}: takes a message apart and counts what it finds.
 * The caller holds the lock. */
static int handle_message_{n}(const struct message *msg, unsigned long flags)
{{
    unsigned int checksum = 0x{n:08x}u;   // the seed
    for (size_t i = 0; i < msg->length; ++i) {{
        checksum = (checksum << 5) + (checksum >> 27) ^ msg->data[i];
        if (msg->data[i] == '\\n' || flags & FLAG_RAW_{n % 7})
            count_lines(msg, i, "line %d of message %s\\n", {n}, msg->name);
    }}
    return checksum != {n * 7919} ? -1 : (int)(msg->length * 3.25e-{n % 9 + 1});
}}
"""
        parts.append(part)
        length += len(part)
        n += 1
    return "".join(parts)


def macro_heavy():
    """Arithmetic, repetition and sequences of the Boost preprocessor library."""
    sums = "\n".join(f"int sum_{n} = BOOST_PP_ADD(BOOST_PP_MUL({n % 15}, {n % 11}), BOOST_PP_DIV({n + 40}, 7));"
                     for n in range(40))
    return f"""#include <boost/preprocessor.hpp>
#define FIELD(z, n, text) BOOST_PP_INC(text) + n
#define ROW(z, n, text) int BOOST_PP_CAT(text, n)[] = {{ BOOST_PP_ENUM(20, FIELD, n) }};
BOOST_PP_REPEAT(256, ROW, row_)
#define TWICE(r, data, elem) BOOST_PP_CAT(data, elem),
BOOST_PP_SEQ_FOR_EACH(TWICE, item_, BOOST_PP_TUPLE_TO_SEQ(10, (a, b, c, d, e, f, g, h, i, j)))
#define PRED(r, state) BOOST_PP_NOT_EQUAL(state, 200)
#define OP(r, state) BOOST_PP_INC(state)
#define MACRO(r, state) (state)
BOOST_PP_FOR(0, PRED, OP, MACRO)
{sums}
"""


def include_heavy():
    return "".join(f"#include <{header}.h>\n" for header in HEADERS
                   if any(os.path.exists(f"{directory}/{header}.h") for directory in gcc_directories()))


def gcc_directories():
    """gcc's own search path, which all tools are given."""
    lines = subprocess.run(["gcc", "-E", "-v", "-xc", os.devnull], capture_output=True,
                           text=True, check=True).stderr.splitlines()
    start = next(n for n, line in enumerate(lines) if line.startswith("#include <...>"))
    end = lines.index("End of search list.")
    return [line.strip() for line in lines[start + 1:end]]


def measure(command, directory):
    """User plus system milliseconds and peak MiB of one run."""
    process = subprocess.Popen(command, cwd=directory, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"status {process.returncode}")
    return 1000 * (usage.ru_utime + usage.ru_stime), usage.ru_maxrss / 1024


def medians(command, directory, repetitions):
    """The medians over the runs, or the reason why there are none."""
    if not shutil.which(command[0]):
        return "not installed"
    try:
        runs = [measure(command, directory) for _ in range(repetitions)]
    except RuntimeError as failure:
        return str(failure)
    return tuple(statistics.median(column) for column in zip(*runs))


def print_table(title, tools, inputs, directory, columns):
    """One row a tool, one column a figure; gcc's row is measured for the ratios."""
    print(title)
    print(" " * 24 + "".join(f"{os.path.basename(name) + ' ' + unit:>22}" for name in inputs for unit in columns))
    results = {tool: {name: medians(command + [name], directory, repetitions)
                      for name, repetitions in inputs.items()}
               for tool, command in tools.items()}
    base = next(row for tool, row in results.items() if tool.startswith("gcc"))
    for tool, row in results.items():
        line = f"{tool:24}"
        for name in inputs:
            for index in range(len(columns)):
                if isinstance(row[name], str):
                    line += f"{row[name]:>22}"
                else:
                    ratio = row[name][index] / base[name][index]
                    line += f"{row[name][index]:14.2f} ({ratio:4.2f})"
        print(line)
    print()


# What makes the SQLite amalgamation a program that needs no system.
SQLITE_SETTINGS = ["-DSQLITE_THREADSAFE=0", "-DSQLITE_OMIT_LOAD_EXTENSION", "-DSQLITE_OS_OTHER=1"]


def print_sqlite_table(krtparse, directory):
    """The whole road on the amalgamation, and how much of it each stage takes."""
    downloads = os.path.join(ROOT, "build", "downloads")
    package = fetch.npm_package("better-sqlite3", "12.11.1", downloads)
    headers = fetch.debian_package("libnewlib-dev", downloads)
    if not package or not headers:
        print("SQLite: skipped, better-sqlite3 or libnewlib-dev can't be fetched")
        return
    ours = [krtparse, "--gcc", "--c99", "--no_warnings", "-D__i386__",
            "--sys_include=" + os.path.join(headers, "usr/include/newlib"),
            "--sys_include=" + os.path.join(ROOT, "include")] + SQLITE_SETTINGS
    output = os.path.join(directory, "sqlite")
    tools = {
        "krtparse": ours + [f"--i_output_file={output}.if"],
        "  without the output": ours + ["--no_code_gen"],
        "  preprocessing alone": ours + ["-E"],
        "gcc -fsyntax-only": ["gcc", "-w", "-fsyntax-only"] + SQLITE_SETTINGS,
        "gcc -O0 -S": ["gcc", "-w", "-O0", "-S", "-o", f"{output}.s"] + SQLITE_SETTINGS,
        "clang -fsyntax-only": ["clang", "-w", "-fsyntax-only"] + SQLITE_SETTINGS,
        "clang -O0 -S": ["clang", "-w", "-O0", "-S", "-o", f"{output}.s"] + SQLITE_SETTINGS,
        "tcc -c": ["tcc", "-w", "-c", "-o", f"{output}.o"] + SQLITE_SETTINGS,
    }
    print_table("The SQLite amalgamation: user + system ms, peak MiB (ratio to gcc -fsyntax-only)",
                tools, {os.path.join(package, "deps/sqlite3/sqlite3.c"): 7}, directory,
                ["ms", "MiB"])


def main():
    krtparse = sys.argv[1]
    paths = gcc_directories()
    front_ends = {
        "krtparse": [krtparse, "--c"],
        "gcc -fsyntax-only": ["gcc", "-fsyntax-only"],
        "clang -fsyntax-only": ["clang", "-fsyntax-only"],
        "tcc -c": ["tcc", "-c"],
    }
    common = [word for path in paths for word in ("-I", path)]
    preprocessors = {
        "krtparse -E": [krtparse, "-E", "--c", "-D__x86_64__", "-D__STDC_HOSTED__=1"]
                       + [f"--sys_include={path}" for path in paths],
        "gcc -E": ["gcc", "-E"] + common,
        "clang -E": ["clang", "-E"] + common,
        "tcc -E": ["tcc", "-E"] + common,
        "mcpp": ["mcpp"] + common,
    }
    directory = tempfile.mkdtemp()
    try:
        texts = {"empty.c": "", "long.c": long_program(), "plain.c": plain_text(),
                 "macros.c": macro_heavy(), "headers.c": include_heavy()}
        for name, text in texts.items():
            with open(os.path.join(directory, name), "w", encoding="ascii") as file:
                file.write(text)
        print_table("Front ends: user + system ms (ratio to gcc)", front_ends,
                    {"empty.c": 100, "long.c": 9}, directory, ["ms"])
        print_table("Preprocessors: user + system ms, peak MiB (ratio to gcc)", preprocessors,
                    {"plain.c": 5, "macros.c": 5, "headers.c": 15}, directory, ["ms", "MiB"])
        print_sqlite_table(krtparse, directory)
    finally:
        shutil.rmtree(directory)


if __name__ == "__main__":
    main()
