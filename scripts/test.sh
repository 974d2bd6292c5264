#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build
cd build
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)"
