#!/usr/bin/env bash
# Builds the Debian package, checks it, and says where it is.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build package
cmake --preset release >/dev/null
cmake --build --preset release --target TessalyAndDocContent
rm -f build/release/*.deb
(cd build/release && cpack -G DEB >/dev/null)
scripts/check_package.sh build/release/*.deb
