#!/usr/bin/env python3
"""unfinished_log_test.py BIN_DIR - rebuild logs read while they are written.

1. A writer process appends a log's items in pieces of every size (so that
   most reads end inside an item) while logsift-json reads it a few hundred
   times: every document is whole JSON with exit status 0, says the log is
   unfinished until the writer closes it, and no count ever goes back.
2. A log replaced by rename while it is read: every document is whole and
   holds the items of one version of the log.
3. The three programs on a log of 100,000 items cut at random points:
   logsift prints the design's text for a log without its closing root tag,
   logsift-json and logsift-status give the items that the cut left whole.
"""
import json
import os
import random
import subprocess
import sys
import tempfile
import time

BIN = sys.argv[1]
LOGSIFT = os.path.join(BIN, "logsift")
JSON = os.path.join(BIN, "logsift-json")
STATUS = os.path.join(BIN, "logsift-status")
VOLUME = "9f3d7c20-3f4e-11ee-8a-01-0050568c2e11"
failures = []


def fail(what):
    failures.append(what)
    print("FAIL", what)


def tod(i):
    return ('<todItem><key v="%d"/><zid v="0x%x"/><pZid v="0x10"/><flag v="0x%x"/>'
            '<volumeID v="%s"/></todItem>\n' % (i, i + 0x1000, 0x100 if i % 2 else 0x200, VOLUME))


def message(i):
    return '<messageItem><key v="%d"/><m><info>Step %d of the rebuild.</info></m></messageItem>\n' % (i, i)


def action(i):
    return ('<actionItem><key value="%d"/><description value="Rebuild volume"/>'
            '<objectName value="DATA1"/><subObjectName value="VOL%d"/><startUTC value="1700000000"/>'
            '</actionItem>\n' % (i, i))


def log_parts(tods, messages, actions):
    """The log's text in the order a rebuild writes it, as a list of pieces
    that each end at an item or tag boundary."""
    parts = ["<rebuildLog>\n<todHistory>\n"]
    parts += [tod(i) for i in range(1, tods + 1)]
    parts += ["</todHistory>\n<messageHistory>\n"]
    parts += [message(i) for i in range(1, messages + 1)]
    parts += ["</messageHistory>\n<actionHistory>\n"]
    parts += [action(i) for i in range(1, actions + 1)]
    parts += ["<actionCurrent><key value=\"%d\"/></actionCurrent>\n</actionHistory>\n" % actions,
              "</rebuildLog>\n"]
    return parts


def counts(doc):
    return (doc["totals"]["messages"], doc["totals"]["tod_items"], doc["totals"]["action_items"])


def run_json(path):
    p = subprocess.run([JSON, "--no-lookup", "rtf", path], stdin=subprocess.DEVNULL,
                       stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60)
    try:
        return p.returncode, json.loads(p.stdout)
    except ValueError as e:
        return p.returncode, {"not_json": str(e), "stderr": p.stderr.decode(errors="replace")}


def expected_counts(text):
    """What the items that a cut left whole count."""
    return (text.count("</messageItem>"), text.count("</todItem>"), text.count("</actionItem>"))


def live_writer(work):
    path = os.path.join(work, "live.xml")
    text = "".join(log_parts(400, 400, 200))
    open(path, "w").close()
    writer = subprocess.Popen([sys.executable, "-c", """
import os, random, sys, time
text, path = sys.stdin.read(), sys.argv[1]
random.seed(7)
with open(path, "a") as f:
    at = 0
    while at < len(text):
        step = random.randint(1, 97)
        f.write(text[at:at + step]); f.flush(); at += step
        time.sleep(0.0005)
""", path], stdin=subprocess.PIPE, text=True)
    writer.stdin.write(text)
    writer.stdin.close()
    reads, last, unfinished = 0, (0, 0, 0), 0
    while True:
        ended = writer.poll() is not None
        status, doc = run_json(path)
        reads += 1
        if "not_json" in doc:
            fail("live log, read %d: not a whole document: %s" % (reads, doc))
            break
        if status != 0:
            fail("live log, read %d: exit status %d: %s" % (reads, status, doc.get("error")))
            break
        now = counts(doc)
        if any(n < p for n, p in zip(now, last)):
            fail("live log, read %d: counts went back from %s to %s" % (reads, last, now))
        last = now
        unfinished += doc["finished"] is False
        if ended:
            break
    writer.wait()
    status, doc = run_json(path)
    if status != 0 or doc.get("finished") is not True or counts(doc) != (400, 400, 200):
        fail("live log, once written: status %d, finished %s, counts %s"
             % (status, doc.get("finished"), counts(doc) if "totals" in doc else None))
    print("live log: %d reads while written (%d unfinished), counts never went back, last %s"
          % (reads, unfinished, last))
    if reads < 100:
        fail("live log: only %d reads while it was written" % reads)


