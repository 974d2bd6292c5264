#!/usr/bin/env bash
# Installs what the build, the tests and the demo need (Debian 12), then configures and builds.
# Usage: scripts/setup.sh [build-dir] [extra cmake arguments...]
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
    build-essential cmake pkg-config
    dpkg-dev help2man
    qtbase5-dev libqt5serialport5-dev libqt5svg5-dev qttools5-dev qttools5-dev-tools
    qttranslations5-l10n
    qt6-base-dev qt6-serialport-dev qt6-svg-dev qt6-tools-dev qt6-l10n-tools
    qt6-translations-l10n
    xvfb xauth
    dfu-util
    clang libclang-rt-14-dev
)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    echo "Installing: ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
fi

build=${1:-build}
shift || true
cmake -S . -B "$build" -DKIRANTO_WERROR=ON "$@" >/dev/null
cmake --build "$build" -j"$(nproc)"
