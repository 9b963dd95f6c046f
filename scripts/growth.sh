#!/usr/bin/env bash
# Prints how times and sizes grow with a database, and what very large items cost. Takes about ten minutes.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build bench
cmake --preset bench >/dev/null
cmake --build --preset bench --target lens_growth lens_sizes
[ $# -gt 0 ] || set -- 10000 100000 1000000
build/release/bench/lens_growth "$@"
build/release/bench/lens_sizes
