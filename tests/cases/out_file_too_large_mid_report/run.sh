# A write that fails in the middle of a long report (the file size limit of
# 8 KiB is reached, with SIGXFSZ ignored): what was written is exactly the
# start of the whole report, the failure is reported as the last line of
# standard error, the run ends with status 1, and the walk stops there
# instead of going through the rest of the log (each message walked is
# traced, bit 0x80000000).
# Standard error goes through a pipe, which the limit does not cut.
trap '' XFSZ
{
    (ulimit -f 8; exec -a logsift "$LOGSIFT" -V 0x80000004 rtf log.xml >cut.out)
    echo "status $?" >status.txt
} 2>&1 | cat >trace.err
cat status.txt
(exec -a logsift "$LOGSIFT" -V 0x80000004 rtf log.xml) >whole.out 2>/dev/null
size=$(stat -c %s cut.out)
echo "written: $size bytes of $(stat -c %s whole.out)"
cmp -s -n "$size" cut.out whole.out && echo "they are the start of the whole report"
echo "messages walked: $(grep -c 'actionHistory\[670\]' trace.err) of 20000"
echo "last line of standard error: $(tail -n 1 trace.err)"
