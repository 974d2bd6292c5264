#!/usr/bin/env bash
# Installs what is missing, builds, and starts the tool.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build
exec build/src/kiranto-link
