# Every pool is shown at once: no file is waited for or read without end,
# the caller's input (a pipe whose writer stays) is not read, and each
# special file is its pool's unreadable file, with its kind in words.
status=$(dirname "$LOGSIFT")/logsift-status
exec 3< <(exec sleep 60 2>/dev/null)
writer=$!
timeout 20 bash -c 'exec -a logsift-status "$0" --max-age 36500 -P rav' "$status" <&3
result=$?
kill "$writer"
exit "$result"
