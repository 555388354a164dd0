# No report of the pool: still one whole document, with the error, status 2.
json=$(dirname "$LOGSIFT")/logsift-json
mkdir -p rav
: >rav/OTHER_verify_00000001_report.vbf
exec -a logsift-json "$json" -P rav vbfn NOPOOL
