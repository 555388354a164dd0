# The version lines cannot be written: reported, status 1.
exec -a logsift "$LOGSIFT" --version >/dev/full
