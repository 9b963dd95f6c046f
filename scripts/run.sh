#!/usr/bin/env bash
# Builds and starts the program. Without a display it starts under a virtual one, waits for the first
# screen, saves a picture of it and ends.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build
cmake --preset release >/dev/null
cmake --build --preset release
program=build/release/src/TessalyAndDocContent
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || [ "$(uname)" = Darwin ]; then
  exec "$program"
fi
scripts/install.sh run
exec scripts/screenshot.sh "$program" build/screenshot.png
