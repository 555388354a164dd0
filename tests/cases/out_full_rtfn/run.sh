# The newest rebuild log of a pool, its output going to a full disk.
exec -a logsift "$LOGSIFT" -P rav rtfn DATA1 >/dev/full
