#!/usr/bin/env bash
# Builds with sanitizers and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build test
cmake --preset debug >/dev/null
cmake --build --preset debug

# Databases of the tests are written durably, thousands of times: in memory, where there is room.
if [ -w /dev/shm ] && [ "$(df --output=avail /dev/shm | tail -1)" -gt 4000000 ]; then
  TMPDIR=$(mktemp -d /dev/shm/lens-tests-XXXXXX)
  chmod 755 "$TMPDIR"  # some tests are another user for a moment
  export TMPDIR
  trap 'rm -rf "$TMPDIR"' EXIT
fi
ctest --preset debug -j "$(nproc)"
