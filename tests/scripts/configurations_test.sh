#!/usr/bin/env bash
# configurations_test.sh SOURCE_DIR - the programs build and link in the
# configuration that `make test` does not build itself: g++ with
# AddressSanitizer and UndefinedBehaviorSanitizer at Debug (make test builds
# g++ optimised and clang with the sanitizers). A constant that differs in
# each source, reached from a template across sources, once broke only this
# one at the link. Then each program runs a sample under the sanitizers.
set -u
src=$1
command -v g++ >/dev/null || { echo "no g++"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if ! CXX=g++ CC=gcc cmake -S "$src" -B "$work/build" -DCMAKE_BUILD_TYPE=Debug -DLOGSIFT_TESTS=OFF \
        -DLOGSIFT_WERROR=ON -DCMAKE_CXX_FLAGS="-fsanitize=address,undefined -fno-sanitize-recover=all" \
        >"$work/configure.log" 2>&1; then
    echo "configuring failed:"; tail -n 30 "$work/configure.log"; exit 1
fi
if ! cmake --build "$work/build" -j "$(nproc)" --target logsift logsift-json logsift-status \
        >"$work/build.log" 2>&1; then
    echo "g++ Debug with ASan and UBSan does not build:"; grep -E 'error|undefined|discarded' "$work/build.log" | head -20
    tail -n 20 "$work/build.log"; exit 1
fi
fail=0
rav=$work/rav
mkdir -p "$rav"
cp "$src/examples/sample_rebuild.xml" "$rav/DATA1_rebuild_6553F200_log.xml"
for p in logsift logsift-json logsift-status; do
    "$work/build/$p" --version >/dev/null || { echo "$p --version failed"; fail=1; }
done
"$work/build/logsift" rtf "$rav/DATA1_rebuild_6553F200_log.xml" >"$work/out" 2>&1 ||
    { echo "logsift rtf failed:"; tail -n 20 "$work/out"; fail=1; }
"$work/build/logsift-json" --no-lookup rtf "$rav/DATA1_rebuild_6553F200_log.xml" >"$work/out" 2>&1 ||
    { echo "logsift-json rtf failed:"; tail -n 20 "$work/out"; fail=1; }
"$work/build/logsift-status" -P "$rav" >"$work/out" 2>&1 ||
    { echo "logsift-status failed:"; tail -n 20 "$work/out"; fail=1; }
grep -q 'runtime error\|AddressSanitizer' "$work/out" && { cat "$work/out"; fail=1; }
[ "$fail" -eq 0 ] && echo "g++ Debug with ASan and UBSan: the three programs build and run"
exit "$fail"
