# What visitors do in the chat, each thing until the page shows what came of it. Source it after visit.sh and desktop.sh.

# keys <name...>: presses keys in the demo, one after the other.
keys() {
  local name
  for name in "$@"; do
    hands key "$name"
    sleep 0.1
  done
}

# hold <control>: presses its middle until letGo.
hold() {
  local x y
  waitFor 30 "the control $1" middleOf "$1"
  read -r x y <<<"$(middleOf "$1")"
  heldAt=("$x" "$y")
  hands touch-down "$x" "$y"
}
letGo() {
  hands touch-up
  heldAt=()
}

# heard <bytes>: the newest clip has that many; a second has 32,000.
heard() { find "$XDG_DATA_HOME/orivex-sdk" -name '*.wav' -newer "$visitFolder/voice-mark" -size "+$1c" | grep .; }

# chooseDocument: opens the file chooser; enterPath <path> gives it a path, as a keyboard does.
chooseDocument() {
  setMark
  waitFor 30 "the file chooser" opened dialog document
  giveKeyboard
}
enterPath() {
  waitFor 30 "the choice of $1" pathIsTaken "$1"
  giveKeyboard
}

# pathIsTaken <path>: does the next step towards it. Until the chooser has read its folder it forgets what is typed.
pathIsTaken() {
  if ! control dialog-entry; then
    hands key ctrl+l # opens a field for paths
  elif ! shows dialog-entry "$1"; then
    hands key ctrl+a
    hands type "$1"
  else
    hands key Return
    waitFor 5 "the end of the file chooser" gone dialog
    return 0
  fi
  sleep 0.3 # the demo reports what became of it
  return 1
}

doWrite() {
  local text="question $RANDOM"
  write "$text"
  waitFor 30 "the answer" shows message-agent "您说的是：「$text」"
}

doDocument() {
  local before
  before=$(count image)
  chooseDocument
  enterPath "$HOME/Documents/sunset.png"
  waitFor 30 "the picture in the conversation" more image "$before"
}

doPhoto() {
  local before
  before=$(count image)
  waitFor 30 "the photo sheet" opened photos-original photo
  waitFor 30 "a chosen photo" photoIsChosen
  tap photos-confirm
  waitFor 30 "the end of the photo sheet" gone photos-original
  waitFor 30 "the photo in the conversation" more image "$before"
}

# The keyboard is the photos' when they are there.
photoIsChosen() { control photos-confirm || trying photos-original "hands key space" photos-confirm; }

doCamera() {
  local before
  before=$(count image)
  waitFor 30 "the camera" opened camera-shutter camera
  waitFor 30 "a photo to look at" photoIsTaken
  tap camera-use
  waitFor 30 "the end of the camera" gone camera-use
  waitFor 30 "the photo in the conversation" more image "$before"
}

photoIsTaken() { control camera-use || trying camera-shutter "tap camera-shutter" camera-use; }

# opened <control> <button>: taps the button for the control. A page that has only just come may miss a tap.
opened() { control "$1" || trying "$2" "tap $2" "$1"; }

# trying <control> <command> <other control>: when the one shows, runs the command and looks for the other for a while.
trying() {
  local tries
  control "$1" || return 1
  $2
  for tries in {1..50}; do # a slow page takes the second tap as well
    if control "$3"; then return 0; fi
    sleep 0.1
  done
  return 1
}

# The first to talk is asked for the microphone.
doVoice() {
  local before
  before=$(count voice)
  touch "$visitFolder/voice-mark"
  waitFor 30 "the button to talk" opened talk voice-toggle
  hold talk
  waitFor 30 "a clip or a question" isHeardOrAsked
  if control dialog >/dev/null; then
    letGo
    giveKeyboard
    keys Tab Tab Right Return
    waitFor 30 "the end of the question" gone dialog
    giveKeyboard
    waitFor 30 "the button to talk" opened talk voice-toggle
    hold talk
  fi
  waitFor 30 "the sound of a second" heard 45000
  letGo
  waitFor 30 "the voice message" more voice "$before"
  waitFor 30 "the keyboard" opened message-input voice-toggle
}
isHeardOrAsked() { control dialog || heard 2000; }

doReturn() {
  closeChat
  openChat "Returns"
}
