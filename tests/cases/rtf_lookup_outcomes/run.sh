# Every lookup outcome of rtf through the simulated administration volume.
exec bash "$WITH_ADMIN" --private --state state.txt --log requests.log /_admin -- \
    bash -c 'exec -a logsift "$LOGSIFT" rtf log.xml'
