#!/usr/bin/env bash
# install-deps.sh - installs the Debian packages that building and testing
# need, where they are missing, after saying which. As root it runs apt-get;
# otherwise it prints the command to run and fails. The names are those of
# Debian 12 and Ubuntu 22.04 and later, and clang is the release's default.
set -u
packages=(cmake g++ make python3 libgtest-dev pkg-config libfuse3-dev fuse3 groff-base dpkg-dev clang
          time lintian tmux bash-completion python3-jsonschema jq nlohmann-json3-dev
          prometheus prometheus-node-exporter)
# The sanitizers' runtime of the default clang: a package of its own in the
# newer releases (libclang-rt-dev), part of clang's own packages in the
# older ones, which have no such package.
runtime=libclang-rt-dev

installed() { [ "$(dpkg-query -W -f='${Status}' "$1" 2>/dev/null)" = "install ok installed" ]; }
runtime_present() {
    command -v clang >/dev/null &&
        [ -f "$(clang -print-file-name=libclang_rt.asan-x86_64.a 2>/dev/null)" ]
}

missing=()
for p in "${packages[@]}"; do
    installed "$p" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ] && runtime_present; then
    exit 0
fi

if [ "$(id -u)" -ne 0 ]; then
    runtime_present || missing+=("$runtime (where the release has it)")
    echo "Missing test dependencies: ${missing[*]}" >&2
    echo "Install them with:  sudo apt-get install -y ${missing[*]/ (where the release has it)/}" >&2
    exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq </dev/null || exit 1
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing the ${#missing[@]} missing test dependencies with apt-get: ${missing[*]}"
    apt-get install -y -qq "${missing[@]}" </dev/null || exit 1
fi
if ! runtime_present && apt-cache show "$runtime" >/dev/null 2>&1; then
    echo "Installing the sanitizers' runtime of clang with apt-get: $runtime"
    apt-get install -y -qq "$runtime" </dev/null || exit 1
fi
exit 0
