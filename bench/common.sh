# common.sh - what both benchmarks time and summarise with; sourced.

# timed "command": seconds the command took, run by this shell itself (no
# shell start counted), its output redirected in the command.
timed() {
    local s e
    s=$EPOCHREALTIME
    eval "$1"
    e=$EPOCHREALTIME
    awk -v s="$s" -v e="$e" 'BEGIN { printf "%.4f", e - s }'
}

# The median of the numbers on standard input, one a line.
median() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2) }'; }
