#!/usr/bin/env bash
# install-deps.sh - installs the Debian packages that building and testing
# need, where they are missing. As root it runs apt-get; otherwise it prints
# the command to run and fails.
set -u
packages=(cmake g++ make python3 libgtest-dev pkg-config libfuse3-dev fuse3 groff-base dpkg-dev clang
          libclang-rt-14-dev time lintian tmux bash-completion python3-jsonschema jq
          nlohmann-json3-dev)

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null)
    [ "$status" = "install ok installed" ] || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
    echo "Missing test dependencies: ${missing[*]}" >&2
    echo "Install them with:  sudo apt-get install -y ${missing[*]}" >&2
    exit 1
fi
echo "Installing test dependencies: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq </dev/null && apt-get install -y -qq "${missing[@]}" </dev/null
