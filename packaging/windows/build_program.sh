#!/usr/bin/env bash
# Builds the program for Windows:
#   build_program.sh ARCH LIBRARIES DIRECTORY [TARGET...]
# LIBRARIES is what build_libraries.sh made for ARCH. The program is DIRECTORY/src/TessalyAndDocContent.exe.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
arch=$1 libraries=$(realpath "$2") directory=$3
shift 3
[ $# -gt 0 ] || set -- TessalyAndDocContent
host_cmake=/usr/lib/$(dpkg-architecture -qDEB_BUILD_MULTIARCH)/cmake
cmake -S "$here/../.." -B "$directory" -G Ninja --toolchain "$here/toolchain.cmake" -DLENS_WINDOWS_ARCH="$arch" \
  -DLENS_WINDOWS_PREFIX="$libraries" -DCMAKE_BUILD_TYPE=Release -DLENS_TESTS=OFF -DLENS_WINDOWS_DOUBLES="${LENS_WINDOWS_DOUBLES:-OFF}" \
  -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$host_cmake" -DQt6HostInfo_DIR="$host_cmake/Qt6HostInfo" >/dev/null
cmake --build "$directory" --target "$@"
