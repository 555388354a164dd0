#!/usr/bin/env python3
"""pty_run.py ARGV0 PROGRAM [ARG...] - runs PROGRAM with its standard output on
a pseudo-terminal, as a user at a terminal meets it, and prints what the
terminal received, line by line (the terminal's CR LF line ends turned back
into LF). Standard error is passed through; the exit status is the program's.
"""
import os
import pty
import sys


def main():
    if len(sys.argv) < 3:
        sys.stderr.write(__doc__)
        return 2
    argv0, program, args = sys.argv[1], sys.argv[2], sys.argv[3:]
    master, slave = pty.openpty()
    pid = os.fork()
    if pid == 0:
        os.close(master)
        os.dup2(slave, 1)
        os.close(slave)
        try:
            os.execv(program, [argv0] + args)
        finally:
            os._exit(127)
    os.close(slave)
    received = bytearray()
    while True:
        try:
            chunk = os.read(master, 65536)
        except OSError:  # EIO: the program closed the terminal
            break
        if not chunk:
            break
        received += chunk
    _, status = os.waitpid(pid, 0)
    os.close(master)
    sys.stdout.buffer.write(bytes(received).replace(b"\r\n", b"\n"))
    sys.stdout.flush()
    if os.WIFEXITED(status):
        return os.WEXITSTATUS(status)
    return 128 + os.WTERMSIG(status)


if __name__ == "__main__":
    sys.exit(main())
