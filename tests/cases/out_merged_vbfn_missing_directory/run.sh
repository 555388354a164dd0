# Standard output and standard error into one file (2>&1): the settings come
# first, then the system's message about the missing RAV directory (standard
# error), then the report's line about it (standard output).
exec -a logsift "$LOGSIFT" -P missing vbfn POOL1 2>&1
