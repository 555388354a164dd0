# Needs a machine without a running storage system: the command file of the
# administration volume must be absent, so the channel cannot be opened.
if [ -e /_admin/Manage_QVS/manage.cmd ]; then
    echo "a management command file exists at /_admin" >&2
    exit 77
fi
exec -a logsift "$LOGSIFT" rtf log.xml
