#!/usr/bin/env bash
# Builds the program for Windows, for 64 and for 32 bits, and packs each as a zip. The libraries that it is linked with
# are built first, which takes an hour; they are kept outside of this directory and used again.
#   scripts/windows.sh [ARCH...]     x86_64 and i686 unless told otherwise
set -euo pipefail
cd "$(dirname "$0")/.."
cache=${XDG_CACHE_HOME:-$HOME/.cache}/tessaly-lens/windows
scripts/install.sh build windows
packaging/windows/fetch_sources.sh "$cache/sources"
[ $# -gt 0 ] || set -- x86_64 i686
for arch in "$@"; do
  packaging/windows/build_libraries.sh "$arch" "$cache/sources" "$cache"
  packaging/windows/build_program.sh "$arch" "$cache/$arch" "build/windows-$arch"
  packaging/windows/pack.sh "$arch" "$cache/sources" "build/windows-$arch"
done
