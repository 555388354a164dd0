# A directory without a report or a log: the heading, a message and status 2,
# so that a wrong directory never passes for a healthy one.
status=$(dirname "$LOGSIFT")/logsift-status
mkdir -p rav
: >rav/readme.txt
: >rav/POOL_verify_00000001_report.vbf.part
exec -a logsift-status "$status" --path=rav
