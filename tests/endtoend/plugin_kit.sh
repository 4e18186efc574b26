#!/bin/bash
# A package outside this tree is built against an installation, by CMake and by pkg-config, loaded by the installed host, and
# its action runs. The installation is moved first: nothing may know where it was made.
# usage: plugin_kit.sh BUILD-FOLDER FOLDER-OF-THE-PACKAGE SCRATCH-FOLDER COMPILER TOOLCHAIN-FILE|"" [EMULATOR]
set -euo pipefail
build=$1 package=$2 scratch=$3 compiler=$4 toolchain=$5 emulator=${6:-}
program=${emulator:+.exe} library=${emulator:+.dll}
there=$scratch/there
rm -rf "$scratch"
mkdir -p "$scratch/work"
fail() { echo "FAILED: $1"; [ ! -e "$scratch/out" ] || cat "$scratch/out"; exit 1; }

cmake --install "$build" --prefix "$scratch/first" --strip >/dev/null
mv "$scratch/first" "$there"
cp -r "$package" "$scratch/package"
tools=(-DCMAKE_CXX_COMPILER="$compiler")
[ -z "$toolchain" ] || tools=(-DCMAKE_TOOLCHAIN_FILE="$toolchain")
{ cmake -G Ninja -S "$scratch/package" -B "$scratch/build" "${tools[@]}" -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" -DCMAKE_PREFIX_PATH="$there" &&
  cmake --build "$scratch/build"; } >"$scratch/out" 2>&1 || fail "the package cannot be built"
made=build/greeting${library:-.so}
[ -e "$scratch/$made" ] || fail "no $made"

# run PACKAGE-FILE: everything a user does with it; the file relative to the scratch folder, as each system can read it.
run() {
  local host=($emulator "$there/bin/qxhost$program" --options options.xml --package "../$1")
  (
    cd "$scratch/work"
    rm -f ./*
    unset LD_LIBRARY_PATH
    "${host[@]}" actions && "${host[@]}" new build.xml &&
      "${host[@]}" add build.xml Greet Whom='%NAME%' Times=2 && "${host[@]}" run build.xml --set NAME=reader
  ) </dev/null >"$scratch/out" 2>&1 || fail "the action does not run"
  [ "$(grep -c 'Hello, reader' "$scratch/out")" = 2 ] || fail "no greeting"
}
run "$made"

if command -v pkg-config >/dev/null; then
  PKG_CONFIG_PATH=$(dirname "$(find "$there" -name qxhost.pc)")
  export PKG_CONFIG_PATH
  made=byhand${library:-.so}
  "$compiler" -shared -fPIC "$scratch"/package/*.cpp -o "$scratch/$made" $(pkg-config --cflags --libs qxhost) >"$scratch/out" 2>&1 ||
    fail "the package cannot be built by pkg-config"
  run "$made"
else
  echo "no pkg-config on this machine: the package was built by CMake only"
fi
grep -rlF -e "$build" -e "$scratch/first" "$there/include" "$there"/lib*/cmake "$there"/lib*/pkgconfig &&
  fail "the kit knows where it was made"
echo "The package was built and its action ran."
