# A clean report older than the age limit makes its pool stale, and so does
# one that holds no time (it reads as dated 1970): with a limit of a hundred
# years only the one without a time; with ten thousand days the one of 1970
# too; with 0 every one (a report a moment old is older than 0 days); a
# limit that is no number of days is a command-line error.
status=$(dirname "$LOGSIFT")/logsift-status
mkdir rav
mv ./*.vbf rav/
for days in 36500 10000 0; do
    echo "--max-age $days"
    (exec -a logsift-status "$status" --max-age "$days" -P rav -H) | cut -f 1-5
    echo "status $?"
done
for days in -1 36501 x ''; do
    (exec -a logsift-status "$status" --max-age "$days" -P rav 2>&1)
    echo "status $?"
done
