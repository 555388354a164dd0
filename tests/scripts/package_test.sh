#!/usr/bin/env bash
# package_test.sh BUILD_DIR HARDENED - builds the Debian package, checks it
# with lintian (no error and no warning), unpacks it into a scratch root and
# checks its files, that the tool runs from there, and, for a hardened build,
# that the binary has Debian's usual hardening.
set -u
here=$(cd "$(dirname "$0")" && pwd)
build=$1 hardened=${2:-OFF}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$build" && cpack -G DEB -B "$work/out" >"$work/cpack.log" 2>&1) || { cat "$work/cpack.log"; exit 1; }
deb=$(ls "$work"/out/*.deb 2>/dev/null | head -n 1)
[ -n "$deb" ] || { echo "no package built"; cat "$work/cpack.log"; exit 1; }
fail=0

command -v lintian >/dev/null || { echo "lintian is missing (make test installs it)"; exit 1; }
lintian --display-info "$deb" >"$work/lintian.log" 2>&1
if grep -E '^[EW]: ' "$work/lintian.log"; then
    echo "lintian reports the errors and warnings above"; fail=1
fi

dpkg-deb -x "$deb" "$work/root" || exit 1
files=$(cd "$work/root" && find . -type f | LC_ALL=C sort)
# What make install puts there, and lintian's overrides.
expected=$( (cat "$here/installed_files.txt"; echo ./usr/share/lintian/overrides/logsift) | LC_ALL=C sort)
if [ "$files" != "$expected" ]; then
    echo "package files differ:"; diff <(echo "$expected") <(echo "$files"); fail=1
fi
[ "$(dpkg-deb -f "$deb" Package)" = logsift ] || { echo "wrong package name"; fail=1; }
[ "$(dpkg-deb -f "$deb" Version)" = 1.00-1 ] || { echo "wrong package version"; fail=1; }
version=$("$work/root/usr/bin/logsift" --version | head -n 1)
[ "$version" = "logsift (QVS) 1.00" ] || { echo "unexpected version line: $version"; fail=1; }
zcat "$work/root/usr/share/man/man1/logsift.1.gz" | grep -q '^\.TH LOGSIFT' ||
    { echo "the manual page does not unpack"; fail=1; }

for program in logsift-json logsift-status; do
    "$work/root/usr/bin/$program" --version | grep -q -x "$program (QVS) 1.00" ||
        { echo "$program does not run from the package"; fail=1; }
done

if [ "$hardened" = ON ]; then
    for program in logsift logsift-json logsift-status; do
        bin=$work/root/usr/bin/$program
        readelf -h "$bin" | grep -q 'Type: *DYN' || { echo "$program: not a position-independent executable"; fail=1; }
        readelf -d "$bin" | grep -q 'BIND_NOW' || { echo "$program: no immediate binding (-z now)"; fail=1; }
        readelf -l "$bin" | grep -q 'GNU_RELRO' || { echo "$program: no RELRO segment"; fail=1; }
        syms=$(readelf --dyn-syms -W "$bin")
        grep -q '__stack_chk_fail' <<<"$syms" || { echo "$program: no stack protector"; fail=1; }
        grep -q '_chk@' <<<"$syms" || { echo "$program: no fortified functions"; fail=1; }
    done
fi
[ "$fail" = 0 ] && echo "package ok: $(basename "$deb")"
exit "$fail"
