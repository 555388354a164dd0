# The status section prints the clock in its "Report time" line; the runner
# replaces only that quoted time with TIME.
exec bash "$TESTS_DIR/tools/vbfgen/run_masked.sh" -a -o -H vbf report.vbf
