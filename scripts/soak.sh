#!/usr/bin/env bash
# Builds with sanitizers that watch the stack too, and runs the tests with all that takes minutes: every region, every second.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build test
cmake --preset soak >/dev/null
cmake --build --preset soak
LENS_SOAK=1 ctest --preset soak -j "$(nproc)" "$@"
