"""Starts the tool on a source it waits for, sends it a signal, and prints what
it said and how it ended."""
import array
import fcntl
import signal
import subprocess
import sys
import termios
import time


def wait_until_input_is_read(process):
    """Returns when the process has read all that was written, or has ended."""
    waiting = array.array("i", [1])
    while waiting[0] and process.poll() is None:
        time.sleep(0.02)
        fcntl.ioctl(process.stdin, termios.FIONREAD, waiting)


tool, name = sys.argv[1:]
process = subprocess.Popen([tool, "--c", "-"], stdin=subprocess.PIPE, stderr=subprocess.PIPE)
process.stdin.write(b"#endif\n" * 5)
process.stdin.flush()
wait_until_input_is_read(process)
process.send_signal(getattr(signal, name))
_, errors = process.communicate()
print(errors.decode())
print(f"status={process.returncode}")
