#!/usr/bin/env bash
# timeouts_test.sh BUILD_DIR - every CTest test of the build carries a
# TIMEOUT, so that a hang fails its test instead of stopping the suite, and
# the label of its tier (quick, slow, packaging, interactive or prometheus),
# so that each tier runs what it should.
set -u
cd "$1" || exit 1
ctest --show-only=json-v1 2>/dev/null | "${PYTHON:-python3}" -c '
import json, sys
TIERS = {"quick", "slow", "packaging", "interactive", "prometheus"}
tests = json.load(sys.stdin)["tests"]
def prop(test, name):
    return [p["value"] for p in test.get("properties", []) if p["name"] == name]
no_timeout = [t["name"] for t in tests
              if not any(float(v) > 0 for v in prop(t, "TIMEOUT"))]
no_tier = [t["name"] for t in tests
           if len(TIERS.intersection(*[set(v) for v in prop(t, "LABELS")] or [set()])) != 1]
for name in no_timeout:
    print("no TIMEOUT:", name)
for name in no_tier:
    print("not in exactly one tier:", name)
print(len(tests), "tests,", len(no_timeout), "without a TIMEOUT,", len(no_tier),
      "not in exactly one tier")
sys.exit(1 if no_timeout or no_tier or not tests else 0)
'
