# Standard output on a terminal: the control characters are shown escaped.
exec "$PYTHON" "$TESTS_DIR/scripts/pty_run.py" logsift "$LOGSIFT" rtf log.xml
