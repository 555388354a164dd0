# A file of 600 MB of zero bytes under an address-space limit of 400 MB: the
# zero bytes are dropped as they are read, so the text stays empty and the
# log is reported for what it is, a file without <rebuildLog>, not as too
# large for memory. (The sanitizers' runtime cannot run under such a limit.)
if [ "${SANITIZED:-OFF}" = ON ]; then
    echo "built with the sanitizers" >&2
    exit 77
fi
truncate -s 600M zeros.xml
ulimit -v 400000
exec -a logsift "$LOGSIFT" rtf zeros.xml
