# The newest verify report of a pool, its output going to a full disk.
exec -a logsift "$LOGSIFT" -P rav vbfn POOL1 >/dev/full
