#!/usr/bin/env bash
# Installs what the given purposes (build, test, bench, fuzz, run, format, tidy, package, windows, wine) need and is missing. Debian packages.
set -euo pipefail

build=(g++ cmake ninja-build make pkg-config qt6-base-dev qt6-base-dev-tools qt6-l10n-tools libgl-dev libsqlite3-dev
       libicu-dev ccache fonts-inconsolata fonts-liberation)
test=(libgtest-dev)
bench=(libbenchmark-dev liblua5.4-dev)
fuzz=(clang libclang-rt-dev)
run=(xvfb xauth imagemagick x11-utils)
format=(clang-format)
tidy=(clang-tidy)
package=(dpkg-dev file gzip lintian desktop-file-utils appstream)
windows=(g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix dpkg-dev icu-devtools tcl zip)
wine=(wine wine64 xvfb xauth openbox xdotool xclip imagemagick x11-utils)

wanted=()
for purpose in "$@"; do
  declare -n list="$purpose"
  wanted+=("${list[@]}")
done

if ! command -v dpkg-query >/dev/null; then
  echo "This system has no dpkg. Please install these packages, or what they are called here: ${wanted[*]}" >&2
  exit 0
fi
missing=()
for package in "${wanted[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "These packages are missing and neither root nor sudo is at hand to install them: ${missing[*]}" >&2
    exit 1
  fi
  root=(sudo)
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${root[@]}" apt-get update -qq
"${root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
