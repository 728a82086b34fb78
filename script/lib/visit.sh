# Hands and eyes for a scripted visit to the demo. Source it after common.sh, on a display without a window manager.
#
# The demo tells where its controls and those of the chat page are (--report-positions); clicks and key presses go
# through the display's pointer and keyboard, as a person's do. Nothing waits for a time to pass: every wait looks for
# something to happen, and fails when it does not.
#
# Set visitFolder before use. Each step is a line with the milliseconds since the start, and pictures are numbered.

visitStart=$EPOCHREALTIME
visitPictures=0
visitDemos=0
demoPid=""
demoLog=""
demoErrors=""
demoWindow=""
mark=0

milliseconds() {
  local now=$EPOCHREALTIME
  echo $(((${now/./} - ${visitStart/./}) / 1000))
}

note() { printf '%6d ms  %s\n' "$(milliseconds)" "$*" | tee -a "$visitFolder/transcript.txt"; }

fail() {
  note "FAILED: $*"
  if [ -n "$demoWindow" ]; then import -window "$demoWindow" "$visitFolder/failed.png" 2>/dev/null || true; fi
  exit 1
}

# waitFor <seconds> <what> <command...>: until the command succeeds.
waitFor() {
  local deadline=$(($(milliseconds) + $1 * 1000)) what=$2
  shift 2
  until "$@" >/dev/null; do
    [ "$(milliseconds)" -lt "$deadline" ] || fail "$what did not happen"
    [ -z "$demoPid" ] || kill -0 "$demoPid" 2>/dev/null || fail "the demo ended while waiting: $what"
    sleep 0.05
  done
}

# The lines that describe what shows now: "NAME X Y WIDTH HEIGHT TEXT".
controls() {
  awk '$1 == "shows" { name = $2; sub(/^shows /, ""); shown[name] = $0 }
       $1 == "hides" { delete shown[$2] }
       END { for (name in shown) print shown[name] }' "$demoLog"
}

# The control of that name; fails when it does not show.
control() { controls | awk -v name="$1" '$1 == name { print; found = 1 } END { exit !found }'; }
gone() { ! control "$1"; }

# shows <name> <text>: a control of that name, or of that name with a number, has the text in it.
shows() { controls | awk -v name="$1" -v text="$2" '{ base = $1; sub(/#.*/, "", base) }
  base == name && index($0, text) { found = 1 } END { exit !found }'; }

# happened <event> [<text>]: an event of that name came after the mark.
happened() { tail -n "+$((mark + 1))" "$demoLog" | grep "^event $1\b" | grep -F -- "${2-}"; }
setMark() { mark=$(wc -l <"$demoLog"); }

# The middle of the last control of that name or of that name with a number, inside the window.
middleOf() {
  controls | awk -v name="$1" '{ base = $1; sub(/#.*/, "", base) }
    $1 == name || (base == name && base != $1) { x = $2 + $4 / 2; y = $3 + $5 / 2
      if (x >= 0 && x < 360 && y >= 0 && y < 720 && y >= last) { last = y; line = int(x) " " int(y) } }
    END { if (line == "") exit 1; print line }'
}

# click <name>: waits until the control shows and stands still, then clicks its middle.
click() {
  local before="" now=""
  waitFor 10 "$1 to click" middleOf "$1"
  until now=$(middleOf "$1") && [ "$now" = "$before" ]; do
    before=$now
    sleep 0.2
  done
  xdotool mousemove $now click 1
}

# clickTab <number from 1> <name>: one of the shop's three tabs, until the page with that control shows: a notice may
# cover the shop for a while.
clickTab() {
  waitFor 10 "the tabs" control tabs
  waitFor 10 "tab $1" clickedTab "$1" "$2"
}

# The tabs stand in the middle, each 100 points wide at most.
clickedTab() {
  ! control "$2" || return 0
  set -- "$1" $(control tabs)
  xdotool mousemove $((180 + ($1 - 2) * 100)) $(($4 + $6 / 2)) click 1
  sleep 0.3
  return 1
}

# typeText <text>: into what has the keyboard. A character that no key has is lent a key while it is typed, which must
# last until the demo has looked it up.
typeText() {
  local piece
  while IFS= read -r piece; do
    if [[ $piece == *[^[:ascii:]]* ]]; then
      xdotool type --delay 400 -- "$piece"
    else
      xdotool type --delay 15 -- "$piece"
    fi
  done < <(grep -oP '[[:ascii:]]+|[^[:ascii:]]' <<<"$1")
}

# write <text>: writes it into the chat's text field and sends it.
write() {
  click message-input
  typeText "$1"
  waitFor 5 "typing “$1”" shows message-input "$1"
  xdotool key Return
  waitFor 5 "sending “$1”" shows message-mine "$1"
}

screenSum() { import -window "$1" -depth 8 rgb:- | sha1sum; }

# picture <name> [<window>]: the demo's window or another, once it stands still (a dot that blinks does not keep it for
# longer than 1.5 s).
picture() {
  local window=${2:-$demoWindow} before now deadline=$(($(milliseconds) + 1500)) file
  visitPictures=$((visitPictures + 1))
  file=$(printf '%s/%02d-%s.png' "$visitFolder" "$visitPictures" "$1")
  before=$(screenSum "$window")
  while sleep 0.1 && now=$(screenSum "$window") && [ "$now" != "$before" ] && [ "$(milliseconds)" -lt "$deadline" ]; do
    before=$now
  done
  import -window "$window" "$file"
  [ "$(identify -format %k "$file")" -gt 100 ] || fail "the window is blank in $file"
  note "         picture ${file##*/}"
}

# fault <json>: lets something go wrong at the chat server.
fault() { curl --silent --fail --data "$1" "$demoServer/_dev/faults" >/dev/null || fail "the server took no fault: $1"; }

# fetched <part>: the server was asked for an address with that in it.
fetched() { curl --silent --fail "$demoServer/_dev/log" | grep -F -- "$1"; }

# startDemo <option...>: opens the shop; it brings its own chat server.
startDemo() {
  visitDemos=$((visitDemos + 1))
  demoLog="$visitFolder/demo-$visitDemos.log"
  demoErrors="$visitFolder/demo-$visitDemos.errors"
  : >"$demoLog"
  "$demo" --frameless --report-positions "$@" >"$demoLog" 2>"$demoErrors" &
  demoPid=$!
  mark=0
  waitFor 20 "the shop's button" control contact
  demoWindow=$(xdotool search --onlyvisible --pid "$demoPid" | head -n 1)
  demoServer=$(sed -n 's/^server //p' "$demoLog")
  xdotool windowfocus "$demoWindow"
}

# Ends the demo like the desktop does, and holds its exit code and complaints against it.
endDemo() {
  local status=0
  kill -TERM "$demoPid"
  wait "$demoPid" || status=$?
  demoPid=""
  demoWindow=""
  [ "$status" -eq 0 ] || fail "the demo ended with code $status"
  # The web engine's own processes may miss a bus or a parent that ends before them.
  if grep -E 'WARNING|CRITICAL' "$demoErrors" | grep -v '(WebKit'; then fail "the demo complained, see ${demoErrors##*/}"; fi
}
