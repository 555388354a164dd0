#!/usr/bin/env bash
# prometheus_test.sh LOGSIFT_STATUS SAMPLE_REPORT SAMPLE_LOG RULES_DIR - the
# metrics of `logsift-status --metrics` as a Prometheus server stores them.
#
# Two servers, each a RAV directory and a textfile directory served by a
# node exporter of its own (Debian's prometheus-node-exporter, the textfile
# collector alone): server-a holds POOL1 (the sample report) and DATA1 (the
# sample log), server-b ARCHIVE (the report again). A Prometheus server
# scrapes both every second with the rules of RULES_DIR; through its HTTP
# API the test checks the values it stored per instance and pool, the state
# sets, the series that a pool without a report or log must not have, and
# that the alerts on errors and lost data fire. What was stored for the
# samples is printed. Every process started is stopped on the way out;
# skipped (77) where prometheus or the node exporter is not installed.
set -u
usage="usage: prometheus_test.sh LOGSIFT_STATUS SAMPLE_REPORT SAMPLE_LOG RULES_DIR"
status_program=${1:?$usage} report=${2:?$usage} log=${3:?$usage} rules=${4:?$usage}
# How long the servers may take to start and to store the first scrapes.
deadline_seconds=${PROMETHEUS_TEST_DEADLINE:-60}

for program in prometheus prometheus-node-exporter; do
    command -v "$program" >/dev/null ||
        { echo "$program is missing (Debian package $program): skipped"; exit 77; }
done
python=/usr/bin/python3
[ -x "$python" ] || python=python3
for f in "$status_program" "$report" "$log" "$rules/logsift.rules.yml"; do
    [ -e "$f" ] || { echo "missing: $f"; exit 1; }
done
status_program=$(cd "$(dirname "$status_program")" && pwd)/$(basename "$status_program")
rules=$(cd "$rules" && pwd)

work=$(mktemp -d)
pids=()
stop_all() {
    local pid i
    for pid in "${pids[@]}"; do kill -TERM "$pid" 2>/dev/null; done
    # Bounded: what has not ended after 10 s is killed.
    for pid in "${pids[@]}"; do
        for ((i = 0; i < 100; i++)); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -KILL "$pid" 2>/dev/null
        wait "$pid" 2>/dev/null
    done
    rm -rf "$work"
}
trap stop_all EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
# The node exporter may run as prometheus (below): it must reach the files.
chmod 755 "$work"

