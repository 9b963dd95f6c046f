# What the program for Windows is tried with at its windows. Read by scripts/test_windows.sh behind desktop.sh; $program is
# the directory of the program, and program() starts it.
form=src/shell/form1.ui
bulk=src/bulk/frm_replic.ui
caption="Current UI document in"

# choose WINDOW ROW NAME: the row of the list of items, counted from 0, which must be the item of that name.
choose() {
  click "$1" $form fldList row
  for _ in $(seq "$2"); do press "$1" Down; done
  shows "$1" $form txtFieldName "$3"
}

# start: the program as a user finds it, in process $process with the main window $window. On a workspace the client window
# comes up last, and takes the keyboard under Wine.
start() {
  program &
  process=$!
  window=$(await "$caption")
  [ -z "${TESSALY_WORKSPACE:-}" ] || await "^Client: " >/dev/null
  sleep 1
}

# ended PROCESS: waits for a program that was told to end.
ended() {
  for _ in $(seq 600); do
    kill -0 "$1" 2>/dev/null || break
    sleep 0.1
  done
  ! kill -0 "$1" 2>/dev/null || fail "The program does not end"
  wait "$1" || fail "The program did not end in order"
}

# command WORKSPACE ARGUMENT...: what a command says of a workspace.
command_on() {
  local workspace=$1
  shift
  program --workspace "$workspace" "$@" | tr -d '\r'
}

# a_day_at_the_desk NAME WORKSPACE: the road of a user through both windows; the program works on that workspace, be it
# through the client or by itself.
a_day_at_the_desk() {
  local name=$1 workspace=$2 window other process before after
  echo "  first screen"
  start
  shows "$window" $form NotesUID C1258AA07F90ADE741258ADD002B7DAB
  picture "$name-first"
  import -window "$window" "$pictures/$name-window.png"

  echo "  view"
  enter "$window" $form NotesID 2310
  click "$window" $form viewNotesID
  shows "$window" $form NotesUID C1258AA06A76980641258ADD00334515
  picture "$name-view"

  echo "  capture"
  click "$window" $form cmdGetDoc
  shows "$window" $form NotesUID C1258AA07F90ADE741258ADD002B7DAB

  echo "  overwrite"
  choose "$window" 5 Subject
  enter "$window" $form txtFieldContent "Contract read under Wine"
  press "$window" alt+o
  shows "$window" $form txtFieldName Body
  picture "$name-overwrite"

  echo "  list of design notes"
  double_click "$window" $form lstDesigns row
  await "ACL documents in" >/dev/null
  picture "$name-design"

  echo "  check of formulas"
  enter "$window" $form txtFieldContent "@Sum(1;2"
  click "$window" $form cmdChkFormula
  other=$(await "Formula error!")
  picture "$name-formula"
  press "$other" Return
  gone "Formula error!"
  enter "$window" $form txtFieldContent "@Text(3+4)"
  click "$window" $form cmdChkFormula
  shows "$window" $form txtFieldContent "*7"

  echo "  collection by formula, deletion"
  enter "$window" $form txtFieldContent 'SELECT @Contains(Subject;"Stationery")'
  click "$window" $form cmdCollbyFormula
  sleep 1
  click "$window" $form idList row
  click "$window" $form cmdDelete
  sleep 1
  picture "$name-deletion"

  echo "  console"
  enter "$window" $form txtRemoteCommand "show server"
  press "$window" alt+c
  shows "$window" $form txtFieldContent "*ACME-HUB01*"
  picture "$name-console"

  echo "  copy of a view"
  before=$(command_on "$workspace" documents 'disc\ideas.nsf' | wc -l)
  click "$window" $form cmdCMRcoll
  other=$(await "Copy / Move / Remove")
  enter "$other" $bulk lstServer Local
  enter "$other" $bulk txtMaskSorce kmeier
  click "$other" $bulk cmdExpand
  double_click "$other" $bulk lstDBNames row
  click "$other" $bulk lstViewNames row
  enter "$other" $bulk lstDesignServer Local
  enter "$other" $bulk txtMaskDest ideas
  click "$other" $bulk cmdExpand2
  click "$other" $bulk lstDBNamesDest row
  click "$other" $bulk cmdCopy
  sleep 2
  picture "$name-copy"
  after=$(command_on "$workspace" documents 'disc\ideas.nsf' | wc -l)
  [ $((after - before)) -eq 8 ] || fail "$((after - before)) documents came into the other database and not 8"

  echo "  settings file"
  press "$other" alt+e
  gone "Copy / Move / Remove"
  grep -q '^txtFind=Mail Karin Meier' "$program/TessalyAndDocContent.ini" || fail "The settings were not saved"

  click "$window" $form cmdEnd
  ended "$process"
  command_on "$workspace" show 'mail\kmeier.nsf' 902 >"$place/shown.txt"
  grep -q "Contract read under Wine" "$place/shown.txt" || fail "The document was not overwritten"
  if command_on "$workspace" documents 'mail\kmeier.nsf' | grep -q Stationery; then fail "The document was not deleted"; fi
}

