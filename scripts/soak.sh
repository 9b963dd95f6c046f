#!/usr/bin/env bash
# Builds with sanitizers and runs the tests that take minutes: every region, every second.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build test
cmake --preset debug >/dev/null
cmake --build --preset debug
LENS_SOAK=1 ctest --preset debug -j "$(nproc)" --timeout 3600 "$@"
