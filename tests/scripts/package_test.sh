#!/usr/bin/env bash
# package_test.sh BUILD_DIR - builds the Debian package, unpacks it into a
# scratch root and checks its files and that the tool runs from there.
set -u
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$build" && cpack -G DEB -B "$work/out" >"$work/cpack.log" 2>&1) || { cat "$work/cpack.log"; exit 1; }
deb=$(ls "$work"/out/*.deb 2>/dev/null | head -n 1)
[ -n "$deb" ] || { echo "no package built"; cat "$work/cpack.log"; exit 1; }
dpkg-deb -x "$deb" "$work/root" || exit 1
files=$(cd "$work/root" && find . -type f | sort)
expected="./usr/bin/logsift
./usr/share/bash-completion/completions/logsift
./usr/share/man/man1/logsift.1"
if [ "$files" != "$expected" ]; then
    echo "package files differ:"; diff <(echo "$expected") <(echo "$files"); exit 1
fi
[ "$(dpkg-deb -f "$deb" Package)" = logsift ] || { echo "wrong package name"; exit 1; }
version=$("$work/root/usr/bin/logsift" --version | head -n 1)
[ "$version" = "logsift (QVS) 1.00" ] || { echo "unexpected version line: $version"; exit 1; }
echo "package ok: $(basename "$deb")"
