# Every pool of a RAV directory: names in mixed case, with underscores and
# with a malformed stamp; a clean report, one with errors, one the verify
# could not finish, a damaged one and one that cannot be read (a directory
# in its place); a pool with only a rebuild log; other files passed over.
# The logs' times are their modification times, set here.
status=$(dirname "$LOGSIFT")/logsift-status
mkdir -p rav
mv ./*.vbf ./*.VBF rav/
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/DATA1_rebuild_00000002_log.xml
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/logs_only_rebuild_00000001_log.xml
mkdir rav/unreadable_verify_00000001_report.vbf
: >rav/notes.txt
: >rav/DATA1_verify_1_report.vbf
touch -d '2026-11-23 04:00:00 UTC' rav/DATA1_rebuild_00000002_log.xml
touch -d '2026-11-24 05:00:00 UTC' rav/logs_only_rebuild_00000001_log.xml
# Reports this old are not stale: the cases do not age with the clock.
exec -a logsift-status "$status" --max-age 36500 -P rav
