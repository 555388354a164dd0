# The help text, then --version.
status=$(dirname "$LOGSIFT")/logsift-status
(exec -a logsift-status "$status" --help) || exit
exec -a logsift-status "$status" -v
