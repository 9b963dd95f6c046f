#!/usr/bin/env bash
# screenshot.sh PROGRAM PICTURE [WIDTHxHEIGHT]: starts the program under a virtual display, waits for
# its first screen, saves the picture and ends the program.
set -euo pipefail
program=$1
picture=$2
size=${3:-1920x1080}

log=$(mktemp)
exec 3<>"$(mktemp)"
Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp >"$log" 2>&1 &
server=$!
client=
finish() {
  for process in $client $server; do
    kill "$process" 2>/dev/null || true
    wait "$process" 2>/dev/null || true
  done
}
trap finish EXIT

number=
for _ in $(seq 100); do
  number=$(tr -d '[:space:]' <"/proc/$$/fd/3" 2>/dev/null || true)
  [ -n "$number" ] && break
  sleep 0.1
done
if [ -z "$number" ]; then
  echo "No virtual display came up:" >&2
  cat "$log" >&2
  exit 1
fi
export DISPLAY=":$number"

"$program" >"$log" 2>&1 &
client=$!
# The program's windows are there once one carries its caption; then it gets time to paint.
for _ in $(seq 300); do
  if ! kill -0 "$client" 2>/dev/null; then
    echo "The program ended before its first screen:" >&2
    cat "$log" >&2
    exit 1
  fi
  if xwininfo -root -tree 2>/dev/null | grep -qE "Current UI document in|Profiles UI's and Designs|PROFILE documents"; then
    shown=yes
    break
  fi
  sleep 0.1
done
if [ -z "${shown:-}" ]; then
  echo "The program showed no window within 30 seconds:" >&2
  cat "$log" >&2
  exit 1
fi
sleep 2
mkdir -p "$(dirname "$picture")"
import -window root "$picture"
echo "Screenshot: $picture"
