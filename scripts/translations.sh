#!/usr/bin/env bash
# Brings the tables of translations up to date with the sources, and names the texts that have none yet. Ends with 1 where
# there are such texts.
#   scripts/translations.sh [TABLE...]     without a table all of translations/
set -euo pipefail
cd "$(dirname "$0")/.."
lupdate=${LUPDATE:-$(command -v lupdate || echo /usr/lib/qt6/bin/lupdate)}
if [ ! -x "$lupdate" ]; then
  scripts/install.sh build
fi
tables=("$@")
[ ${#tables[@]} -gt 0 ] || tables=(translations/*.ts)
# What the windows of fixed texts say stays English, so their folders are not looked into; of the engine people read the
# report of an import. English has a table only of what tells one from many.
for table in "${tables[@]}"; do
  only=()
  [ "${table##*_}" = en.ts ] && only=(-pluralonly)
  "$lupdate" -silent -no-obsolete -locations none "${only[@]}" -I src src/client src/command src/app src/host \
    src/embedded/dxl/import_report.cpp -ts "$table"
done
missing=0
for table in "${tables[@]}"; do
  found=$(perl -0ne 'while (m{<source>([^<]*)</source>\s*<translation type="unfinished"}g) { print "  $1\n" }' "$table")
  [ -z "$found" ] && continue
  printf '%s has no words for:\n%s\n' "$table" "$found"
  missing=1
done
exit $missing
