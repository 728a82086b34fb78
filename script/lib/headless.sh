# A device without a screen, for tests and the scripted visit. Source it after common.sh.
#
#   headlessBegin [wayland]   starts the display, the session bus, microphone and all, and sets the environment
#   headlessEnd               ends what runs on the device and removes the home

headlessHome=""

# Starts a server that writes its address to descriptor 3 and leaves it in serverAddress; one that dies writes none.
# The servers' own output goes to a log, so that a caller's output ends with the command's.
startServer() {
  local name=$1 pipe="$headlessHome/$1.pipe"
  shift
  mkfifo "$pipe"
  "$@" 3>"$pipe" >"$headlessHome/$name.log" 2>&1 &
  disown
  serverAddress=""
  read -r serverAddress <"$pipe" || true
  [ -n "$serverAddress" ] || die "$name did not start: $(tail -n 3 "$headlessHome/$name.log")"
}

# Takes the first free display.
startDisplay() {
  startServer Xvfb Xvfb -displayfd 3 -screen 0 "${ORIVEX_SCREEN:-1280x1024}x24" -nolisten tcp -noreset
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
  disown
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

# A phone's screen, the renderer that draws with GL (in software here), fingers and keys through the compositor.
startCompositor() {
  export WAYLAND_DISPLAY="orivex-wayland" ORIVEX_HANDS="$XDG_RUNTIME_DIR/hands"
  export GDK_BACKEND=wayland
  startBus
  startPipeWire
  startDaemon mutter --headless --no-x11 --wayland-display="$WAYLAND_DISPLAY" --virtual-monitor "${ORIVEX_SCREEN:-360x720}"
  startServer hands "$root/script/hands" serve
}

startPipeWire() {
  makeCamera
  startDaemon pipewire
  # Without it the session manager ends at once, and nothing would ever link a camera to who wants its frames.
  waitForDevice pipewire pw-cli info 0
  startDaemon wireplumber
  mkdir -p -m 700 "$XDG_RUNTIME_DIR/pulse" # pactl makes it, too, and the server ends when that comes first
  startDaemon pipewire-pulse
}

startDaemon() {
  "$@" >"$headlessHome/$1.log" 2>&1 &
  disown
}

# PipeWire's own camera, which sees coloured bars. Sandboxed applications are shown what has the role.
makeCamera() {
  mkdir -p "$XDG_CONFIG_HOME/pipewire/pipewire.conf.d"
  cat >"$XDG_CONFIG_HOME/pipewire/pipewire.conf.d/camera.conf" <<'CONFIGURATION'
context.spa-libs = { videotestsrc = videotestsrc/libspa-videotestsrc }
context.objects = [
  { factory = spa-node-factory
    args = {
      factory.name = videotestsrc node.name = camera node.description = camera
      media.class = Video/Source media.role = Camera
    }
  }
]
CONFIGURATION
}

# A microphone that hears a steady 440 Hz tone, and a speaker that nobody hears.
startPipeWireSources() {
  local node
  waitForDevice "pipewire-pulse" pactl info
  loadModule module-null-sink sink_name=speaker
  loadModule module-null-sink sink_name=tone
  loadModule module-remap-source source_name=microphone master=tone.monitor
  waitForDevice pipewire-pulse pactl set-default-source microphone
  waitForDevice pipewire-pulse pactl set-default-sink speaker
  startSource sine audiotestsrc is-live=true freq=440 ! pulsesink device=tone
  for node in tone camera microphone; do waitForDevice "$node" hasNode "$node"; done
}

# The sound server takes orders before it can carry out each of them.
loadModule() { waitForDevice pipewire-pulse pactl load-module "$@"; }

hasNode() { pw-cli ls Node | grep -F "node.name = \"$1\""; }

# waitForDevice <name> <command...>: until the command succeeds.
waitForDevice() {
  local name=$1 tries
  shift
  for tries in {1..300}; do
    if "$@" >/dev/null 2>&1; then return 0; fi
    sleep 0.1
  done
  die "$name did not start: $(tail -n 3 "$headlessHome/$name.log")"
}

startSource() {
  gst-launch-1.0 "${@:2}" >"$headlessHome/$1.log" 2>&1 &
  disown
}

# A new home, and the folder by which the processes of this device are known.
makeHome() {
  headlessHome=$(mktemp -d "${TMPDIR:-/tmp}/orivex-headless.XXXXXX")
  export HOME="$headlessHome/home"
  export XDG_CONFIG_HOME="$HOME/.config" XDG_DATA_HOME="$HOME/.local/share" XDG_CACHE_HOME="$HOME/.cache"
  export XDG_STATE_HOME="$HOME/.local/state" XDG_RUNTIME_DIR="$headlessHome/run"
  mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME"
  mkdir -m 700 "$XDG_RUNTIME_DIR"
}

headlessBegin() {
  makeHome
  unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS PULSE_SERVER ORIVEX_HANDS GDK_BACKEND GDK_DEBUG GSK_RENDERER
  unset GTK_A11Y NO_AT_BRIDGE
  export LIBGL_ALWAYS_SOFTWARE=1 GSETTINGS_BACKEND=memory LC_ALL=C.UTF-8
  # The tests talk to servers of their own on this machine; a proxy must not come between.
  export no_proxy=localhost,127.0.0.1,::1 NO_PROXY=localhost,127.0.0.1,::1
  # Newer GTK shows the portal's file chooser wherever there is one; nobody here could choose in that process's window.
  if pkg-config --atleast-version=4.10 gtk4; then export GDK_DEBUG=no-portals; fi
  # Scanning every GStreamer plug-in takes seconds, and the home is new each time: keep the list with the build.
  mkdir -p "$root/build"
  export GST_REGISTRY="$root/build/gstreamer-registry.bin"

  if [ "${1-}" = wayland ]; then
    startCompositor
    startPipeWireSources
  else
    export GDK_BACKEND=x11 GSK_RENDERER=cairo GTK_A11Y=none NO_AT_BRIDGE=1
    startDisplay
    startBus
    startSound
  fi
}

# What runs on this device, also what its bus has started: all know the device by its folder.
processesOfDevice() { grep -lsaF "XDG_RUNTIME_DIR=$headlessHome/run" /proc/[0-9]*/environ | cut -d/ -f3; }

# A compositor may hang in its own end.
headlessEnd() {
  [ -n "$headlessHome" ] || return 0
  local signal tries pids
  for signal in TERM KILL; do
    for tries in {1..10}; do
      mapfile -t pids < <(processesOfDevice)
      [ "${#pids[@]}" -gt 0 ] || break 2
      if [ "$tries" -eq 1 ]; then kill "-$signal" "${pids[@]}" 2>/dev/null || true; fi
      sleep 0.1
    done
  done
  rm -rf "$headlessHome" || true
}
