#!/usr/bin/env bash
# fuzz.sh [TARGET...]: builds the fuzz targets with clang and runs each for FUZZ_SECONDS (60). What makes
# a target fail is kept in build/fuzz/findings; the corpus grows in build/fuzz/corpus from run to run.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install.sh build fuzz
cmake --preset fuzz >/dev/null

# Two texts and a number; in front of each block a byte that says where it lies.
seed_evaluation() { printf '\0\1\5\2\0\1\0\3\0abcd' >"$1/texts"; printf '\0\1\3\1\0\0\0\0\0\0\0\0\0\360\77' >"$1/number"; printf '"\\x01\\x05"\n"\\x01\\x03"\n' >"$1.dict"; }

# One file for each case of the tables; a pilcrow in them is a line feed.
seed_formula() {
  local folder=$1 names
  cat tests/embedded/formula/cases/*.txt | grep -v '^#' | sed -n 's/\(.*\) => .*/\1/p' |
    awk -v folder="$folder" '{ gsub("¶", "\n"); name = folder "/case" NR; printf "%s", $0 > name; close(name) }'
  names=$(grep -rhoE '"@[A-Za-z0-9]+"' src/embedded/formula | sort -u || true)
  { cat fuzz/formula.dict; echo "$names"; } >"$folder.dict"
}

# One file for each vector of the tests: its bytes, and its source.
seed_compiled_formula() {
  local folder=$1 vectors=tests/embedded/formula/compiled/vectors.txt
  grep -E ' (=>|<=) [0-9a-f]+$' $vectors | sed -E 's/.* (=>|<=) //' | seed_hex "$folder"
  sed -nE 's/^([^#].*) (=>|<=) [0-9a-f]+$/\1/p' $vectors |
    awk -v folder="$folder" '{ gsub("¶", "\n"); name = folder "/source" NR; printf "%s", $0 > name; close(name) }'
  printf '"\\x05\\x00"\n"\\x03\\x00"\n"\\x04\\x00"\n"\\x07\\x00"\n"\\xAF\\x00"\n"\\xAE\\x00"\n"\\xFB\\x00"\n"\\xB5\\x03"\n' >"$folder.dict"
}

