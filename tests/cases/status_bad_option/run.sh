# An unknown option: getopt's message, the try-help line and status 1.
status=$(dirname "$LOGSIFT")/logsift-status
exec -a logsift-status "$status" --bogus