# The two servers' RAV directories and their metrics.
mkdir -p "$work/a/rav" "$work/a/textfile" "$work/b/rav" "$work/b/textfile"
cp "$report" "$work/a/rav/POOL1_verify_6553F100_report.vbf"
cp "$log" "$work/a/rav/DATA1_rebuild_6553F200_log.xml"
cp "$report" "$work/b/rav/ARCHIVE_verify_6553F100_report.vbf"
fail=0
for server in a b; do
    # As the service runs it (UMask=0022).
    (umask 022 && cd "$work/$server" &&
        "$status_program" --metrics -P rav --output textfile/logsift.prom) \
        >"$work/$server/status.out" 2>"$work/$server/status.err"
    rc=$?
    # 0: the metrics were written (a pool's errors are in them, not in the
    # exit status).
    if [ "$rc" -ne 0 ]; then
        echo "server-$server: logsift-status --metrics ended with status $rc, not 0"
        cat "$work/$server/status.out" "$work/$server/status.err"; fail=1
    fi
    [ -s "$work/$server/status.out" ] &&
        { echo "server-$server: --output wrote to standard output as well"; fail=1; }
    prom=$work/$server/textfile/logsift.prom
    if [ ! -f "$prom" ]; then
        echo "server-$server: no $prom"; exit 1
    fi
    # The node exporter runs as prometheus, not as the owner of the file.
    mode=$(stat -c %a "$prom")
    (( 8#$mode & 8#004 )) || { echo "server-$server: logsift.prom is not readable by others (mode $mode)"; fail=1; }
    leftovers=$(find "$work/$server/textfile" -mindepth 1 ! -name logsift.prom)
    [ -z "$leftovers" ] || { echo "server-$server: left beside the metrics: $leftovers"; fail=1; }
done

# Three free loopback ports, held together while they are chosen.
read -r port_a port_b port_prometheus < <("$python" -c '
import socket
held = []
for _ in range(3):
    s = socket.socket(); s.bind(("127.0.0.1", 0)); held.append(s)
print(*[s.getsockname()[1] for s in held])')
[ -n "$port_prometheus" ] || { echo "no free port"; exit 1; }

# As the node exporter's own user where there is one, as Debian runs it.
as_exporter=()
if [ "$(id -u)" -eq 0 ] && id prometheus >/dev/null 2>&1 && command -v setpriv >/dev/null; then
    as_exporter=(setpriv --reuid=prometheus --regid=prometheus --clear-groups)
    # A TMPDIR closed to others hides the files from it, whatever their mode.
    if ! "${as_exporter[@]}" test -r "$work/a/textfile/logsift.prom"; then
        echo "the user prometheus cannot reach $work: the node exporters run as $(id -un)"
        as_exporter=()
    fi
fi
for server in a b; do
    port_var=port_$server
    "${as_exporter[@]}" prometheus-node-exporter --collector.disable-defaults --collector.textfile \
        --collector.textfile.directory="$work/$server/textfile" \
        --web.listen-address="127.0.0.1:${!port_var}" >"$work/$server/exporter.log" 2>&1 </dev/null &
    pids+=($!)
done

cat >"$work/prometheus.yml" <<EOF
global:
  scrape_interval: 1s
  evaluation_interval: 1s
rule_files:
  - $rules/logsift.rules.yml
scrape_configs:
  - job_name: node
    static_configs:
      - targets: ['127.0.0.1:$port_a']
        labels:
          instance: server-a
      - targets: ['127.0.0.1:$port_b']
        labels:
          instance: server-b
EOF
prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/data" \
    --web.listen-address="127.0.0.1:$port_prometheus" >"$work/prometheus.log" 2>&1 </dev/null &
pids+=($!)

# In the background, so that a signal to this script is handled at once.
"$python" - "$port_prometheus" "$deadline_seconds" "${pids[@]}" <<'EOF' &
import json, os, sys, time, urllib.parse, urllib.request

port, deadline_seconds, pids = sys.argv[1], float(sys.argv[2]), [int(p) for p in sys.argv[3:]]
base = "http://127.0.0.1:%s/api/v1/" % port
deadline = time.monotonic() + deadline_seconds
failures = []

def alive():
    for pid in pids:
        try:
            os.kill(pid, 0)
        except ProcessLookupError:
            return False
    return True

def get(path, **params):
    url = base + path + ("?" + urllib.parse.urlencode(params) if params else "")
    with urllib.request.urlopen(url, timeout=5) as reply:
        document = json.load(reply)
    if document.get("status") != "success":
        raise RuntimeError("%s: %s" % (url, document))
    return document["data"]

def query(expr):
    return get("query", query=expr)["result"]

def wait_for(what, test):
    """Polls test() until it is true; False when the deadline passes."""
    while time.monotonic() < deadline:
        if not alive():
            print("a server ended while waiting for " + what)
            return False
        try:
            if test():
                return True
        except (OSError, RuntimeError, ValueError, LookupError):
            pass  # not listening yet, or not yet scraped
        time.sleep(0.25)
    print("not within %g s: %s" % (deadline_seconds, what))
    return False

def labels(series, *names):
    return tuple(series["metric"].get(n, "") for n in names)

def values(expr, *names):
    return {labels(s, *names): float(s["value"][1]) for s in query(expr)}

def expect(what, got, want):
    if got != want:
        failures.append("%s: got %r, want %r" % (what, got, want))

start = time.monotonic()
if not wait_for("both instances' metrics",
                lambda: query("count(count by (instance) (logsift_pools))")[0]["value"][1] == "2"):
    # Why: a target down, or a file that the textfile collector could not
    # read or parse.
    try:
        for expr in ("up", "node_textfile_scrape_error", "logsift_pools"):
            print(expr, values(expr, "instance"))
    except (OSError, RuntimeError, ValueError, LookupError) as e:
        print("the API does not answer:", e)
    sys.exit(1)
print("both instances scraped after %.1f s" % (time.monotonic() - start))

# Per instance.
expect("logsift_pools", values("logsift_pools", "instance"),
       {("server-a",): 2.0, ("server-b",): 1.0})
expect("logsift_directory_read_success", values("logsift_directory_read_success", "instance"),
       {("server-a",): 1.0, ("server-b",): 1.0})
expect("instances with logsift_build_info", sorted(values("logsift_build_info", "instance")),
       [("server-a",), ("server-b",)])
expect("instances with logsift_max_age_seconds", sorted(values("logsift_max_age_seconds", "instance")),
       [("server-a",), ("server-b",)])

# Per pool: the reports' and the log's counts.
expect("logsift_verify_errors", values("logsift_verify_errors", "instance", "pool"),
       {("server-a", "POOL1"): 4.0, ("server-b", "ARCHIVE"): 4.0})
expect("logsift_verify_read_success", values("logsift_verify_read_success", "instance", "pool"),
       {("server-a", "POOL1"): 1.0, ("server-b", "ARCHIVE"): 1.0})
expect("logsift_rebuild_deleted_objects", values("logsift_rebuild_deleted_objects", "instance", "pool"),
       {("server-a", "DATA1"): 4.0})
expect("logsift_rebuild_read_success", values("logsift_rebuild_read_success", "instance", "pool"),
       {("server-a", "DATA1"): 1.0})
expect("logsift_rebuild_objects{action=\"DELETED\"}",
       values('logsift_rebuild_objects{action="DELETED"}', "instance", "pool"),
       {("server-a", "DATA1"): 4.0})
# The same report on both servers counts the same.
for name in ("logsift_verify_errors", "logsift_verify_warnings", "logsift_verify_problem_rows",
             "logsift_verify_finished", "logsift_verify_report_timestamp_seconds"):
    got = values(name, "pool")
    expect(name + ": POOL1 against ARCHIVE", got.get(("POOL1",)), got.get(("ARCHIVE",)))
    expect(name + ": pools", sorted(got), [("ARCHIVE",), ("POOL1",)])

# A pool without a verify report has no verify series but its verdict; one
# without a rebuild log no rebuild series.
expect("logsift_verify_* of DATA1", sorted(values(
    '{__name__=~"logsift_verify_.*", __name__!="logsift_verify_verdict", pool="DATA1"}', "__name__")), [])
expect("logsift_rebuild_* of POOL1 and ARCHIVE", sorted(values(
    '{__name__=~"logsift_rebuild_.*", pool=~"POOL1|ARCHIVE"}', "__name__")), [])

# State sets: one series per word, exactly one of them 1, for every pool.
HEALTH = ["healthy", "warnings", "rebuilding", "unverified", "stale", "incomplete", "truncated",
          "errors", "data_lost", "damaged", "unreadable", "no_files"]
VERDICT = ["clean", "warnings", "errors", "incomplete", "no_data", "damaged", "unreadable",
           "no_report", "no_files"]
POOLS = [("server-a", "DATA1"), ("server-a", "POOL1"), ("server-b", "ARCHIVE")]
for name, label, words in (("logsift_pool_health", "health", HEALTH),
                           ("logsift_verify_verdict", "verdict", VERDICT)):
    got = values(name, "instance", "pool", label)
    for pool in POOLS:
        expect("%s words of %s" % (name, "/".join(pool)),
               sorted(w for (i, p, w) in got if (i, p) == pool), sorted(words))
        expect("%s of %s set to 1" % (name, "/".join(pool)),
               sum(v for (i, p, w), v in got.items() if (i, p) == pool), 1.0)
    if name == "logsift_pool_health":
        expect("health of DATA1", got.get(("server-a", "DATA1", "data_lost")), 1.0)
    else:
        expect("verdict of POOL1", got.get(("server-a", "POOL1", "errors")), 1.0)
        expect("verdict of DATA1", got.get(("server-a", "DATA1", "no_report")), 1.0)

# The rules loaded, and every one evaluates without an error.
def rules_evaluated():
    groups = get("rules")["groups"]
    rules = [r for g in groups if g["name"] == "logsift" for r in g["rules"]]
    return rules and all(r.get("health") != "unknown" for r in rules) and rules
if wait_for("the logsift rules evaluated", rules_evaluated):
    for r in rules_evaluated():
        if r.get("health") != "ok":
            failures.append("rule %s: health %s: %s" % (r["name"], r.get("health"), r.get("lastError")))

# The alerts on errors and on lost data, pending or firing.
def alerts():
    return {(a["labels"]["alertname"], a["labels"].get("instance"), a["labels"].get("pool")): a["state"]
            for a in get("alerts")["alerts"]}
wanted = [("LogsiftVerifyErrors", "server-a", "POOL1"), ("LogsiftVerifyErrors", "server-b", "ARCHIVE"),
          ("LogsiftDataLost", "server-a", "DATA1")]
if not wait_for("the errors and data lost alerts",
                lambda: all(alerts().get(w) in ("pending", "firing") for w in wanted)):
    failures.append("alerts: %r" % alerts())
unwanted = [k for k in alerts() if k[0] in ("LogsiftVerifyErrors", "LogsiftDataLost") and k not in wanted]
expect("other errors and data lost alerts", unwanted, [])

print("\nWhat Prometheus stored (instant query {__name__=~\"logsift_.*\"}):")
for s in sorted(query('{__name__=~"logsift_.*"}'),
                key=lambda s: (s["metric"]["instance"], s["metric"]["__name__"], sorted(s["metric"].items()))):
    m = dict(s["metric"])
    name = m.pop("__name__")
    print("%s{%s} %s" % (name, ",".join('%s="%s"' % kv for kv in sorted(m.items())), s["value"][1]))
print("\nAlerts:")
for (name, instance, pool), state in sorted(alerts().items(), key=lambda kv: tuple(map(str, kv[0]))):
    print("%s{instance=\"%s\",pool=\"%s\"} %s" % (name, instance, pool, state))

for f in failures:
    print("FAILED:", f)
print("stored and alerted as expected" if not failures else "%d checks failed" % len(failures))
sys.exit(1 if failures else 0)
EOF
pids+=($!)
wait "$!"
rc=$?
if [ "$rc" -ne 0 ]; then
    for f in a/exporter.log b/exporter.log prometheus.log; do
        echo "--- $f (last lines)"; tail -n 15 "$work/$f"
    done
fi
if [ "$rc" -ne 0 ] || [ "$fail" -ne 0 ]; then
    echo "prometheus test failed"; exit 1
fi
echo "prometheus test ok"
exit 0