# One file for each short note of the samples; the words are those that the importer knows.
seed_dxl() {
  local folder=$1
  cat samples/*.dxl | awk -v folder="$folder" '
    /^<(note|document|profiledocument|form|view|folder|agent|page)[ >]/ { text = ""; inside = 1; name = $1; gsub(/[<>]/, "", name) }
    inside { text = text $0 "\n" }
    inside && index($0, "</" name ">") { inside = 0; if (length(text) < 4000) { file = folder "/note" ++n; printf "%s", text > file; close(file) } }'
  grep -rhoE 'u"[a-z]{3,}"' src/embedded/dxl | sed 's/^u//' | sort -u >"$folder.dict"
}

# One file for each line of hexadecimal digits.
seed_hex() {
  local folder=$1 number=0 hex
  while read -r hex; do
    number=$((number + 1))
    printf '%b' "$(sed 's/../\\x&/g' <<<"$hex")" >"$folder/text$number"
  done
}

# A labelled paragraph, runs of two fonts, an attachment, a table; records of all three widths.
seed_rich_text() {
  local folder=$1
  seed_hex "$folder" <<'END'
016181028304010085FF17000101000A8E6E646572756E6773646174756D3A00
810285FF0A000100000A616285FF0A000101000A636485FF09000100000A0000
0162A9FF13000400000000000700413100622E630000AA02
A30E000000000000000000000000A4040000A4040001A502
D203AA0099FF0600BBCC7D0008000000DDEEDE02
END
  printf '"\\x81\\x02"\n"\\x85\\xFF"\n"\\xA9\\xFF"\n' >"$folder.dict"
}

# One file for each query of the tables of the tests.
seed_query() {
  local folder=$1
  grep -hoE '^    \{u".*", u"' tests/embedded/search/query_test.cpp | sed 's/^    {u"//; s/", u"$//; s/\\"/"/g' |
    awk -v folder="$folder" '{ name = folder "/case" NR; printf "%s", $0 > name; close(name) }'
  printf '"%s"\n' AND OR NOT ACCRUE FIELD CONTAINS Subject Amount pump '[Amount]' '>=' '2024-03-18' >"$folder.dict"
}

# An agent run by hand, a weekly one with dates, one with all bits, a cut one.
seed_agent_record() {
  local folder=$1
  seed_hex "$folder" <<'END'
11000100040004000000000000000000000000000000000000000000000000000000000001000000
11000100010001000300010080d978000400000000a82d0011812580a0d978001281258012000000
ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff
110001000100
END
  printf '"\\x1F\\x00\\x00\\x00"\n"\\x20\\x00\\x00\\x00"\n"\\x00\\xD6\\x83\\x00"\n' >"$folder.dict"
}

# Flags as icon notes have them, minus pairs in several places, and a text of one's own behind a zero byte.
seed_database_flags() {
  local folder=$1 number=0 flags
  for flags in 'J7!' rJ25 -Cx a-Cx a-C -C-N QU UQ lsZ 'C\000-C = a\rC = b\r' 'J\000J = x'; do
    number=$((number + 1))
    printf '%b' "$flags" >"$folder/flags$number"
  done
  printf '"%s"\n' -C -N -n -V -v QU ' = ' ls >"$folder.dict"
}

# A script record without flags, one whose flags leave its letters to be seen, a bare header.
seed_action_text() {
  local folder=$1
  seed_hex "$folder" <<'END'
1000810285ff7a05000000006e050000272b2b4c
0800810285ff0c0001736179202268692220017e7d0d0a
10008102
0800000000000080000102
END
  printf '"\\x81\\x02"\n"\\x84\\xFF"\n"\\x85\\xFF"\n' >"$folder.dict"
}

# A text, a text list, numbers, a range of times, references, a file, packed items.
seed_stored_value() {
  local folder=$1
  seed_hex "$folder" <<'END'
010568656c6c6f
01050200020003006162000063
00030000000000000840
010302000000000000000000f03f00000000000000c0
010401000100811258250000e0ff811258250000e0ff80a9030012582505
04000100000102030405060708090a0b0c0d0e0f
544c493101000000180000000100010019000000060000004101056162
END
  printf '"\\x01\\x05"\n"\\x01\\x04"\n"\\x04\\x00"\n"\\x03\\x00"\n"TLI1"\n"\\x56\\x43"\n"\\x44\\x66"\n' >"$folder.dict"
}

# A plain message, one with two parts, encoded words, a folded header.
seed_mime() {
  local folder=$1
  printf 'Subject: =?utf-8?B?R3LDvMOfZQ==?=\r\n\r\nHello\r\n' >"$folder/plain"
  printf 'Content-Type: multipart/mixed;\n boundary="b"\n\nprolog\n--b\nContent-Transfer-Encoding: base64\n\nSGVsbG8=\n--b\nContent-Type: text/html; charset=x\n\n<p>=3D</p>\n--b--\nepilog' >"$folder/parts"
  printf 'Content-Type: message/rfc822\n\nContent-Type: multipart/alternative; boundary=--c\n\n----c\nContent-Transfer-Encoding: quoted-printable\n\n=C3=A4=\n----c--' >"$folder/nested"
  printf '"%s"\n' 'Content-Type: ' multipart/mixed 'boundary=' 'charset=' -- 'Content-Transfer-Encoding: ' base64 quoted-printable '=?utf-8?Q?' '?=' >"$folder.dict"
}

seed_ini_file() {
  local folder=$1
  printf '[Notes]\nDirectory=/data\nRegion = de_DE\n' >"$folder/plain"
  printf '; comment\r\n[Other]\r\na=1\r\n[NOTES]\r\n\r\nA=2\r\n[Notes]\r\na=3' >"$folder/sections"
  printf '"%s"\n' '[Notes]' 'Written=' 'a=' ';' '\xEF\xBB\xBF' '\x0D\x0A' >"$folder.dict"
}

# A reply, one that is cut short, one with letters that cannot be shown, lengths at their ends.
seed_console_reply() {
  local folder=$1
  printf '\x20Server tasks\r\nRouter  Idle\r\n\x00' >"$folder/reply"
  printf '\xff\x7fA\x01\x7e\xe4\x09B' >"$folder/odd"
  printf '\xff\xffA' >"$folder/negative"
  printf 'A' >"$folder/cut"
  printf '"\\x0D\\x0A"\n"\\x00"\n"\\xFF\\x7F"\n' >"$folder.dict"
}

# A saved file, one of another desk with duplicates, comments and odd headers, one of carriage returns.
seed_settings_file() {
  local folder=$1
  printf '[TessalyAndDocContent]\r\nSource=Hub/Acme\r\nDestination=Local\r\ntxtFind=old\r\ntxtReplace=\r\n[SourceDB]\r\na.nsf\r\n[DestDB]\r\nb.nsf\r\n[Fields]\r\nSubject: x\r\n' >"$folder/saved"
  printf ' [tessalyanddoccontent] x\n;c\nSOURCE = "q" \n[SourceDB]\n\n[wvdb]\nz\n[SourceDB]\na\n[odd\n[DestDB]' >"$folder/odd"
  printf '[TessalyAndDocContent]\rtxtFind=1\r[SourceDB]\ra\r[DestDB]\r\r[Fields]\r\0f: 1\r' >"$folder/returns"
  printf '"%s"\n' '[TessalyAndDocContent]' '[SourceDB]' '[DestDB]' '[Fields]' '[WVDB]' 'Source=' 'txtReplace=' '\xEF\xBB\xBF' '\x0D\x0A' '\x00' >"$folder.dict"
}

# No change, one in the head, one in the schema, some further back.
seed_database_file() {
  local folder=$1
  seed_hex "$folder" <<'END'
00000001
10000080
700000ff
000400040104000800ab0010
00100001002000020030000400400008
END
  printf '"\\x00\\x02\\x00\\x08"\n"\\x80"\n"\\xFF"\n' >"$folder.dict"
}

# Which file; no change, its head, a superblock, a table, a bucket; then pieces before their checksums: heads and bodies of
# both blocks, a bucket, records, a body, an object.
seed_nsf_file() {
  local folder=$1
  seed_hex "$folder" <<'END'
00
0006000001
01300200ff420001ff
00040400013c0400ff
000010000200500080
03005000ff00600004
040100000010
0501000a0001
0402000000ff
0404001a0080
0604010e00ff
04060002000f
0407003200ff
05070064007f
04080a0200ff
0709030200800907000080
END
  printf '"\\xFF\\xFF"\n"\\x80"\n"\\x00\\x04"\n"\\x07"\n' >"$folder.dict"
}

# The sanitizer keeps freed memory for a while; a little of it, or the fuzzer takes that for a leak.
export ASAN_OPTIONS="quarantine_size_mb=16:${ASAN_OPTIONS:-}"
[ $# -gt 0 ] || set -- $(cd fuzz && ls ./*_fuzz.cpp | sed 's|^\./||; s|_fuzz\.cpp$||')
for name in "$@"; do
  cmake --build --preset fuzz --target "${name}_fuzz"
  mkdir -p "build/fuzz/corpus/$name" "build/fuzz/seeds/$name" build/fuzz/findings
  "seed_$name" "build/fuzz/seeds/$name"
  max_len=1500
  [ "$name" = dxl ] && max_len=4000
  echo "Fuzzing: $name"
  "build/fuzz/fuzz/${name}_fuzz" -max_total_time="${FUZZ_SECONDS:-60}" -max_len="$max_len" -timeout=60 \
    -rss_limit_mb=3072 -print_final_stats=1 -dict="build/fuzz/seeds/$name.dict" \
    -artifact_prefix="build/fuzz/findings/$name-" "build/fuzz/corpus/$name" "build/fuzz/seeds/$name"
done
