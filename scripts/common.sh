# What the scripts share: the tree's root, a plain environment, how many jobs the machine takes.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
export LC_ALL=C.UTF-8 LANGUAGE=
export HOME="${HOME:-$(getent passwd "$(id -u)" | cut -d: -f6)}"
jobs=$(nproc)

# The sanitizers' shadow memory collides with the widest address randomisation that kernels offer.
plain_addresses=()
if setarch -R true 2>/dev/null; then plain_addresses=(setarch -R); fi

# build PRESET [-DNAME=VALUE]... [TARGET]...: configures and builds, quietly unless it fails.
build() {
  local preset=$1 log="build/$1/build.log" settings=()
  shift
  while [[ "${1:-}" = -D* ]]; do settings+=("$1"); shift; done
  mkdir -p "build/$preset"
  echo "== Building build/$preset ($log)"
  if ! { cmake --preset "$preset" "${settings[@]}" && "${plain_addresses[@]}" cmake --build "build/$preset" -j "$jobs" ${1:+--target "$@"}; } \
    </dev/null >"$log" 2>&1; then
    grep -E -A12 '(error|Error|FAILED)[: ]' "$log" | head -n 80 || tail -n 40 "$log"
    echo "== The build of build/$preset failed: see $log"
    return 1
  fi
}
