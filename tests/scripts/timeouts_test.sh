#!/usr/bin/env bash
# timeouts_test.sh BUILD_DIR - every CTest test of the build carries a
# TIMEOUT, so that a hang fails its test in seconds instead of stopping the
# suite.
set -u
cd "$1" || exit 1
ctest --show-only=json-v1 2>/dev/null | python3 -c '
import json, sys
tests = json.load(sys.stdin)["tests"]
missing = [t["name"] for t in tests
           if not any(p["name"] == "TIMEOUT" and float(p["value"]) > 0
                      for p in t.get("properties", []))]
for name in missing:
    print("no TIMEOUT:", name)
print(len(tests), "tests,", len(missing), "without a TIMEOUT")
sys.exit(1 if missing or not tests else 0)
'
