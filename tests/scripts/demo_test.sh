#!/usr/bin/env bash
# demo_test.sh SOURCE_DIR - what a new user runs first works with nothing but
# a compiler and CMake: `make demo` and `make install` in a scratch build
# tree with GoogleTest out of sight (as on a machine without it) configure,
# build the tool without any test, show the samples and install a stripped
# binary with its manual page, completion and documents.
set -u
here=$(cd "$(dirname "$0")" && pwd)
src=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail=0
flags="CMAKE_FLAGS=-DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON"

if ! make -C "$src" demo BUILD_DIR="$work/build" "$flags" >"$work/demo.log" 2>&1; then
    echo "make demo failed:"; tail -n 30 "$work/demo.log"; exit 1
fi
for text in '$ logsift -a -o -H vbf sample_verify.vbf' ' Pool: PROD_POOL' \
            '$ logsift rtf sample_rebuild.xml' 'Rebuild messages' 'Found 11 messages.'; do
    grep -q -F -- "$text" "$work/demo.log" || { echo "the demo did not show: $text"; fail=1; }
done
# How names were looked up, or why they could not be, is said plainly.
grep -q -e '(storage system simulated at /_admin)' "$work/demo.log" ||
    { echo "the demo does not say how it looked names up"; fail=1; }
if grep -q 'cannot be mounted here' "$work/demo.log"; then
    grep -q 'no storage system running' "$work/demo.log" || { echo "no fallback shown"; fail=1; }
fi
built_tests=$(find "$work/build" -name '*_test' -type f -perm -u+x | wc -l)
[ "$built_tests" -eq 0 ] || { echo "make demo built $built_tests test programs"; fail=1; }

if ! make -C "$src" install BUILD_DIR="$work/build" DESTDIR="$work/root" PREFIX=/usr "$flags" \
        >"$work/install.log" 2>&1; then
    echo "make install failed:"; tail -n 30 "$work/install.log"; exit 1
fi
files=$(cd "$work/root" && find . -type f | LC_ALL=C sort)
# What make install puts under PREFIX, as the package has it but for
# lintian's overrides.
expected=$(cat "$here/installed_files.txt")
[ "$files" = "$expected" ] || { echo "installed files differ:"; diff <(echo "$expected") <(echo "$files"); fail=1; }
if readelf -S "$work/root/usr/bin/logsift" | grep -q '\.symtab'; then
    echo "the installed binary is not stripped"; fail=1
fi
"$work/root/usr/bin/logsift" --version | grep -q '^logsift (QVS) 1.00$' ||
    { echo "the installed tool does not run"; fail=1; }
[ "$fail" = 0 ] && echo "demo and install ok"
exit "$fail"
