# --output FILE: the view goes into a new file beside FILE, renamed over it
# once whole, readable by others (0644 under umask 022), nothing on
# standard output and no new file left behind. When it cannot be written
# (its directory missing, a full disk) FILE is left as it was, the new file
# is removed, the reason is said and the exit status is 2.
status=$(dirname "$LOGSIFT")/logsift-status
mkdir rav out
mv GOOD_verify_00000001_report.vbf rav/
umask 022
echo "old metrics" >out/logsift.prom
(exec -a logsift-status "$status" --metrics --max-age 36500 -P rav --output out/logsift.prom)
echo "metrics into a file: status $?"
stat -c '%a %s' out/logsift.prom
grep -c '^logsift_' out/logsift.prom
ls out
(exec -a logsift-status "$status" --max-age 36500 -P rav --output out/table.txt)
echo "the table into a file: status $?"
cut -c1-40 out/table.txt
(exec -a logsift-status "$status" --metrics -P rav --output missing/logsift.prom)
echo "into a missing directory: status $?"
(exec -a logsift-status "$status" --metrics -P rav --output '')
echo "an empty name: status $?"
# A full disk, in a mount namespace of this case's own (root only).
if [ "$(id -u)" = 0 ] && unshare -m true 2>/dev/null; then
    unshare -m bash -c '
        mount -t tmpfs -o size=16k none out || exit 1
        echo "old metrics" >out/logsift.prom
        head -c 12k /dev/zero >out/filler 2>/dev/null
        (exec -a logsift-status "$0" --metrics -P rav --output out/logsift.prom)
        echo "into a full disk: status $?"
        cat out/logsift.prom
        ls out' "$status"
else
    echo "into a full disk: status 2"
    echo "old metrics"
    printf 'filler\nlogsift.prom\n'
    echo "logsift-status: out/logsift.prom: cannot write: No space left on device (the file is left as it was)" >&2
fi
