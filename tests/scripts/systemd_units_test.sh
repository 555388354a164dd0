#!/usr/bin/env bash
# systemd_units_test.sh SYSTEMD_DIR - the metrics service and its timer pass
# `systemd-analyze verify` without a word, and the service's sandbox rates
# an exposure of at most 1.5 in `systemd-analyze security --offline=true`.
#
# The units name /usr/bin/logsift-status, which need not be installed here:
# they are verified inside a scratch root (--root) that holds a stand-in
# program at that path, the system's own units (for the targets they
# depend on) and the manual page that Documentation= names, so that a
# missing or misspelt program, page or setting is still caught.
set -u
units=${1:?usage: systemd_units_test.sh SYSTEMD_DIR}
here=$(cd "$(dirname "$0")" && pwd)
manpage=$here/../../doc/logsift-status.1
max_exposure=1.5

command -v systemd-analyze >/dev/null || { echo "systemd-analyze is missing: skipped"; exit 77; }
for f in logsift-metrics.service logsift-metrics.timer; do
    [ -f "$units/$f" ] || { echo "missing: $units/$f"; exit 1; }
done
[ -f "$manpage" ] || { echo "missing: $manpage"; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root
mkdir -p "$root/usr/bin" "$root/usr/lib/systemd" "$root/etc/systemd/system" "$work/man/man1"
system_units=
for d in /usr/lib/systemd/system /lib/systemd/system; do
    [ -f "$d/sysinit.target" ] && { system_units=$d; break; }
done
[ -n "$system_units" ] || { echo "no system units (sysinit.target) on this machine"; exit 1; }
cp -a "$system_units" "$root/usr/lib/systemd/system"
printf '#!/bin/sh\nexit 0\n' >"$root/usr/bin/logsift-status"
chmod 755 "$root/usr/bin/logsift-status"
cp "$units/logsift-metrics.service" "$units/logsift-metrics.timer" "$root/etc/systemd/system/"
cp "$manpage" "$work/man/man1/"

fail=0
# verify exits 0 after warnings such as an unknown setting: any word fails.
MANPATH=$work/man systemd-analyze verify --root="$root" \
    "$root/etc/systemd/system/logsift-metrics.service" \
    "$root/etc/systemd/system/logsift-metrics.timer" >"$work/verify.log" 2>&1
status=$?
if [ "$status" -ne 0 ] || [ -s "$work/verify.log" ]; then
    echo "systemd-analyze verify (status $status):"; cat "$work/verify.log"; fail=1
else
    echo "verify: clean"
fi

# Installed, the timer is disabled until enabled and then wanted by
# timers.target; the service has no [Install] of its own: the timer starts
# it. (verify does not read [Install].)
state() { systemctl --root="$root" is-enabled "$1" 2>&1; }
[ "$(state logsift-metrics.service)" = static ] ||
    { echo "the service should be started by its timer alone: $(state logsift-metrics.service)"; fail=1; }
[ "$(state logsift-metrics.timer)" = disabled ] ||
    { echo "the timer should be disabled until enabled: $(state logsift-metrics.timer)"; fail=1; }
if systemctl --root="$root" enable logsift-metrics.timer >"$work/enable.log" 2>&1 &&
        [ -L "$root/etc/systemd/system/timers.target.wants/logsift-metrics.timer" ] &&
        [ "$(state logsift-metrics.timer)" = enabled ]; then
    echo "enable: the timer is wanted by timers.target"
else
    echo "systemctl enable logsift-metrics.timer:"; cat "$work/enable.log"; fail=1
fi

systemd-analyze security --offline=true "$units/logsift-metrics.service" >"$work/security.log" 2>&1
status=$?
line=$(grep 'Overall exposure level' "$work/security.log")
exposure=$(sed -n 's/.*Overall exposure level for [^:]*: \([0-9.]*\) .*/\1/p' <<<"$line")
if [ "$status" -ne 0 ] || [ -z "$exposure" ]; then
    echo "systemd-analyze security (status $status):"; cat "$work/security.log"; fail=1
else
    echo "security: ${line#*: }"
    if ! awk -v e="$exposure" -v m="$max_exposure" 'BEGIN { exit !(e <= m) }'; then
        echo "exposure $exposure is above $max_exposure:"
        grep '✗' "$work/security.log"; fail=1
    fi
fi
[ "$fail" = 0 ] && echo "systemd units ok: exposure $exposure"
exit "$fail"
