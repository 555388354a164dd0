# The log of rtf_terminal_shows_controls_escaped, whose messages hold control
# characters; here standard output is a file and every byte stays.
bash "$TESTS_DIR/cases/rtf_terminal_shows_controls_escaped/setup.sh"
