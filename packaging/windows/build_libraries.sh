#!/usr/bin/env bash
# Builds for Windows what the program is linked with, all of it static:
#   build_libraries.sh ARCH SOURCES DIRECTORY [--look]
# ARCH is x86_64 or i686, SOURCES what fetch_sources.sh made; the libraries go to DIRECTORY/ARCH. What was built
# before from the same sources in the same way is not built again. With --look nothing is built: it fails where
# something would have to be.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
arch=$1 sources=$(realpath "$2") look=${4:-}
mkdir -p "$3/$arch"
prefix=$(cd "$3/$arch" && pwd)
work=$prefix/work
host_cmake=/usr/lib/$(dpkg-architecture -qDEB_BUILD_MULTIARCH)/cmake
export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}

# A copy, so that a build that was interrupted can go on from another checkout of these scripts.
[ -n "$look" ] || cp "$here/toolchain.cmake" "$prefix/"
cross=(-G Ninja --toolchain "$prefix/toolchain.cmake" -DLENS_WINDOWS_ARCH="$arch" -DLENS_WINDOWS_PREFIX="$prefix"
       -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix")

# What a library is built by; another recipe means another library.
recipe_of() {
  local name=$1 source=$2
  declare -f "build_$name"
  cat "$here/toolchain.cmake" "$sources/${source}"_*.dsc
  [ ! -d "$here/$name" ] || cat "$here/$name"/*
}

tell_failure() {
  [ -z "${building:-}" ] && return
  tail -40 "$prefix/$building.log" >&2
  echo "$building could not be built for $arch; all that was said is in $prefix/$building.log" >&2
}
trap tell_failure EXIT

# Builds a library unless it was built by this recipe; one that was interrupted goes on.
once() {
  local name=$1 source=$2 recipe
  recipe=$(recipe_of "$name" "$source" | sha256sum)
  [ "$(cat "$prefix/$name.built" 2>/dev/null)" = "$recipe" ] && return
  [ -z "$look" ] || exit 1
  echo "Building $name for $arch"
  [ "$(cat "$work/$name.begun" 2>/dev/null)" = "$recipe" ] || rm -rf "${work:?}/$name"
  mkdir -p "$work/$name"
  echo "$recipe" >"$work/$name.begun"
  building=$name
  "build_$name" >"$prefix/$name.log" 2>&1
  building=
  echo "$recipe" >"$prefix/$name.built"
  rm -rf "${work:?}/$name"
}

# The converters and the list of their names are all that the program asks of the data. ICU finds them under the name of
# the file that they were packed into.
build_icu() (
  cd "$work/icu"
  data=$(ls "$sources"/icu/source/data/in/icudt*l.dat)
  icupkg -l "$data" | grep -vE '\.cnv$|^cnvalias\.icu$' >others.txt
  converters=$PWD/$(basename "$data")
  icupkg -tl -r others.txt "$data" "$converters"
  cmake -S "$here/icu" -B . "${cross[@]}" -DICU_SOURCE="$sources/icu/source" -DICU_DATA="$converters"
  cmake --build .
  cmake --install .
)

# The one file that SQLite is given away as is made from its sources first, with tools of this system.
build_sqlite() (
  cd "$work/sqlite"
  "$sources/sqlite3/configure" --disable-tcl --enable-fts5
  make sqlite3.c
  "$arch-w64-mingw32-gcc-posix" -O2 -c sqlite3.c -o sqlite3.o \
    -DSQLITE_ENABLE_FTS5 -DSQLITE_ENABLE_COLUMN_METADATA -DSQLITE_SECURE_DELETE -DSQLITE_THREADSAFE=1 -DSQLITE_USE_URI=1 \
    -DSQLITE_LIKE_DOESNT_MATCH_BLOBS -DSQLITE_OMIT_LOAD_EXTENSION -DSQLITE_MAX_SCHEMA_RETRY=25
  mkdir -p "$prefix/lib" "$prefix/include"
  "$arch-w64-mingw32-ar" rcs libsqlite3.a sqlite3.o
  cp libsqlite3.a "$prefix/lib/"
  cp sqlite3.h "$prefix/include/"
)

# Only what the program has in its windows. The headers for tablets and the list of MIME types are not in Debian's
# sources; DirectWrite without Direct2D does not compile.
build_qt() (
  cd "$work/qt"
  on=(static optimize_size precompile_header gui widgets png)
  off=(shared network sql xml dbus testlib concurrent printsupport opengl vulkan icu glib zstd freetype
       tabletevent direct2d direct2d1_1 directwrite directwrite3 mimetype_database gif jpeg ico
       graphicsview graphicseffect mdiarea wizard calendarwidget datetimeedit lcdnumber dial
       fontcombobox fontdialog colordialog undocommand undostack undogroup undoview columnview datawidgetmapper
       keysequenceedit splashscreen toolbox scroller pdf textmarkdownwriter textodfwriter picture
       movie sessionmanager commandlinkbutton errormessage progressdialog
       jalalicalendar hijricalendar islamiccivilcalendar)
  features=()
  for feature in "${on[@]}"; do features+=("-DFEATURE_$feature=ON"); done
  for feature in "${off[@]}"; do features+=("-DFEATURE_$feature=OFF"); done
  cmake -S "$sources/qt6-base" -B . "${cross[@]}" "${features[@]}" -DBUILD_SHARED_LIBS=OFF -DINPUT_opengl=no \
    -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$host_cmake" -DQt6HostInfo_DIR="$host_cmake/Qt6HostInfo" \
    -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TOOLS_WHEN_CROSSCOMPILING=OFF
  cmake --build .
  cmake --install .
)

once icu icu
once sqlite sqlite3
once qt qt6-base
