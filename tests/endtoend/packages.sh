#!/bin/bash
# Each package does its work on a system that never saw the sources, and leaves nothing when it is removed: the files, and
# under Windows the registry too, are compared with what was there before.
# usage: packages.sh debian|windows FOLDER-OF-PACKAGES SCRATCH-FOLDER
set -euo pipefail
tests=$(cd "$(dirname "$0")/.." && pwd)
root=$(dirname "$tests")
system=$1 packages=$(realpath "$2")
mkdir -p "$3"
scratch=$(realpath "$3")
fail() { echo "FAILED: $1"; exit 1; }

# window_appears NAME: waits for a visible window of the program of that name, on the screen that is there.
window_appears() {
  local tries
  for tries in {1..60}; do
    ! xdotool search --onlyvisible --classname "$1" >/dev/null 2>&1 || return 0
    sleep 0.5
  done
  return 1
}

case "$system" in
  debian | windows) . "$tests/endtoend/packages_$system.sh" "${4:-}" ;;
  *) sed -n '4s/^# //p' "$0" >&2; exit 2 ;;
esac
