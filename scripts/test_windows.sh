#!/usr/bin/env bash
# Builds the program for Windows and a stand-in for the Notes client, and runs both under Wine on a virtual display: the
# doors, commands, and the windows on a workspace, on the stand-in and without any client. Pictures of the windows are
# kept in build/windows-x86_64/pictures.
set -euo pipefail
cd "$(dirname "$0")/.."
arch=x86_64
cache=${XDG_CACHE_HOME:-$HOME/.cache}/tessaly-lens/windows
built=$PWD/build/windows-$arch
scripts/install.sh build test windows wine
packaging/windows/fetch_sources.sh "$cache/sources"
packaging/windows/build_libraries.sh "$arch" "$cache/sources" "$cache"
LENS_WINDOWS_DOUBLES=ON packaging/windows/build_program.sh "$arch" "$cache/$arch" "$built" TessalyAndDocContent client_double test_doors

place=$(mktemp -d)
pictures=$built/pictures
mkdir -p "$pictures" "$place/program" "$place/workspace"
cp "$built/src/TessalyAndDocContent.exe" "$built/tests/windows/NNotes.dll" "$built/tests/windows/test_doors.exe" "$place/program/"
export WINEPREFIX=$place/prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" WINEARCH=win64 LC_ALL=C.UTF-8
workspace="Z:${place//\//\\}\\workspace"

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
wineboot -i >/dev/null 2>&1
wineserver -w

program() { wine "$place/program/TessalyAndDocContent.exe" "$@"; }

# await TEXT: the number of the window whose caption holds the text.
await() {
  for _ in $(seq 600); do
    local window
    window=$(xdotool search --name "$1" 2>/dev/null | head -1 || true)
    [ -n "$window" ] && echo "$window" && return
    sleep 0.1
  done
  fail "No window came up that is called $1"
}
# press WINDOW KEY: a key as a user presses it.
press() { xdotool windowactivate --sync "$1" key "$2"; }
picture() {
  sleep 2
  import -window root "$pictures/$1.png"
}

echo "Windows on a workspace"
TESSALY_WORKSPACE=$workspace program &
window=$(await "Current UI document in")
picture workspace
press "$window" alt+e
wait $! || fail "The program did not end in order"

echo "Commands"
export TESSALY_WORKSPACE=$workspace
program databases >"$place/databases.txt"
grep -q "^mail.kmeier.nsf  *Mail Karin Meier" "$place/databases.txt" || fail "The list of databases is not what it should be"
program show 'mail\kmeier.nsf' 902 >"$place/document.txt"
grep -q "Contract 2024-117, second draft" "$place/document.txt" || fail "The document is not what it should be"
program evaluate 'mail\kmeier.nsf' 902 '@Platform' | grep -q "Windows/64" || fail "The formula gives another platform"
unset TESSALY_WORKSPACE

echo "Windows without a client"
program &
window=$(await "Tessaly Lens")
picture no_client_box
press "$window" Return
picture no_client
wineserver -k
wait $! || true

echo "Doors to the stand-in"
export TESSALY_DOUBLE_WORKSPACE=$workspace
# The class numbers of tests/windows/client_double/double_server.cpp.
number=1
for class in Notes.NotesSession Lotus.NotesSession Notes.NotesUIWorkSpace; do
  id="{7E55A11D-000$number-4C4E-8D01-54657373616C}"
  wine reg add "HKCR\\$class\\CLSID" /ve /d "$id" /f >/dev/null
  wine reg add "HKCR\\CLSID\\$id\\InprocServer32" /ve /d "Z:${place//\//\\}\\program\\NNotes.dll" /f >/dev/null
  wine reg add "HKCR\\CLSID\\$id\\InprocServer32" /v ThreadingModel /d Apartment /f >/dev/null
  number=$((number + 1))
done
(cd "$place/program" && wine test_doors.exe) || fail "The doors to the client are not whole"

echo "Windows on the stand-in"
program &
window=$(await "Current UI document in")
picture client
press "$window" alt+e
wait $! || fail "The program did not end in order"
echo "Pictures: $pictures"
