#!/usr/bin/env bash
# Builds with sanitizers and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build test
cmake --preset debug >/dev/null
cmake --build --preset debug
ctest --preset debug -j "$(nproc)"
