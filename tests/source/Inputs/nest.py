# nest.py DIRECTORY DEPTH: files f0.c ... that each include the next, in turn in
# single bytes and in both orders of UTF-16.
import sys

directory, depth = sys.argv[1], int(sys.argv[2])
encodings = [("latin-1", ""), ("utf-16-le", "\ufeff"), ("utf-16-be", "\ufeff")]
for i in range(depth):
    inner = f'#include "f{i + 1}.c"\n' if i + 1 < depth else ""
    encoding, mark = encodings[i % 3]
    with open(f"{directory}/f{i}.c", "wb") as file:
        file.write(f"{mark}before {i}\n{inner}after {i}\n".encode(encoding))
