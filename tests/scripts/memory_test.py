#!/usr/bin/env python3
"""memory_test.py LOGSIFT LOGSIFT-JSON REPORT SHAPE - both programs under
address-space limits from 5 MB to 400 MB, over one file of SHAPE: a rebuild
log made mostly of messages, of TOD items or of action items, or the verify
report REPORT (built with the tests), which has a large action list and a
large problem list.

Whatever the limit, no run may end by a signal (std::bad_alloc escaping
main ends in SIGABRT). logsift-json must write a whole document every time
(valid JSON, its outcome, and an "error" object with exit status 2 when the
outcome is not 0), and at the largest limit every document must be complete.
logsift must end with status 0, or 1 with its "out of memory" line. Below
the size that the system's loader needs to map the C++ library, a program
cannot start at all; that exit (127, with the loader's message) is counted
apart, never taken for a pass of the program's own.
"""
import json
import os
import resource
import subprocess
import sys
import tempfile

LIMITS_MB = [5, 8, 16, 24, 32, 48, 64, 96, 200, 400]
LOADER_FAILURE = b"error while loading shared libraries"


def make_log(directory, shape):
    volume = "9f3d7c20-3f4e-11ee-8a-01-0050568c2e11"
    mb = 1024 * 1024

    def message(i):
        return ('<messageItem><key v="%d"/><m><info>Scanning volume %d of pool DATA1.</info></m>'
                '</messageItem>\n' % (i, i))

    def tod(i):
        return ('<todItem><key v="%d"/><zid v="0x%x"/><pZid v="0x10"/><flag v="0x8103"/>'
                '<nameType v="0"/><nameSpace v="2"/><volumeID v="%s"/>'
                '<fileName>file%d.dat</fileName></todItem>\n' % (i, i + 0x1000, volume, i))

    def action(i):
        return ('<actionItem><key value="%d"/><description value="Verify object tree"/>'
                '<objectName value="VOL%d"/><subObjectName value="objtree"/><isPool value="0"/>'
                '<start value="16"/><end value="8192"/><startUTC value="1794733320"/>'
                '<endUTC value="1794735712"/></actionItem>\n' % (i, i))

    shapes = {"messages": ("messageHistory", message, 48 * mb),
              "tod_items": ("todHistory", tod, 24 * mb),
              "action_items": ("actionHistory", action, 48 * mb)}
    history, item, size = shapes[shape]
    path = os.path.join(directory, shape + ".xml")
    count = size // len(item(100000))
    with open(path, "w") as f:
        f.write("<rebuildLog><%s>\n" % history)
        for first in range(1, count + 1, 10000):
            f.write("".join(item(i) for i in range(first, min(first + 10000, count + 1))))
        f.write("</%s></rebuildLog>\n" % history)
    return path


def run(argv, limit_mb):
    def limit():
        resource.setrlimit(resource.RLIMIT_AS, (limit_mb * 1024 * 1024,) * 2)
    with tempfile.TemporaryFile() as out:
        done = subprocess.run(argv, stdin=subprocess.DEVNULL, stdout=out,
                              stderr=subprocess.PIPE, preexec_fn=limit, timeout=300,
                              env=dict(os.environ, TZ="UTC", LC_ALL="C"))
        out.seek(0)
        return done.returncode, out.read(), done.stderr


def main():
    if len(sys.argv) != 5:
        sys.stderr.write(__doc__)
        return 2
    logsift, logsift_json, report, shape = sys.argv[1:]
    failures = []
    counts = {"document": 0, "out of memory": 0, "loader": 0}
    with tempfile.TemporaryDirectory() as directory:
        if shape == "verify_report":
            kind, path = "vbf", report
        else:
            kind, path = "rtf", make_log(directory, shape)
        print("%-14s %-8s %s" % ("file", "limit", "logsift-json / logsift"))
        for limit_mb in LIMITS_MB:
            what = "%s at %d MB" % (shape, limit_mb)
            seen = []
            # logsift-json: a whole document, or the loader's failure.
            status, out, err = run([logsift_json, "--no-lookup", kind, path], limit_mb)
            if status < 0 or status >= 128 or b"terminate called" in err:
                failures.append("%s: logsift-json ended with status %d: %s"
                                % (what, status, err[-300:]))
                seen.append("SIGNAL")
            elif status == 127 and LOADER_FAILURE in err:
                counts["loader"] += 1
                seen.append("loader")
            else:
                try:
                    doc = json.loads(out)
                    outcome = doc["outcome"]["status"]
                except (ValueError, KeyError, TypeError) as e:
                    failures.append("%s: logsift-json wrote no whole document (%s), "
                                    "status %d: %s" % (what, e, status, err[-300:]))
                    seen.append("BROKEN")
                    outcome = None
                if outcome is not None:
                    if outcome != 0 and ("error" not in doc or not status & 2):
                        failures.append("%s: outcome %d without its error and status 2"
                                        % (what, outcome))
                    # The files are sound: memory is the one thing that can fail.
                    if outcome not in (0, 20000):
                        failures.append("%s: outcome %d, not 0 or 20000 (out of memory)"
                                        % (what, outcome))
                    if limit_mb == LIMITS_MB[-1] and outcome != 0:
                        failures.append("%s: the document is not complete: %s"
                                        % (what, doc.get("error")))
                    counts["document"] += 1
                    if outcome == 20000:
                        counts["out of memory"] += 1
                    seen.append("whole (%d)" % outcome)
            # logsift: a clean end.
            argv = [logsift, "-a", kind, path] if kind == "vbf" else [logsift, kind, path]
            status, out, err = run(argv, limit_mb)
            if status < 0 or status >= 128 or b"terminate called" in err:
                failures.append("%s: logsift ended with status %d: %s"
                                % (what, status, err[-300:]))
                seen.append("SIGNAL")
            elif status == 127 and LOADER_FAILURE in err:
                counts["loader"] += 1
                seen.append("loader")
            elif status == 1 and b"logsift: out of memory" in err:
                seen.append("out of memory")
            elif status != 0:
                failures.append("%s: logsift ended with status %d: %s"
                                % (what, status, err[-300:]))
                seen.append("status %d" % status)
            else:
                seen.append("ended")
            print("%-14s %4d MB  %s" % (shape, limit_mb, " / ".join(seen)), flush=True)
    print("%d runs: %d whole documents (%d of them out of memory), %d that the loader "
          "could not start" % (2 * len(LIMITS_MB), counts["document"],
                               counts["out of memory"], counts["loader"]))
    for failure in failures:
        print("FAIL", failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