# What ends the client ends programs of its names, takes its lock away, and ends the program.
end_of_the_client() {
  local data=$1 window process client code=0
  cp "$WINEPREFIX/drive_c/windows/system32/ping.exe" "$program/nlnotes.exe"
  timeout 60 wine "$program/nlnotes.exe" -n 300 127.0.0.1 >/dev/null 2>&1 &
  client=$!
  touch "$data/~notes.lck"
  start
  press "$window" alt+k
  ended "$process"
  wait "$client" || code=$?
  [ "$code" -ne 124 ] || fail "The client was not ended"
  [ ! -e "$data/~notes.lck" ] || fail "The lock of the client is still there"
  rm "$program/nlnotes.exe"
}

# The program tells that there is no client, and lives.
without_a_client() {
  local process window
  program &
  process=$!
  await "Tessaly Lens" >/dev/null
  picture no-client-box
  pass_boxes "Profiles UI's"
  window=$(await "Profiles UI's")
  picture no-client
  press "$window" alt+e
  ended "$process"
}

# register_client FILE: the three classes of the client, as tests/windows/client_double/double_server.cpp numbers them.
register_client() {
  local number=1 class id
  for class in Notes.NotesSession Lotus.NotesSession Notes.NotesUIWorkSpace; do
    id="{7E55A11D-000$number-4C4E-8D01-54657373616C}"
    wine reg add "HKCR\\$class\\CLSID" /ve /d "$id" /f >/dev/null
    wine reg add "HKCR\\CLSID\\$id\\InprocServer32" /ve /d "$(windows_path "$1")" /f >/dev/null
    wine reg add "HKCR\\CLSID\\$id\\InprocServer32" /v ThreadingModel /d Apartment /f >/dev/null
    number=$((number + 1))
  done
}

# left_behind NUMBER: how many objects of the client the program held when it ended.
left_behind() {
  [ "$(cat "$place/left.txt")" = "$1" ] || fail "$(cat "$place/left.txt") objects of the client are left and not $1"
}

# pass_boxes TEXT: leaves the boxes of the program until a window of that caption comes up.
pass_boxes() {
  local box
  for _ in $(seq 100); do
    box=$(xdotool search --onlyvisible --name "^Tessaly Lens$" 2>/dev/null | tail -1 || true)
    if [ -n "$box" ]; then
      press "$box" Return
    elif xdotool search --onlyvisible --name "$1" >/dev/null 2>&1; then
      return
    fi
    sleep 0.3
  done
  fail "Boxes of the program come again and again"
}

# with_fault FAULT BOX ACTION...: the client has a fault while the action is done: the user is told by a box of that
# title, the program lives, and nothing of the client is left in its end.
with_fault() {
  local fault=$1 title=$2 window box process
  shift 2
  echo "  $fault"
  export TESSALY_DOUBLE_FAULT=$fault
  start
  unset TESSALY_DOUBLE_FAULT
  "$@" "$window"
  box=$(await "^$title$")
  picture "fault-${fault//:/-}"
  press "$box" Return
  gone "^$title$"
  click "$window" $form cmdEnd
  ended "$process"
  left_behind 0
}
collect_all() {
  enter "$1" $form txtFieldContent "SELECT @All"
  click "$1" $form cmdCollbyFormula
}
overwrite_subject() {
  choose "$1" 5 Subject
  press "$1" alt+o
}
delete_report() {
  enter "$1" $form txtFieldContent 'SELECT @Contains(Subject;"Weekly report")'
  click "$1" $form cmdCollbyFormula
  sleep 1
  click "$1" $form idList row
  click "$1" $form cmdDelete
}
faults_of_the_client() {
  with_fault GETNEXTDOCUMENT:dies:3 "Tessaly Lens" collect_all
  with_fault SEARCH:wrong:0 "Tessaly Lens" collect_all
  with_fault REPLACEITEMVALUE:raises:0 "Error in Overwrite" overwrite_subject
  # What the object model does not find is deleted through the library.
  with_fault GETDOCUMENTBYID:raises:0 "Remove doc" delete_report
  if command_on "$TESSALY_DOUBLE_WORKSPACE" documents 'mail\kmeier.nsf' | grep -q "Weekly report"; then
    fail "The document was not deleted"
  fi
}

# without_library NAME: the program finds the client's objects, but not its library as it should be.
without_library() {
  local window process
  echo "  $1"
  program &
  process=$!
  await "^Tessaly Lens$" >/dev/null
  picture "library-$1"
  pass_boxes "$caption"
  window=$(await "$caption")
  click "$window" $form cmdEnd
  ended "$process"
  left_behind 0
}
faults_of_the_library() {
  mv "$program/NNotes.dll" "$program/server.dll"
  register_client "$program/server.dll"
  without_library missing
  "$other-w64-mingw32-gcc-posix" -shared -o "$program/NNotes.dll" -x c /dev/null
  without_library of-the-other-width
  "$arch-w64-mingw32-gcc-posix" -shared -o "$program/NNotes.dll" -x c /dev/null
  without_library without-functions
}
