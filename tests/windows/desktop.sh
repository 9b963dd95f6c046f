# What a user does at the desktop of the test, and sees there. Read by scripts/test_windows.sh, which sets $pictures and
# the display; fail() is its way out. Controls are found where the design of their window has them, at the size that the
# window has now.

# act COMMAND...: of the mouse or the keyboard. A window that cannot be activated would be waited for without end.
act() { timeout 20 xdotool "$@" || fail "The desktop does not do this: $*"; }

# await TEXT: the number of the window whose caption holds the text.
await() {
  local window
  for _ in $(seq 600); do
    window=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -1 || true)
    [ -n "$window" ] && echo "$window" && return
    sleep 0.1
  done
  fail "No window came up that is called $1"
}

# gone TEXT: waits until no window is called so any more.
gone() {
  for _ in $(seq 600); do
    xdotool search --onlyvisible --name "$1" >/dev/null 2>&1 || return 0
    sleep 0.1
  done
  fail "The window that is called $1 stays"
}

# press WINDOW KEY...: keys as a user presses them.
press() {
  local window=$1
  shift
  act windowactivate --sync "$window" key --delay 60 "$@"
  sleep 0.3
}

picture() {
  sleep 1
  import -window root "$pictures/$1.png"
}

# place_of DESIGN CONTROL WIDTH HEIGHT: "LEFT TOP X Y" in a window of that size, X and Y in the middle. DESIGN is the file
# of the window.
place_of() {
  awk -v wanted="$2" -v width="$3" -v height="$4" '
    function number(tag, text) {
      match($0, "<" tag ">-?[0-9]+")
      text = substr($0, RSTART, RLENGTH)
      sub(/.*>/, "", text)
      return text + 0
    }
    /<widget / { split($0, part, "\""); name[++depth] = part[4] }
    /"geometry"/ {
      if (depth == 1) { across = width / number("width"); down = height / number("height"); next }
      left[depth] = left[depth - 1] + number("x")
      top[depth] = top[depth - 1] + number("y")
      if (name[depth] == wanted)
        print int(left[depth] * across), int(top[depth] * down), \
              int((left[depth] + number("width") / 2) * across), int((top[depth] + number("height") / 2) * down)
    }
    /<\/widget>/ { --depth }' "$1"
}

# point WINDOW DESIGN CONTROL [row]: the pointer is put on the middle of a control, or on the first row of a list.
point() {
  local WIDTH HEIGHT left top x y
  eval "$(xdotool getwindowgeometry --shell "$1" | grep -E '^(WIDTH|HEIGHT)=')"
  read -r left top x y < <(place_of "$2" "$3" "$WIDTH" "$HEIGHT")
  [ -n "${y:-}" ] || fail "There is no $3 in $2"
  [ $# -lt 4 ] || x=$((left + 20)) y=$((top + 10))
  act windowactivate --sync "$1" mousemove --window "$1" "$x" "$y"
}
click() {
  point "$@"
  act click 1
  sleep 0.3
}
double_click() {
  point "$@"
  act click --repeat 2 --delay 80 1
  sleep 0.3
}

# enter WINDOW DESIGN CONTROL TEXT: in the place of what the box holds.
enter() {
  click "$1" "$2" "$3"
  act key --delay 60 ctrl+a
  act type --delay 40 "$4"
  sleep 0.3
}

# copied: what the user has marked.
copied() {
  printf 'nothing' | xclip -i -selection clipboard >/dev/null 2>&1
  sleep 0.2
  act key ctrl+c
  for _ in $(seq 30); do
    sleep 0.1
    [ "$(timeout 5 xclip -o -selection clipboard 2>/dev/null || true)" = nothing ] || break
  done
  timeout 5 xclip -o -selection clipboard 2>/dev/null | tr -d '\r' || true
}

# text_of WINDOW DESIGN CONTROL: what a box holds.
text_of() {
  click "$1" "$2" "$3"
  act key --delay 60 ctrl+a
  copied
}

# shows WINDOW DESIGN CONTROL PATTERN: waits until a box holds a text of that pattern, as case has them.
shows() {
  local text
  for _ in $(seq 40); do
    text=$(text_of "$1" "$2" "$3")
    # shellcheck disable=SC2254
    case $text in $4) return ;; esac
    sleep 0.3
  done
  fail "$3 shows \"$text\" and not \"$4\""
}
