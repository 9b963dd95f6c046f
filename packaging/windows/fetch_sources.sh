#!/usr/bin/env bash
# Fetches and unpacks the sources of the libraries that the Windows program is linked with, as Debian has them:
#   fetch_sources.sh DIRECTORY
# leaves DIRECTORY/{qt6-base,sqlite3,icu}, and beside them the archives as they came. What is there already stays.
# The lists and settings of the system's package manager are read, never changed.
set -euo pipefail
mkdir -p "$1"
cd "$1"

# Where the system takes packages from is where their sources come from too.
lists=$PWD/apt
private=(-o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$lists/parts" -o Dir::State::Lists="$lists/lists"
         -o Dir::Cache="$lists/cache" -o Dir::State::status=/var/lib/dpkg/status -o APT::Sandbox::User="$(id -un)")

write_source_lists() {
  mkdir -p "$lists"/parts "$lists"/lists/partial "$lists"/cache/archives/partial
  local file
  for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -e "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$lists/parts/$(basename "$file")"
  done
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -e "$file" ] || continue
    sed -nE 's/^deb(-src)?([[:space:]])/deb-src\2/p' "$file" | sort -u >"$lists/parts/$(basename "$file")"
  done
  apt-get "${private[@]}" update -qq
  touch "$lists/known"
}

# The sources of an installed package, in its version where that is still to be had.
fetch() {
  local source=$1 package=$2 version
  [ -d "$source" ] && return
  [ -e "$lists/known" ] || write_source_lists
  version=$(dpkg-query -W -f='${source:Version}' "$package")
  apt-get "${private[@]}" source -qq --download-only "$source=$version" ||
    apt-get "${private[@]}" source -qq --download-only "$source"
  rm -rf "$source.new"
  dpkg-source --no-check -x "$source"_*.dsc "$source.new" >/dev/null
  mv "$source.new" "$source"
}

fetch qt6-base qt6-base-dev
fetch sqlite3 libsqlite3-dev
fetch icu libicu-dev
