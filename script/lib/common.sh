# Shared by the scripts: where things lie, and how to say what is being done. Source it; it does nothing by itself.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# Each output line of our own starts with "==>", so that it stands out from what the tools print.
say() { printf '==> %s\n' "$*"; }
warn() { printf '==> %s\n' "$*" >&2; }
die() {
  warn "$*"
  exit 1
}

# Configures and builds a preset; further arguments go to the configure step.
buildPreset() {
  local preset=$1
  shift
  say "Building preset $preset"
  (cd "$root" && cmake --preset "$preset" "$@" && cmake --build --preset "$preset" --parallel "$(nproc)")
}
