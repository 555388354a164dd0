# Standard output on a terminal: only well-formed UTF-8 characters that are
# not controls are shown as they are; every byte of an ill-formed or cut
# sequence is shown escaped, in the messages and in a file name from the log
# that the looked-up path ends with. In a file the same lines keep their
# bytes (the count of those two lines at the end).
admin() { bash "$WITH_ADMIN" --private --state state.txt /_admin -- "$@"; }
admin "$PYTHON" "$TESTS_DIR/scripts/pty_run.py" logsift "$LOGSIFT" rtf log.xml || exit
admin bash -c 'exec -a logsift "$LOGSIFT" rtf log.xml' >file.out || exit
grep -c -e $'^  caf\351\2332J$' -e $'/x\355\242\233y\\.txt ' file.out
