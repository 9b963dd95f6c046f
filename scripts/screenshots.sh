#!/usr/bin/env bash
# Makes the pictures of docs/pictures anew, from the program itself on its samples.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build
cmake --preset tour >/dev/null
cmake --build --preset tour
QT_QPA_PLATFORM=offscreen:configfile=tour/screen.json build/release/tour/lens_tour docs/pictures
