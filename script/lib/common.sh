# Shared by the scripts: where things lie, and how to say what is being done. Source it; it does nothing by itself.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# Each output line of our own starts with "==>", so that it stands out from what the tools print.
say() { printf '==> %s\n' "$*"; }
warn() { printf '==> %s\n' "$*" >&2; }
die() {
  warn "$*"
  exit 1
}

# Warnings are errors where ORIVEX_STRICT is ON, as it is in script/check and .ci/run: newer compilers and libraries warn
# of more, and that is no reason to have no build.
configurePreset() {
  say "Configuring preset $1"
  (cd "$root" && cmake --preset "$1" -D CMAKE_COMPILE_WARNING_AS_ERROR="${ORIVEX_STRICT:-OFF}")
}

# Configures and builds a preset; further arguments go to the build.
buildPreset() {
  configurePreset "$1"
  say "Building preset $1"
  (cd "$root" && cmake --build --preset "$1" --parallel "$(nproc)" "${@:2}")
}
