# A rebuild log, its output going to a full disk.
exec -a logsift "$LOGSIFT" rtf log.xml >/dev/full
