# A directory that does not exist.
status=$(dirname "$LOGSIFT")/logsift-status
exec -a logsift-status "$status" -P no-such-directory
