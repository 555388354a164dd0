#!/usr/bin/env python3
"""manpage_examples_test.py BIN_DIR SOURCE_DIR SAMPLE_REPORT PAGE... - the
examples of the manual pages work as printed.

In an EXAMPLES section, a line that begins with "$ " is a command, and the
lines after it, up to the next command or the end of the example, are what
it prints (compared line by line, trailing blanks aside; a command whose
quote is open goes on on the next lines; a command printed without its
output must only end with status 0, or 4 for errors found). The commands run
as a user runs them: the programs on the PATH, the sample files in the RAV
directory at its default place (/var/opt/kestrel/log/qvs/rav/, a tmpfs over
/var/opt in a mount namespace of the test's own) and in ./rav, and the names
of the rebuild log asked of the simulated administration volume at /_admin.
Needs root, a mount namespace and /dev/fuse: skipped (77) without them.
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile

RAV = "/var/opt/kestrel/log/qvs/rav"


def examples(page):
    """(command, expected lines or None) of each example of the page."""
    text = open(page, encoding="utf-8").read()
    section = re.search(r'^\.SH EXAMPLES\n(.*?)(?=^\.SH )', text, re.S | re.M)
    found = []
    if not section:
        return found
    for block in re.findall(r'^\.nf\n(.*?)^\.fi\n', section.group(1), re.S | re.M):
        lines = [unescape(l) for l in block.split("\n")[:-1]]
        command, output = None, []
        for line in lines + ["$ "]:
            # A command whose quote is still open goes on on the next line.
            if command is not None and not output and command.count("'") % 2 == 1:
                command += "\n" + line
                continue
            if line.startswith("$ "):
                if command is not None:
                    found.append((command, output if output else None))
                command, output = line[2:], []
            elif command is not None:
                output.append(line)
    return [(c, o) for c, o in found if c]


def unescape(line):
    return (line.replace("\\-", "-").replace("\\e", "\\").replace("\\(aq", "'")
            .replace("\\(dq", '"').replace("\\&", ""))


def inside(bin_dir, work, pages):
    subprocess.run(["mount", "-t", "tmpfs", "none", "/var/opt"], check=True)
    os.makedirs(RAV)
    for name in os.listdir(os.path.join(work, "rav")):
        shutil.copy2(os.path.join(work, "rav", name), RAV)
    env = dict(os.environ, PATH=bin_dir + ":" + os.environ["PATH"], TZ="UTC", LC_ALL="C")
    failures = runs = 0
    for page in pages:
        for command, expected in examples(page):
            runs += 1
            p = subprocess.run(["bash", "-c", command], cwd=work, env=env,
                               stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, timeout=120)
            got = [l.rstrip() for l in p.stdout.decode("utf-8", "replace").split("\n")]
            while got and got[-1] == "":
                got.pop()
            where = "%s: %s" % (os.path.basename(page), command)
            if expected is None:
                # 4: a report found errors, which the samples' does.
                if p.returncode not in (0, 4):
                    print("FAIL %s: status %d" % (where, p.returncode))
                    failures += 1
            elif got != [l.rstrip() for l in expected]:
                print("FAIL %s\n  printed:\n    %s\n  the page says:\n    %s"
                      % (where, "\n    ".join(got), "\n    ".join(expected)))
                failures += 1
    print("%d examples run, %d failures" % (runs, failures))
    return 1 if failures or runs < 8 else 0


def main():
    if sys.argv[1] == "--inside":
        return inside(sys.argv[2], sys.argv[3], sys.argv[4:])
    bin_dir, source, report = sys.argv[1:4]
    pages = sys.argv[4:]
    if os.geteuid() != 0 or not os.path.exists("/dev/fuse"):
        print("skipped: needs root and /dev/fuse")
        return 77
    with tempfile.TemporaryDirectory() as work:
        os.makedirs(os.path.join(work, "rav"))
        shutil.copy(report, os.path.join(work, "rav", "POOL1_verify_6553F100_report.vbf"))
        log = os.path.join(work, "rav", "DATA1_rebuild_6553F200_log.xml")
        shutil.copy(os.path.join(source, "examples", "sample_rebuild.xml"), log)
        os.utime(log, (1795621700, 1795621700))  # 2026-11-25T15:48:20Z
        shutil.copy(os.path.join(source, "examples", "sample_rebuild.xml"), work)
        env = dict(os.environ, LOGSIFT=os.path.join(bin_dir, "logsift"))
        p = subprocess.run(
            ["bash", os.path.join(source, "tests", "tools", "qvsadminfs", "with-admin-volume.sh"),
             "--private", "--state", os.path.join(source, "examples", "sample_admin_state.txt"),
             "/_admin", "--", sys.executable, os.path.abspath(__file__), "--inside", bin_dir,
             work] + [os.path.abspath(p) for p in pages], env=env, timeout=600)
        return p.returncode


sys.exit(main())
