# logsift-json writes DEL and the C1 controls as \u007f ... \u009f, as it
# writes the other controls: the document is valid JSON and the same bytes on
# a terminal, in a pipe and in a file, and safe to show as it is.
json=$(dirname "$LOGSIFT")/logsift-json
"$PYTHON" "$TESTS_DIR/scripts/pty_run.py" logsift-json "$json" --no-lookup rtf log.xml >terminal.json
"$json" --no-lookup rtf log.xml >file.json
"$json" --no-lookup rtf log.xml | cat >pipe.json
grep '"text"' terminal.json
cmp terminal.json file.json && cmp file.json pipe.json && echo "the same bytes everywhere"
