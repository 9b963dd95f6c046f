#!/usr/bin/env bash
# Builds the benchmarks and runs each beside its peer; the closing lines are the ratios.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build bench
cmake --preset bench >/dev/null
cmake --build --preset bench
QT_QPA_PLATFORM=offscreen build/release/bench/lens_bench "$@"
