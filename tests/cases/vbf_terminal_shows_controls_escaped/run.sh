# Standard output on a terminal: the names' control characters are shown
# escaped. The "Report time" line shows the clock of the run and is masked
# as run_masked.sh masks it.
set -o pipefail
time_text='"[A-Z][a-z][a-z] [0-3][0-9], [0-9]\{4\}  [01][0-9]:[0-5][0-9]:[0-6][0-9] [AP]M  [-+][0-9]\{4\}"'
"$PYTHON" "$TESTS_DIR/scripts/pty_run.py" logsift "$LOGSIFT" vbf report.vbf |
    sed "s/^\(  Report time: \)$time_text\$/\1TIME/"
