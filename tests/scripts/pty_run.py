#!/usr/bin/env python3
"""pty_run.py [--stderr | --stderr-only | --tty] ARGV0 PROGRAM [ARG...] - runs PROGRAM
with its standard output on a pseudo-terminal, as a user at a terminal meets
it, and prints what the terminal received, line by line (the terminal's CR LF
line ends turned back into LF). Standard error is passed through, or with
--stderr it goes to the same terminal, as at a terminal that shows both. With
--stderr-only, standard error alone is on the terminal (standard output goes
to /dev/null, as into a file) and each carriage return it receives is shown
as <CR>. With --tty, the terminal is the program's controlling terminal,
standard error is on it and standard output reaches it as /dev/tty (the same
terminal by another path). The exit status is the program's.
"""
import fcntl
import termios
import os
import pty
import sys


def main():
    arguments = sys.argv[1:]
    both = arguments[:1] == ["--stderr"]
    only_stderr = arguments[:1] == ["--stderr-only"]
    via_tty = arguments[:1] == ["--tty"]
    if both or only_stderr or via_tty:
        arguments = arguments[1:]
    if len(arguments) < 2:
        sys.stderr.write(__doc__)
        return 2
    argv0, program, args = arguments[0], arguments[1], arguments[2:]
    master, slave = pty.openpty()
    pid = os.fork()
    if pid == 0:
        os.close(master)
        if only_stderr:
            null = os.open(os.devnull, os.O_WRONLY)
            os.dup2(null, 1)
            os.dup2(slave, 2)
        else:
            os.dup2(slave, 1)
        if both:
            os.dup2(slave, 2)
        if via_tty:
            os.setsid()
            fcntl.ioctl(slave, termios.TIOCSCTTY, 0)
            os.dup2(slave, 2)
            tty = os.open("/dev/tty", os.O_WRONLY)
            os.dup2(tty, 1)
            os.close(tty)
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
    received = bytes(received).replace(b"\r\n", b"\n")
    if only_stderr:
        received = received.replace(b"\r", b"<CR>")
    sys.stdout.buffer.write(received)
    sys.stdout.flush()
    if os.WIFEXITED(status):
        return os.WEXITSTATUS(status)
    return 128 + os.WTERMSIG(status)


if __name__ == "__main__":
    sys.exit(main())
