# What a customer's desktop has for the scripted visit: applications that open addresses and documents, and folders with
# files to send. Source it after headlessBegin has made the home.

# A browser for this home that writes down what it is asked to open.
opened="$HOME/opened"
installBrowser() {
  : >"$opened"
  printf '#!/bin/sh\nprintf "%%s\\n" "$1" >>"%s"\n' "$opened" >"$HOME/note-address"
  chmod +x "$HOME/note-address"
  mkdir -p "$XDG_DATA_HOME/applications"
  cat >"$XDG_DATA_HOME/applications/note-address.desktop" <<ENTRY
[Desktop Entry]
Type=Application
Name=Address notebook
Exec="$HOME/note-address" %u
MimeType=x-scheme-handler/http;x-scheme-handler/https;
ENTRY
  printf '[Default Applications]\nx-scheme-handler/http=note-address.desktop\n' >"$XDG_CONFIG_HOME/mimeapps.list"
}

# An application that opens documents, for the open-with menu.
installReader() {
  cat >"$XDG_DATA_HOME/applications/reader.desktop" <<ENTRY
[Desktop Entry]
Type=Application
Name=Document reader
Icon=x-office-document
Exec="$HOME/note-address" %u
MimeType=application/pdf;
ENTRY
  printf 'application/pdf=reader.desktop\n' >>"$XDG_CONFIG_HOME/mimeapps.list"
}

# What the customer has at hand.
fillFolders() {
  local kind
  for kind in DOCUMENTS:Documents PICTURES:Pictures VIDEOS:Videos DOWNLOAD:Downloads; do
    mkdir -p "$HOME/${kind#*:}"
    printf 'XDG_%s_DIR="$HOME/%s"\n' "${kind%:*}" "${kind#*:}" >>"$XDG_CONFIG_HOME/user-dirs.dirs"
  done
  printf '%%PDF-1.4\n%% A contract to send.\n%%%%EOF\n' >"$HOME/Documents/合同 2024.pdf"
  convert -size 1200x800 gradient:'#f7b267-#5a4fcf' -fill '#fff6' -draw 'circle 860,300 960,360' \
    "$HOME/Documents/sunset.png"
  printf 'MZ' >"$HOME/Documents/game.txt"
  local colours=(navy teal coral gold plum) number
  for number in 1 2 3 4 5; do
    convert -size 1600x1200 "plasma:${colours[number - 1]}-white" "$HOME/Pictures/IMG_000$number.jpg"
    touch -d "-$number days" "$HOME/Pictures/IMG_000$number.jpg"
  done
  gst-launch-1.0 -q videotestsrc num-buffers=90 pattern=ball ! video/x-raw,width=640,height=480,framerate=30/1 ! \
    x264enc ! h264parse ! mp4mux ! filesink location="$HOME/Videos/clip.mp4"
  touch -d "-9 days" "$HOME/Videos/clip.mp4"
}
