# Standard output and standard error into one file (2>&1): every trace of a
# walked message item (bit 0x80000000) and the message of the missing
# management command file stand where they were written, between the report
# lines before and after them.
exec -a logsift "$LOGSIFT" -V 0x80000004 rtf log.xml 2>&1
