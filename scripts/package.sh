#!/usr/bin/env bash
# Builds the Debian package, lets lintian look at it, and says where it is.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build package
cmake --preset release >/dev/null
cmake --build --preset release --target TessalyAndDocContent
rm -f build/release/*.deb
(cd build/release && cpack -G DEB >/dev/null)
package=$(ls "$PWD"/build/release/*.deb)
! command -v lintian >/dev/null || lintian --fail-on error,warning "$package"
echo "$package"
