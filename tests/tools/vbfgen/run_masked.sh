#!/usr/bin/env bash
# run_masked.sh - runs "logsift ARGS..." for an end-to-end case whose report
# has a status section. That section's "  Report time: " line shows the clock
# of the run, so only the quoted time after that label is replaced by TIME;
# a time in any other shape is left alone and makes the case fail.
#   bash "$TESTS_DIR/tools/vbfgen/run_masked.sh" -a vbf report.vbf
set -o pipefail
time_text='"[A-Z][a-z][a-z] [0-3][0-9], [0-9]\{4\}  [01][0-9]:[0-5][0-9]:[0-6][0-9] [AP]M  [-+][0-9]\{4\}"'
(exec -a logsift "$LOGSIFT" "$@") | sed "s/^\(  Report time: \)$time_text\$/\1TIME/"
