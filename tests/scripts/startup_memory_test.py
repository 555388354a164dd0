#!/usr/bin/env python3
"""startup_memory_test.py BIN_DIR SAMPLE_REPORT SAMPLE_LOG - the three programs
under address-space limits from the loader's floor upwards in 64 KB steps:
--version, --help and a small run of each, and logsift-json's every-pool
documents over a directory of 1,000 pools.

Just above what the system's loader needs, memory is too short even for the
C++ runtime to throw a lack of memory; a program that allocates there, or
before main, ends with SIGABRT. Whatever the limit, no run may end by a
signal, and every document logsift-json writes must be whole JSON (or
nothing at all, with "out of memory" on standard error and status 2).
Below the floor the loader itself fails (status 127, or below that a
signal before anything is printed): the sweep starts above it, and runs
that meet the loader's failure all the same are counted apart.
"""
import json
import os
import resource
import shutil
import subprocess
import sys
import tempfile

STEP_KB = 64
SPAN_KB = 3 * 1024
# What the system's loader says when it cannot map the program or set it up.
LOADER_FAILURES = (b"error while loading shared libraries",
                   b"cannot allocate TLS data structures for initial thread")


def run(argv, limit_kb, cwd):
    def limit():
        resource.setrlimit(resource.RLIMIT_AS, (limit_kb * 1024, limit_kb * 1024))
    p = subprocess.run(argv, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                       stderr=subprocess.PIPE, preexec_fn=limit, cwd=cwd, timeout=120)
    return p.returncode, p.stdout, p.stderr


def loader_failed(status, err):
    return status == 127 and any(failure in err for failure in LOADER_FAILURES)


def floor_of(program, cwd):
    """The first limit above those where the loader says it failed (below
    them it cannot even map the program, and may end by a signal of its
    own before printing anything)."""
    seen_loader = False
    for kb in range(1024, 64 * 1024, STEP_KB):
        status, out, err = run([program, "--version"], kb, cwd)
        if loader_failed(status, err):
            seen_loader = True
        elif seen_loader or status == 0:
            return kb
    return None


def main():
    bin_dir, report, log = sys.argv[1:4]
    failures = []
    counts = {"runs": 0, "loader": 0, "out_of_memory": 0, "documents": 0}
    with tempfile.TemporaryDirectory() as work:
        small = os.path.join(work, "small")
        many = os.path.join(work, "many")
        os.makedirs(small)
        os.makedirs(many)
        shutil.copy(report, os.path.join(small, "POOL1_verify_00000001_report.vbf"))
        shutil.copy(log, os.path.join(small, "DATA1_rebuild_00000001_log.xml"))
        first = os.path.join(many, "P0000_verify_00000001_report.vbf")
        shutil.copy(report, first)
        for i in range(1, 1000):
            os.link(first, os.path.join(many, "P%04d_verify_00000001_report.vbf" % i))
        for i in range(0, 1000, 3):
            shutil.copy(log, os.path.join(many, "P%04d_rebuild_00000001_log.xml" % i))
        logsift = os.path.join(bin_dir, "logsift")
        js = os.path.join(bin_dir, "logsift-json")
        status_program = os.path.join(bin_dir, "logsift-status")
        runs = [
            (logsift, ["--version"]), (logsift, ["--help"]), (logsift, ["vbf", report]),
            (js, ["--version"]), (js, ["--help"]), (js, ["vbf", report]),
            (js, ["--no-lookup", "rtf", log]),
            (status_program, ["--version"]), (status_program, ["--help"]),
            (status_program, ["-P", small]),
            (js, ["-P", many, "vbfn"]), (js, ["-P", many, "--summary", "vbfn"]),
            (js, ["-P", many, "--summary", "rtfn"]),
        ]
        floors = {}
        for program, args in runs:
            if program not in floors:
                floors[program] = floor_of(program, work)
                if floors[program] is None:
                    failures.append("%s never starts" % program)
                    continue
            start = floors[program]
            for kb in range(start, start + SPAN_KB + 1, STEP_KB):
                status, out, err = run([program] + args, kb, work)
                counts["runs"] += 1
                what = "%s %s at %d KB" % (os.path.basename(program), " ".join(args), kb)
                if loader_failed(status, err):
                    counts["loader"] += 1
                    continue
                if status < 0 or status >= 128:
                    failures.append("%s: status %d: %s" % (what, status, err[-200:]))
                    continue
                if b"out of memory" in err:
                    counts["out_of_memory"] += 1
                if program == js and "--version" not in args and "--help" not in args:
                    if not out:
                        if status != 2 or b"out of memory" not in err:
                            failures.append("%s: no document, status %d: %s"
                                            % (what, status, err[-200:]))
                        continue
                    try:
                        json.loads(out)
                        counts["documents"] += 1
                    except ValueError as e:
                        failures.append("%s: not a whole document (%d bytes, status %d): %s"
                                        % (what, len(out), status, e))
    for f in failures[:20]:
        print("FAIL", f)
    print("floors (KB):", ", ".join("%s %d" % (os.path.basename(p), kb)
                                    for p, kb in sorted(floors.items()) if kb))
    print("%(runs)d runs: %(loader)d stopped by the loader, %(out_of_memory)d said out of memory, "
          "%(documents)d whole documents" % counts, "; %d failures" % len(failures))
    return 1 if failures else 0


sys.exit(main())
