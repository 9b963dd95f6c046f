#!/usr/bin/env bash
# Looks at a Debian package as its user would: unpacks it into a root of its own, starts what is in it, and asks the
# checkers that are installed. Ends with 1 and the reason where something is wrong.
#   scripts/check_package.sh PACKAGE
set -euo pipefail
package=$(realpath "$1")
root=$(mktemp -d)
started=
trap '[ -z "$started" ] || kill "$started" 2>/dev/null || true; rm -rf "$root"' EXIT
fail() { echo "$(basename "$package"): $*" >&2; exit 1; }

dpkg-deb -x "$package" "$root"
version=$(dpkg-deb -f "$package" Version)
program=$root/usr/bin/TessalyAndDocContent
home=$root/home
mkdir "$home"
# Nothing of whoever runs this, no display.
bare=(env -i PATH=/usr/bin:/bin HOME="$home" LC_ALL=C.UTF-8)
run() { "${bare[@]}" "$@"; }

told=$(run "$program" --version)
[ "$told" = "TessalyAndDocContent $version" ] || fail "the program says \"$told\", the package is of version $version"
ldd "$program" | grep 'not found' && fail "libraries are missing"
depends=$(dpkg-deb -f "$package" Depends)
for library in libqt6widgets6 libqt6core6 libsqlite3-0 libicu; do
  [[ $depends == *$library* ]] || fail "it does not depend on $library"
done
for file in share/applications/io.github.tessaly.Lens.desktop share/icons/hicolor/scalable/apps/tessaly-lens.svg \
  share/metainfo/io.github.tessaly.Lens.metainfo.xml share/mime/packages/tessaly-lens.xml \
  share/man/man1/TessalyAndDocContent.1.gz share/tessaly-lens/docs/guide.md share/tessaly-lens/LICENSE; do
  [ -s "$root/usr/$file" ] || fail "$file lacks"
done
for link in "$root"/usr/share/doc/tessaly-lens/*; do
  [ -e "$link" ] || fail "$(basename "$link") leads nowhere"
done
while read -r page link; do
  [ -e "$(dirname "$page")/$link" ] || fail "${page#"$root"} leads to $link, which lacks"
done < <(grep -roP --include='*.md' '\]\(\K(?![a-z]+:|#)[^)#\s]+' "$root/usr/share/tessaly-lens" | sed 's/:/ /')
if [ -d "$root/usr/share/tessaly-lens/translations" ]; then
  run env LANGUAGE=de LC_ALL=de_DE.UTF-8 "$program" --help | grep -q '^Aufruf: ' || fail "it speaks no German"
fi

# The windows come up, and fill their first workspace.
"${bare[@]}" QT_QPA_PLATFORM=offscreen "$program" &  # no function, whose shell would be ended in its place
started=$!
settings=$home/.local/share/tessaly-lens/notes.ini
for ((tenths = 0; tenths < 600; ++tenths)); do
  grep -qs '^Samples=filled' "$settings" && break
  kill -0 "$started" 2>/dev/null || fail "the windows ended"
  sleep 0.1
done
grep -qs '^Samples=filled' "$settings" || fail "the first start filled no workspace"
sleep 2
kill -0 "$started" 2>/dev/null || fail "the windows ended"
kill "$started"
wait "$started" 2>/dev/null || true
started=
run "$program" documents mail/kmeier.nsf | grep -q Memo || fail "the samples cannot be listed"

check() { ! command -v "$1" >/dev/null || "$@" || fail "$1 finds faults"; }
check desktop-file-validate "$root/usr/share/applications/io.github.tessaly.Lens.desktop"
check appstreamcli validate --no-net "$root/usr/share/metainfo/io.github.tessaly.Lens.metainfo.xml"
check xmllint --noout "$root/usr/share/mime/packages/tessaly-lens.xml"
check lintian --fail-on error,warning "$package"
echo "$package: is whole, starts, and nothing is found in it"
