# Standard output and standard error on the same terminal: the traces of the
# walked items (bit 0x80000000) on standard error show the message's escape
# sequences and the file name's ill-formed bytes escaped, as standard output
# shows them, and stand where they were written among the report lines.
# Needs a machine without a running storage system: the command file of the
# administration volume must be absent, so the channel cannot be opened.
if [ -e /_admin/Manage_QVS/manage.cmd ]; then
    echo "a management command file exists at /_admin" >&2
    exit 77
fi
exec "$PYTHON" "$TESTS_DIR/scripts/pty_run.py" --stderr logsift "$LOGSIFT" -V 0x80000004 rtf log.xml
