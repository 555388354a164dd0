# logsift-json on a terminal: JSON escapes ESC itself; DEL and the C1 control,
# which JSON allows raw, are shown escaped as logsift shows them. In a file
# the same document keeps them as they are.
json=$(dirname "$LOGSIFT")/logsift-json
python3 "$TESTS_DIR/scripts/pty_run.py" logsift-json "$json" --no-lookup rtf log.xml | grep '"text"'
"$json" --no-lookup rtf log.xml >file.json
grep -c $'del\177 c1\302\233 esc\\\\u001b' file.json
