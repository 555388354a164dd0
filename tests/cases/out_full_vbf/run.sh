# Standard output is a full disk: the first write fails, which is reported,
# and the run ends with status 1.
exec -a logsift "$LOGSIFT" vbf report.vbf >/dev/full
