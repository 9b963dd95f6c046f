#!/usr/bin/env bash
# test_windows.sh [--if-built] [ARCH]: ARCH is x86_64 unless told otherwise, or i686, which wants Wine for 32 bits
# (wine32:i386).
# Builds the program for Windows and a stand-in for the Notes client, and runs both under Wine on a virtual display: the
# doors, commands, and the windows on a workspace, on the stand-in and without any client. Pictures of the windows are
# kept in build/windows-ARCH/pictures. With --if-built nothing is done where the libraries would have to be built first,
# which takes an hour.
set -euo pipefail
cd "$(dirname "$0")/.."
look=
[ "${1:-}" != --if-built ] || { look=--look; shift; }
arch=${1:-x86_64}
bits=64 other=i686
[ "$arch" != i686 ] || bits=32 other=x86_64
cache=${XDG_CACHE_HOME:-$HOME/.cache}/tessaly-lens/windows
built=$PWD/build/windows-$arch
if [ -n "$look" ] && ! packaging/windows/build_libraries.sh "$arch" "$cache/sources" "$cache" --look 2>/dev/null; then
  echo "Left out: the program for Windows, whose libraries are not in $cache (make test-windows builds them)"
  exit 0
fi
scripts/install.sh build test windows wine
packaging/windows/fetch_sources.sh "$cache/sources"
packaging/windows/build_libraries.sh "$arch" "$cache/sources" "$cache"
LENS_WINDOWS_DOUBLES=ON packaging/windows/build_program.sh "$arch" "$cache/$arch" "$built" TessalyAndDocContent client_double test_doors

place=$(mktemp -d)
pictures=$built/pictures
program=$place/program
mkdir -p "$pictures" "$program" "$place/workspace"
cp "$built/src/TessalyAndDocContent.exe" "$built/tests/windows/NNotes.dll" "$built/tests/windows/test_doors.exe" "$program/"
export WINEPREFIX=$place/prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" WINEARCH=win$bits LC_ALL=C.UTF-8
windows_path() { echo "Z:${1//\//\\}"; }
workspace=$(windows_path "$place/workspace")

# Only what this script started is ended, by its number.
server='' manager=''
finish() {
  wineserver -k 2>/dev/null || true
  [ -z "$manager" ] || kill "$manager" 2>/dev/null || true
  [ -z "$server" ] || kill "$server" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$place"
}
trap finish EXIT
fail() {
  import -window root "$pictures/failure.png" 2>/dev/null || true
  echo "$1" >&2
  exit 1
}

exec 3<>"$place/display"
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp >/dev/null 2>&1 &
server=$!
for _ in $(seq 100); do
  number=$(tr -d '[:space:]' <"$place/display")
  [ -n "$number" ] && break
  sleep 0.1
done
export DISPLAY=":$number"
openbox >/dev/null 2>&1 &
manager=$!
wineboot -i >/dev/null 2>&1 || fail "Wine makes no system of $bits bits"
wineserver -w
# Of the fonts that Wine tells for windows Qt knows none, and takes any.
font=$(printf 'Liberation Sans' | iconv -t UTF-16LE | od -An -v -tx1 | tr -d ' \n')
font=F4FFFFFF000000000000000000000000900100000000000000000022$font$(printf '%0*d' $((128 - ${#font})) 0)
wine reg add 'HKCU\Control Panel\Desktop\WindowMetrics' /v MessageFont /t REG_BINARY /d "$font" /f >/dev/null

# Its lists of files begin where it is started.
program() { (cd "$WINEPREFIX/drive_c" && exec wine "$program/TessalyAndDocContent.exe" "$@"); }
. tests/windows/desktop.sh
. tests/windows/scenarios.sh

echo "First start on a workspace"
export TESSALY_WORKSPACE=$workspace
start
picture first-start
press "$window" alt+e
ended "$process"

echo "Commands"
program databases >"$place/databases.txt"
grep -q "^mail.kmeier.nsf  *Mail Karin Meier" "$place/databases.txt" || fail "The list of databases is not what it should be"
program show 'mail\kmeier.nsf' 902 >"$place/document.txt"
grep -q "Contract 2024-117, second draft" "$place/document.txt" || fail "The document is not what it should be"
program evaluate 'mail\kmeier.nsf' 902 '@Platform' | grep -q "Windows/$bits" || fail "The formula gives another platform"
for copy in client faults; do cp -r "$place/workspace" "$place/$copy"; done

echo "A day at the desk on a workspace"
a_day_at_the_desk workspace "$workspace"
end_of_the_client "$place/workspace/data"
unset TESSALY_WORKSPACE

echo "Without a client"
without_a_client

echo "Doors to the stand-in for the client"
export TESSALY_DOUBLE_WORKSPACE=$(windows_path "$place/faults")
register_client "$program/NNotes.dll"
(cd "$program" && wine test_doors.exe --gtest_brief=1) || fail "The doors to the client are not whole"

echo "A day at the desk on the stand-in"
export TESSALY_DOUBLE_WORKSPACE=$(windows_path "$place/client") TESSALY_DOUBLE_COUNT=$(windows_path "$place/left.txt")
a_day_at_the_desk client "$TESSALY_DOUBLE_WORKSPACE"
# The collection of design notes is kept for the next listing.
left_behind 1
end_of_the_client "$place/client/data"

echo "A client with faults"
export TESSALY_DOUBLE_WORKSPACE=$(windows_path "$place/faults")
faults_of_the_client
faults_of_the_library

echo "Pictures: $pictures"
