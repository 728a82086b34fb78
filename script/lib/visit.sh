# A scripted visit to the demo, on a device of script/headless that is as large as the demo's window. Source it after
# common.sh.
#
# The demo tells where its controls and those of the chat page are (--report-positions); taps and key presses go through
# the display server, as a person's do: see script/hands. Nothing waits for a time to pass: every wait looks for
# something to happen, and fails when it does not.
#
# Set visitFolder before use. Each step is a line with the milliseconds since the start, and pictures are numbered.

visitStart=$EPOCHREALTIME
visitPictures=0
visitDemos=0
demoPid=""
demoLog=""
demoErrors=""
mark=0

hands() { "$root/script/hands" "$@"; }
hasTouch() { [ -n "${ORIVEX_HANDS-}" ]; }

milliseconds() {
  local now=$EPOCHREALTIME
  echo $(((${now/./} - ${visitStart/./}) / 1000))
}

note() { printf '%6d ms  %s\n' "$(milliseconds)" "$*" | tee -a "$visitFolder/transcript.txt"; }

fail() {
  note "FAILED: $*"
  hands screenshot "$visitFolder/failed.png" || true
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

# How many controls of that name, or of that name with a number, the visitor has.
count() { controls | awk -v name="$1" '{ base = $1; sub(/#.*/, "", base) } base == name { ++found } END { print found + 0 }'; }
# more <name> <number>: there are more of them than that.
more() { [ "$(count "$1")" -gt "$2" ]; }

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

# tap <name>: waits until the control shows and stands still, then taps its middle.
tap() {
  local before="" now=""
  waitFor 10 "$1 to tap" middleOf "$1"
  until now=$(middleOf "$1") && [ "$now" = "$before" ]; do
    before=$now
    sleep 0.2
  done
  hands tap $now
}

# tapTab <number from 1> <name>: one of the shop's three tabs, until the page with that control shows: a notice may
# cover the shop for a while.
tapTab() {
  waitFor 10 "the tabs" control tabs
  waitFor 10 "tab $1" tappedTab "$1" "$2"
}

# The tabs stand in the middle, each 100 points wide at most.
tappedTab() {
  ! control "$2" || return 0
  set -- "$1" $(control tabs)
  hands tap $((180 + ($1 - 2) * 100)) $(($4 + $6 / 2))
  sleep 0.3
  return 1
}

# write <text>: writes it into the chat's text field and sends it.
write() {
  waitFor 30 "typing “$1”" typed "$1"
  hands key Return
  waitFor 30 "sending “$1”" shows message-mine "$1"
}

# Nobody has the keys if the page was not ready for the finger.
typed() {
  local tries
  tap message-input
  hands key ctrl+a # what an earlier attempt has left
  hands type "$1"
  for tries in {1..20}; do
    if shows message-input "$1"; then return 0; fi
    sleep 0.1
  done
  return 1
}

look() {
  hands screenshot "$visitFolder/.now.png"
  sha1sum <"$visitFolder/.now.png"
}
isBlank() { [ "$(identify -format %k "$visitFolder/.now.png")" -le 100 ]; }
hasContent() {
  look >/dev/null
  ! isBlank
}

# picture <name> [at-once]: the screen, once it stands still (a dot that blinks does not keep it for longer than 1.5 s),
# or as it is. A page's first frame may take its time without graphics hardware.
picture() {
  local before now deadline file
  visitPictures=$((visitPictures + 1))
  file=$(printf '%s/%02d-%s.png' "$visitFolder" "$visitPictures" "$1")
  waitFor 30 "something on the screen for ${file##*/}" hasContent
  if [ "${2-}" = at-once ]; then
    mv "$visitFolder/.now.png" "$file"
    note "         picture ${file##*/}"
    return
  fi
  sleep 0.5 # what the page's script has done already may not be painted yet
  deadline=$(($(milliseconds) + 1500))
  before=""
  while now=$(look) && [ "$now" != "$before" ] && [ "$(milliseconds)" -lt "$deadline" ]; do
    before=$now
    sleep 0.1
  done
  mv "$visitFolder/.now.png" "$file"
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
  ORIVEX_VISITED=$XDG_RUNTIME_DIR "$demo" --frameless --report-positions "$@" >"$demoLog" 2>"$demoErrors" &
  demoPid=$!
  mark=0
  waitFor 60 "the shop's button" control contact
  waitFor 30 "the shop on the screen" hasContent
  demoServer=$(sed -n 's/^server //p' "$demoLog")
  giveKeyboard
}

# To the newest window of the demo: X11 leaves it to a window manager, and a compositor does it by itself.
giveKeyboard() {
  hasTouch || xdotool windowfocus --sync "$(xdotool search --sync --onlyvisible --pid "$demoPid" 2>/dev/null | sort -n | tail -n 1)"
}

# A page takes no touch before its first frame, which follows its reveal; a finger tries again.
tappedBack() {
  local place
  ! gone back || return 0
  if place=$(middleOf back); then hands tap $place; fi
  sleep 0.5
  gone back
}

# openChat <what it is for>
openChat() {
  local before
  setMark
  before=$(milliseconds)
  tap contact
  waitFor 15 "the chat's reveal" control message-input
  note "$1, revealed $(($(milliseconds) - before)) ms after the press"
}

closeChat() {
  waitFor 10 "the way back to the shop" tappedBack
  note "Back in the shop"
}

# The processes that run the demo's pages: its descendants, with a sandbox in between.
pageProcesses() {
  local process parent
  for process in $(pgrep -x WebKitWebProces); do
    parent=$process
    while [ "$parent" -gt 1 ] && [ "$parent" != "$demoPid" ]; do
      # It may end meanwhile.
      parent=$(sed -n 's/^PPid:[[:space:]]*//p' "/proc/$parent/status" 2>/dev/null || true)
      parent=${parent:-0}
    done
    [ "$parent" != "$demoPid" ] || echo "$process"
  done
}

# Everything that runs for the demo, wherever its parent has gone: what the desktop starts does not have the variable.
processesOfDemo() { grep -lsaF "ORIVEX_VISITED=$XDG_RUNTIME_DIR" /proc/[0-9]*/environ | cut -d/ -f3; }

# Ends the demo like the desktop does, and holds its exit code and complaints against it.
endDemo() {
  local status=0
  kill -TERM "$demoPid"
  wait "$demoPid" || status=$?
  demoPid=""
  [ "$status" -eq 0 ] || fail "the demo ended with code $status"
  # The visit itself brings about the failures that the component logs. The web engine's own processes may miss a bus or
  # a parent that ends before them, GTK's file chooser draws the buttons of a path that it has just made, and newer
  # libadwaita tries the heading of a question in a larger font than fits.
  local knownOnes=': Orivex-WARNING|\(WebKit|\(process:2\)|: Failed to connect to bus|without a current allocation'
  ! pkg-config --atleast-version=1.5 libadwaita-1 || knownOnes+='|measure GtkLabel'
  if grep -E 'WARNING|CRITICAL' "$demoErrors" | grep -vE "$knownOnes"; then
    fail "the demo complained, see ${demoErrors##*/}"
  fi
}
