# A failed-write report in place of a reply stops the walk: the channel's
# exception reaches the view, which reports it.
exec bash "$WITH_ADMIN" --private --state state.txt /_admin -- \
    bash -c 'exec -a logsift "$LOGSIFT" rtf log.xml'
