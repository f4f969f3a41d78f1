"""Starts the tool on a source it waits for, sends it a signal, and prints what
it said and how it ended."""
import signal
import subprocess
import sys
import time

tool, name = sys.argv[1:]
process = subprocess.Popen([tool, "--c", "-"], stdin=subprocess.PIPE, stderr=subprocess.PIPE)
process.stdin.write(b"#endif\n" * 5)
process.stdin.flush()
time.sleep(0.5)
process.send_signal(getattr(signal, name))
_, errors = process.communicate()
print(errors.decode())
print(f"status={process.returncode}")
