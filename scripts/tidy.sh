#!/usr/bin/env bash
# tidy.sh [FOLDER...]: looks for mistakes and waste in the sources, or in some folders of src/ ("embedded/store").
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build tidy
cmake --preset tidy >/dev/null
# What Qt generates has to be there for the sources to be read; nothing else is built.
cmake --build --preset tidy --target lens_ui_autogen lens_app_autogen >/dev/null
pattern='build/tidy/src/.*Unity/'
if [ $# -gt 0 ]; then
  names=$(printf '%s\n' "$@" | tr '/' '_' | paste -sd'|')
  pattern="Unity/unity_src_($names)_cxx"
fi
if run-clang-tidy -quiet -p build/tidy "$pattern" >build/tidy/findings.txt 2>/dev/null; then
  echo "Nothing found."
else
  sed 's/\x1b\[[0-9;]*m//g' build/tidy/findings.txt | grep -vE '^clang-tidy|^$'
  exit 1
fi
