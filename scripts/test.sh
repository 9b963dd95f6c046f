#!/usr/bin/env bash
# test.sh [PRESET [CTEST ARGUMENT...]]: builds with sanitizers and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:-debug}
scripts/install.sh build test
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"

# Databases of the tests are written durably, thousands of times: in memory, where there is room.
room=4000000
[ "$preset" = soak ] && room=8000000
if [ -w /dev/shm ] && [ "$(df --output=avail /dev/shm | tail -1)" -gt $room ]; then
  TMPDIR=$(mktemp -d /dev/shm/lens-tests-XXXXXX)
  chmod 755 "$TMPDIR"  # some tests are another user for a moment
  export TMPDIR
  trap 'rm -rf "$TMPDIR"' EXIT
fi
ctest --preset "$preset" -j "$(nproc)" "${@:2}"
