# A device without a screen, for tests and the scripted visit. Source it after common.sh.
#
#   headlessBegin   starts the display, the session bus and the sound server and sets the environment
#   headlessEnd     ends what headlessBegin started and removes the home

headlessPids=()
headlessHome=""

# Starts a server that writes its address to descriptor 3 and leaves it in serverAddress; one that dies writes none.
# The servers' own output goes to a log, so that a caller's output ends with the command's.
startServer() {
  local name=$1 pipe="$headlessHome/$1.pipe"
  shift
  mkfifo "$pipe"
  "$@" 3>"$pipe" >"$headlessHome/$name.log" 2>&1 &
  headlessPids+=($!)
  serverAddress=""
  read -r serverAddress <"$pipe" || true
  [ -n "$serverAddress" ] || die "$name did not start: $(tail -n 3 "$headlessHome/$name.log")"
}

# Takes the first free display.
startDisplay() {
  startServer Xvfb Xvfb -displayfd 3 -screen 0 "${ORIVEX_SCREEN:-1280x1024x24}" -nolisten tcp -noreset
  export DISPLAY=":$serverAddress"
}

startBus() {
  startServer dbus-daemon dbus-daemon --session --nofork --print-address=3
  export DBUS_SESSION_BUS_ADDRESS="$serverAddress"
}

# The microphone hears a steady 440 Hz tone, so a recording has a level; the speaker is heard by nobody. Without rewinds
# the tone comes in pieces of 50 ms, as from a device, and not of two seconds.
startSound() {
  command -v pulseaudio >/dev/null || return 0
  export PULSE_SERVER="unix:$XDG_RUNTIME_DIR/pulse.socket"
  pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disallow-exit --realtime=no --high-priority=no \
    -L "module-native-protocol-unix socket=$XDG_RUNTIME_DIR/pulse.socket auth-anonymous=1" \
    -L "module-null-sink sink_name=speaker" \
    -L "module-null-sink sink_name=tone rate=48000 norewinds=1" \
    -L "module-sine sink=tone frequency=440" \
    -L "module-remap-source source_name=microphone master=tone.monitor" \
    >"$headlessHome/pulseaudio.log" 2>&1 &
  headlessPids+=($!)
  local tries
  for tries in {1..50}; do
    if pactl set-default-source microphone 2>/dev/null; then
      pactl set-default-sink speaker
      return 0
    fi
    sleep 0.1
  done
  warn "PulseAudio did not start: $(tail -n 3 "$headlessHome/pulseaudio.log")"
  unset PULSE_SERVER
}

headlessBegin() {
  headlessHome=$(mktemp -d "${TMPDIR:-/tmp}/orivex-headless.XXXXXX")
  export HOME="$headlessHome/home"
  export XDG_CONFIG_HOME="$HOME/.config" XDG_DATA_HOME="$HOME/.local/share" XDG_CACHE_HOME="$HOME/.cache"
  export XDG_STATE_HOME="$HOME/.local/state" XDG_RUNTIME_DIR="$headlessHome/run"
  mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME"
  mkdir -m 700 "$XDG_RUNTIME_DIR"

  unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
  export GDK_BACKEND=x11 GSK_RENDERER=cairo LIBGL_ALWAYS_SOFTWARE=1 GTK_A11Y=none NO_AT_BRIDGE=1
  export GSETTINGS_BACKEND=memory LC_ALL=C.UTF-8
  # The tests talk to servers of their own on this machine; a proxy must not come between.
  export no_proxy=localhost,127.0.0.1,::1 NO_PROXY=localhost,127.0.0.1,::1
  # Scanning every GStreamer plug-in takes seconds, and the home is new each time: keep the list with the build.
  mkdir -p "$root/build"
  export GST_REGISTRY="$root/build/gstreamer-registry.bin"

  startDisplay
  startBus
  startSound
}

headlessEnd() {
  local pid
  for pid in "${headlessPids[@]}"; do kill "$pid" 2>/dev/null || true; done
  if [ "${#headlessPids[@]}" -gt 0 ]; then wait "${headlessPids[@]}" 2>/dev/null || true; fi
  if [ -n "$headlessHome" ]; then rm -rf "$headlessHome" || true; fi
}