def replaced_by_rename(work):
    path = os.path.join(work, "replaced.xml")
    versions = {}
    for n, sizes in enumerate([(10, 20, 3), (200, 100, 30), (1000, 5, 1), (50, 2000, 90)]):
        text = "".join(log_parts(*sizes))
        versions[n] = expected_counts(text)
        with open(os.path.join(work, "v%d.xml" % n), "w") as f:
            f.write(text)
    stop = os.path.join(work, "stop")
    renamer = subprocess.Popen(["bash", "-c", """
cd "$1" || exit 1
i=0
until [ -e stop ]; do
    cp "v$((i % 4)).xml" next.xml && mv -f next.xml replaced.xml
    i=$((i + 1))
done
""", "renamer", work])
    seen = set()
    try:
        time.sleep(0.05)
        for read in range(200):
            status, doc = run_json(path)
            if "not_json" in doc or status != 0:
                fail("replaced log, read %d: status %d: %s" % (read, status, doc))
                break
            if doc["finished"] is not True or counts(doc) not in versions.values():
                fail("replaced log, read %d: counts %s of no version" % (read, counts(doc)))
                break
            seen.add(counts(doc))
    finally:
        open(stop, "w").close()
        renamer.wait(timeout=30)
    print("replaced log: 200 reads, each one version's items (%d versions seen)" % len(seen))


def large_log_cut(work):
    random.seed(11)
    parts = log_parts(40000, 40000, 20000)
    text = "".join(parts)
    rav = os.path.join(work, "rav")
    os.makedirs(rav)
    cuts = sorted(random.sample(range(20, len(text) - 20), 12))
    for cut in cuts:
        piece = text[:cut]
        path = os.path.join(rav, "BIG_rebuild_00000001_log.xml")
        with open(path, "w") as f:
            f.write(piece)
        want = expected_counts(piece)
        p = subprocess.run([LOGSIFT, "rtf", path], stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=120)
        if (b"\nRequired tag <rebuildLog> not found.  Status is 20162.\n" not in p.stdout
                or b"Unable to view file:  Require tag <rebuildLog> is missing" not in p.stdout
                or p.returncode != 0):
            fail("logsift, cut at %d: not the design's text: %s" % (cut, p.stdout[-300:]))
        status, doc = run_json(path)
        if status != 0 or doc.get("finished") is not False or counts(doc) != want:
            fail("logsift-json, cut at %d: status %d, counts %s, want %s"
                 % (cut, status, counts(doc) if "totals" in doc else doc, want))
        p = subprocess.run([STATUS, "--max-age", "36500", "-P", rav, "-H"],
                           stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                           stderr=subprocess.PIPE, timeout=120)
        fields = p.stdout.decode().rstrip("\n").split("\t")
        if (p.returncode != 0 or len(fields) != 13 or fields[9] != "unfinished"
                or fields[10] != str(want[0])):
            fail("logsift-status, cut at %d: status %d, fields %s, want %d messages"
                 % (cut, p.returncode, fields, want[0]))
    print("a log of 100,000 items (%d bytes) cut at %d points: logsift's text as designed, "
          "logsift-json and logsift-status the items left whole" % (len(text), len(cuts)))


with tempfile.TemporaryDirectory() as work:
    live_writer(work)
    replaced_by_rename(work)
    large_log_cut(work)
print("%d failures" % len(failures))
sys.exit(1 if failures else 0)
