#!/usr/bin/env bash
# run.sh MODE FUZZ_BUILD_DIR SECONDS - runs every fuzz target.
#   MODE fuzz:  each target for SECONDS, new inputs kept in FUZZ_BUILD_DIR/corpus
#   MODE check: replay every committed corpus input, then fuzz each target for
#               SECONDS (at most 60) from the committed corpus
# Any crash fails the run; the crashing input is left in FUZZ_BUILD_DIR/crashes.
set -u
mode=$1 build=$2 seconds=$3
here=$(cd "$(dirname "$0")" && pwd)
build=$(cd "$build" && pwd)
[ "$mode" = check ] && [ "$seconds" -gt 60 ] && seconds=60
mkdir -p "$build/crashes"
fail=0
targets=$(cd "$here" && ls fuzz_*.cpp | sed 's/\.cpp$//')
for t in $targets; do
    bin="$build/fuzz/$t"
    [ -x "$bin" ] || { echo "$t: not built"; fail=1; continue; }
    seeds="$here/corpus/$t"
    work="$build/corpus/$t"
    mkdir -p "$seeds" "$work"
    dict=()
    [ -f "$here/$t.dict" ] && dict=(-dict="$here/$t.dict")
    common=(-close_fd_mask=3 -timeout=10 -rss_limit_mb=2048 -malloc_limit_mb=1024
            -artifact_prefix="$build/crashes/$t-")
    if [ "$mode" = check ]; then
        n=$(ls "$seeds" | wc -l)
        if ! "$bin" "${common[@]}" -runs=0 "$seeds" >"$build/$t.replay.log" 2>&1; then
            echo "$t: corpus replay FAILED"; tail -n 30 "$build/$t.replay.log"; fail=1; continue
        fi
        echo "$t: replayed $n corpus inputs"
    fi
    if ! "$bin" "${common[@]}" "${dict[@]}" -max_total_time="$seconds" -print_final_stats=1 \
            "$work" "$seeds" >"$build/$t.fuzz.log" 2>&1; then
        echo "$t: FAILED"; tail -n 40 "$build/$t.fuzz.log"; fail=1; continue
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$build/$t.fuzz.log" | tail -n 1)
    echo "$t: ${runs:-?} executions in ${seconds}s, no finding"
done
exit "$fail"
