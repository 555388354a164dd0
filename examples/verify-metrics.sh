#!/usr/bin/env bash
# verify-metrics.sh - metrics for the Prometheus textfile collector from the
# newest verify report of every pool in the RAV directory, read with
# logsift-json and jq.
#
#   verify-metrics.sh [RAV_DIRECTORY] > logsift.prom.$$ && mv logsift.prom.$$ logsift.prom
#
# RAV_DIRECTORY defaults to /var/opt/kestrel/log/qvs/rav/; LOGSIFT_JSON names
# the program (default: logsift-json on the PATH). Per pool:
#   logsift_verify_read_ok              1 when the report was read whole and holds
#                                       a status summary
#   logsift_verify_errors_found         1 when the pool's error word is not 0
#   logsift_verify_warnings_found       1 when the pool's warning word is not 0
#   logsift_verify_blocks_verified      blocks the verify checked
#   logsift_verify_cross_linked_blocks  cross-linked blocks found
#   logsift_verify_unaccounted_blocks   blocks no object accounts for
#   logsift_verify_report_time_seconds  when the verify ended (Unix time)
set -u
dir=${1:-/var/opt/kestrel/log/qvs/rav/}
json=${LOGSIFT_JSON:-logsift-json}
command -v jq >/dev/null || { echo "verify-metrics.sh: jq is missing" >&2; exit 1; }

help() { printf '# HELP %s %s\n# TYPE %s gauge\n' "$1" "$2" "$1"; }
help logsift_verify_read_ok "1 when the newest verify report of the pool was read whole, with a status summary"
help logsift_verify_errors_found "1 when the pool's error word is not zero"
help logsift_verify_warnings_found "1 when the pool's warning word is not zero"
help logsift_verify_blocks_verified "Blocks the verify checked"
help logsift_verify_cross_linked_blocks "Cross-linked blocks found by the verify"
help logsift_verify_unaccounted_blocks "Blocks that no object accounts for"
help logsift_verify_report_time_seconds "When the verify ended, in seconds since 1970"

# Every pool's newest report in one document, from one reading of the
# directory: "pools" holds each pool's document, keyed by its name.
"$json" --path "$dir" vbfn 2>/dev/null | jq -r '
    def escaped: gsub("\\\\"; "\\\\") | gsub("\""; "\\\"") | gsub("\n"; "\\n");
    (.pools // {}) | to_entries[] | .key as $pool | .value
    | def metric(name; value): "\(name){pool=\"\($pool | escaped)\"} \(value)";
      (.sections // []) as $s
    | ($s | map(select(.section == "pool")) | first) as $p
    | ($s | map(select(.section == "status_summary")) | first) as $st
    | metric("logsift_verify_read_ok"; if has("error") or $st == null then 0 else 1 end),
      (if $p then metric("logsift_verify_errors_found"; if $p.errors != 0 then 1 else 0 end),
                  metric("logsift_verify_warnings_found"; if $p.warnings != 0 then 1 else 0 end)
       else empty end),
      (if $st then metric("logsift_verify_blocks_verified"; $st.blocks_verified),
                   metric("logsift_verify_cross_linked_blocks"; $st.cross_linked_blocks),
                   metric("logsift_verify_unaccounted_blocks"; $st.unaccounted_blocks),
                   metric("logsift_verify_report_time_seconds"; $st.verify_end_time_raw)
       else empty end)'
