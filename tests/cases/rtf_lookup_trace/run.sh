# -V 12: load errors on the output (4) and a trace of each named lookup (8).
exec bash "$WITH_ADMIN" --private --state state.txt --log requests.log /_admin -- \
    bash -c 'exec -a logsift "$LOGSIFT" -V 12 rtf log.xml'
