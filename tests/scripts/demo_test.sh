#!/usr/bin/env bash
# demo_test.sh SOURCE_DIR BUILD_DIR - what a new user runs first:
# - a build tree configured with GoogleTest out of sight (as on a machine
#   without it) builds the tool for `make demo` and no test program;
# - `make demo` shows the samples in a few screens (at most 200 lines) and
#   leaves nothing outside the build tree: / holds what it held, and no
#   mount stays, also when the demo is interrupted with Ctrl-C;
# - `make install` installs a stripped tool with its manual pages,
#   completion and documents.
# The demo and the installation use BUILD_DIR's programs, which the build
# has made; the scratch tree is only configured, not built.
set -u
here=$(cd "$(dirname "$0")" && pwd)
src=$1 build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail=0

# Configured without GoogleTest, `make demo` builds the programs and no test.
if ! cmake -S "$src" -B "$work/scratch" -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON \
        >"$work/configure.log" 2>&1; then
    echo "configuring without GoogleTest failed:"; tail -n 30 "$work/configure.log"; exit 1
fi
grep -q "GoogleTest not found" "$work/configure.log" ||
    { echo "the configuration does not say that the unit tests are left out"; fail=1; }
cmake --build "$work/scratch" --target help >"$work/targets.log" 2>&1 ||
    { echo "the scratch tree lists no targets:"; tail -n 20 "$work/targets.log"; exit 1; }
for target in demo_programs logsift logsift-json; do
    grep -q -w -- "$target" "$work/targets.log" || { echo "no target $target"; fail=1; }
done
if grep -q '_test$' "$work/targets.log"; then
    echo "the tree would build test programs:"; grep '_test$' "$work/targets.log"; fail=1
fi

# The demo itself, as `make demo` runs it.
ls -a / >"$work/root.before"
if ! make -C "$src" demo BUILD_DIR="$build" >"$work/demo.log" 2>&1; then
    echo "make demo failed:"; tail -n 30 "$work/demo.log"; exit 1
fi
ls -a / >"$work/root.after"
cmp -s "$work/root.before" "$work/root.after" ||
    { echo "make demo changed /:"; diff "$work/root.before" "$work/root.after"; fail=1; }
lines=$(wc -l <"$work/demo.log")
[ "$lines" -le 200 ] || { echo "make demo printed $lines lines (at most 200)"; fail=1; }
for text in '$ logsift -a -o -H vbf sample_verify.vbf | head -n 45' ' Pool: PROD_POOL' \
            'Found 11 messages.' 'Found 14 items that were deleted or truncated.' \
            '$ logsift-json vbf sample_verify.vbf' 'To see them whole:'; do
    grep -q -F -- "$text" "$work/demo.log" || { echo "the demo did not show: $text"; fail=1; }
done
# How names were looked up, or why they could not be, is said plainly.
grep -q -e '(the storage system is simulated' -e '(no storage system here' "$work/demo.log" ||
    { echo "the demo does not say how it looked names up"; fail=1; }
mountpoint=$build/examples/server/_admin
if grep -q -F "$mountpoint" /proc/self/mountinfo || [ -e "$mountpoint" ]; then
    echo "a mount point stays after the demo: $mountpoint"; fail=1
fi

# Interrupted while the simulated volume is mounted, the demo leaves no
# mount and no simulator behind.
if grep -q '(the storage system is simulated' "$work/demo.log"; then
    setsid bash "$src/examples/demo.sh" "$build/logsift" >"$work/interrupted.log" 2>&1 &
    demo=$!
    for _ in $(seq 600); do
        pgrep -f "qvsadminfs.*$mountpoint" >/dev/null && break
        sleep 0.05
    done
    kill -INT -- "-$demo" 2>/dev/null
    wait "$demo"
    for _ in $(seq 100); do
        pgrep -f "qvsadminfs.*$mountpoint" >/dev/null || break
        sleep 0.1
    done
    if pgrep -f "qvsadminfs.*$mountpoint" >/dev/null || [ -e "$mountpoint" ]; then
        echo "after Ctrl-C the simulated volume stays"; fail=1
    fi
fi

# make install: a stripped tool and its files, as the package has them but
# for lintian's overrides.
if ! make -C "$src" install BUILD_DIR="$build" DESTDIR="$work/root" PREFIX=/usr \
        >"$work/install.log" 2>&1; then
    echo "make install failed:"; tail -n 30 "$work/install.log"; exit 1
fi
files=$(cd "$work/root" && find . -type f | LC_ALL=C sort)
expected=$(cat "$here/installed_files.txt")
[ "$files" = "$expected" ] || { echo "installed files differ:"; diff <(echo "$expected") <(echo "$files"); fail=1; }
if readelf -S "$work/root/usr/bin/logsift" | grep -q '\.symtab'; then
    echo "the installed binary is not stripped"; fail=1
fi
"$work/root/usr/bin/logsift" --version | grep -q '^logsift (QVS) 1.00$' ||
    { echo "the installed tool does not run"; fail=1; }
[ "$fail" = 0 ] && echo "demo ($lines lines) and install ok"
exit "$fail"
