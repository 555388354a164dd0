# How far the lookups are, on standard error when it is a terminal (each
# carriage return shown as <CR>): the count rewritten in place, then blanks
# over it. Not when standard error is a pipe, nor when standard output is
# the same terminal (the lines show how far it is), also when it reaches it
# as /dev/tty, nor when no management channel opens (nothing is looked up),
# nor for logsift-json in a pipe.
cp "$TESTS_DIR/../examples/sample_rebuild.xml" "$TESTS_DIR/../examples/sample_admin_state.txt" .
pty="$PYTHON $TESTS_DIR/scripts/pty_run.py"
json=$(dirname "$LOGSIFT")/logsift-json
admin() { bash "$WITH_ADMIN" --private --state sample_admin_state.txt /_admin -- "$@"; }
admin true || exit
echo "== logsift, standard error on a terminal"
admin $pty --stderr-only logsift "$LOGSIFT" rtf sample_rebuild.xml
echo
echo "== logsift-json, standard error on a terminal"
admin $pty --stderr-only logsift-json "$json" rtf sample_rebuild.xml
echo
echo "== logsift, standard error into a pipe"
admin "$LOGSIFT" rtf sample_rebuild.xml 2>&1 >/dev/null | cat -A
echo "== logsift, both on one terminal: lines that say looked up"
admin $pty --stderr logsift "$LOGSIFT" rtf sample_rebuild.xml | grep -c 'looked up'
echo "== logsift, standard output on the same terminal as /dev/tty: lines that say looked up"
admin $pty --tty logsift "$LOGSIFT" rtf sample_rebuild.xml | grep -c 'looked up'
echo "== logsift, no management command file: nothing looked up, nothing shown"
$pty --stderr-only logsift "$LOGSIFT" rtf sample_rebuild.xml
echo
echo "== logsift-json with --no-lookup: nothing asked, nothing shown"
admin $pty --stderr-only logsift-json "$json" --no-lookup rtf sample_rebuild.xml
echo "(end)"
