# Standard output is a pipe whose reader takes the first line and goes away,
# SIGPIPE being ignored (as some service managers and shells leave it): the
# next write fails with EPIPE, which is reported, the run ends with status 1,
# and the walk stops there. Before the reader goes, at most what the pipe
# holds (64 KiB, some 2,600 message lines) can be written, so the walk ends
# long before the 20,000th message (each message walked is traced, bit
# 0x80000000).
"$PYTHON" - "$LOGSIFT" <<'PY'
import os, signal, subprocess, sys
read_end, write_end = os.pipe()
with open("trace.err", "wb") as trace:
    run = subprocess.Popen(["logsift", "-V", "0x80000004", "rtf", "log.xml"],
                           executable=sys.argv[1], stdout=write_end, stderr=trace,
                           preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_IGN))
    os.close(write_end)
    first = b""
    while not first.endswith(b"\n"):
        byte = os.read(read_end, 1)
        if not byte:
            break
        first += byte
    os.close(read_end)
    status = run.wait()
print("first line:", first.decode().rstrip())
print("status", status)
PY
walked=$(grep -c 'actionHistory\[670\]' trace.err)
[ "$walked" -lt 3000 ] && echo "messages walked: fewer than 3000 of 20000"
echo "last line of standard error: $(tail -n 1 trace.err)"
