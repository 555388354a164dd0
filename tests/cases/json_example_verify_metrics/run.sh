# The worked example: Prometheus textfile-collector metrics of every pool's
# newest verify report, through logsift-json and jq.
command -v jq >/dev/null || { echo "jq is missing" >&2; exit 77; }
LOGSIFT_JSON=$(dirname "$LOGSIFT")/logsift-json exec bash "$TESTS_DIR/../examples/verify-metrics.sh" rav
