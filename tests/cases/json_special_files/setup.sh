# The RAV directory of status_special_files: files named like reports and
# logs that are not regular files, and one good pool.
. "$TESTS_DIR/cases/status_special_files/setup.sh"
