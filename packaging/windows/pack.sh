#!/usr/bin/env bash
# Packs the program for Windows with all that goes with it, and says where:
#   pack.sh ARCH SOURCES DIRECTORY
# SOURCES is what fetch_sources.sh made, DIRECTORY where build_program.sh built for ARCH.
set -euo pipefail
cd "$(dirname "$0")/../.."
arch=$1 sources=$2 directory=$3
version=$(sed -nE 's/^project\(TessalyLens VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
name=TessalyLens-$version-windows-$arch
folder=$directory/$name

rm -rf "$folder" "$folder.zip"
mkdir -p "$folder"/{samples,share,licences,relink}
"$arch-w64-mingw32-strip" -o "$folder/TessalyAndDocContent.exe" "$directory/src/TessalyAndDocContent.exe"
cp README.md LICENSE "$folder/"
cp samples/* "$folder/samples/"
# What the help menu shows, and the translations; the build has links to them.
cp -rL "$directory/share/tessaly-lens/." "$folder/share/"

# Of everything that is in the program file.
cp THIRD_PARTY.md "$folder/licences/"
cp "$sources/qt6-base/LICENSES/LGPL-3.0-only.txt" "$folder/licences/Qt-LGPL-3.0.txt"
cp "$sources/qt6-base/LICENSES/GPL-3.0-only.txt" "$folder/licences/Qt-GPL-3.0.txt"
cp "$sources/qt6-base/debian/copyright" "$folder/licences/Qt-parts-of-others.txt"
cp "$sources/icu/LICENSE" "$folder/licences/ICU.txt"
cp "$sources/sqlite3/LICENSE.md" "$folder/licences/SQLite.md"
for package in mingw-w64-common "gcc-mingw-w64-base"; do
  cp "/usr/share/doc/$package/copyright" "$folder/licences/$package.txt"
done

# The program as source and how it is linked, for whoever wants it with another Qt.
git archive --format=tar.gz --prefix="tessaly-lens-$version/" -o "$folder/relink/tessaly-lens-$version.tar.gz" HEAD
cp packaging/windows/RELINK.md "$folder/relink/"
for dsc in "$sources"/*.dsc; do basename "$dsc" .dsc; done >"$folder/relink/versions.txt"

(cd "$directory" && zip -qr -X "$name.zip" "$name")
echo "$PWD/$directory/$name.zip"
