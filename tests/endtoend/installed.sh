#!/bin/bash
# What cmake --install puts down works by itself: both actions are listed, the example builds with a real engine where there
# is one, and nothing is read from the build folder.
# usage: installed.sh BUILD-FOLDER FOLDER-OF-EXAMPLES SCRATCH-FOLDER [EMULATOR]
set -euo pipefail
build=$1 examples=$2 scratch=$3 emulator=${4:-}
ending=${emulator:+.exe}
rm -rf "$scratch"
mkdir -p "$scratch/work"
cmake --install "$build" --prefix "$scratch/there" --strip >/dev/null
cp -r "$examples/." "$scratch/work"
cd "$scratch/work"
unset LD_LIBRARY_PATH

host=($emulator "$scratch/there/bin/qxhost$ending" --options options.xml)
"${host[@]}" actions >actions.txt 2>&1 || { cat actions.txt; echo "FAILED: qxhost actions"; exit 1; }
for action in "Build VS.Net Solution" "Run MSTest"; do
  grep -qF "$action" actions.txt || { cat actions.txt; echo "FAILED: $action is not listed"; exit 1; }
done
$emulator "$scratch/there/bin/vsinspect$ending" solution Hello/Hello.sln >solution.txt 2>&1 ||
  { cat solution.txt; echo "FAILED: vsinspect"; exit 1; }
if readelf -d "$scratch/there/bin/qxhost" 2>/dev/null | grep -F "$build"; then
  echo "FAILED: the program looks into the build folder"
  exit 1
fi
[ -z "$emulator" ] || exit 0
for page in man/man1/qxhost.1 bash-completion/completions/qxhost zsh/site-functions/_qxhost; do
  [ -s "$scratch/there/share/$page" ] || { echo "FAILED: share/$page is not installed"; exit 1; }
done
for tool in xbuild ninja i686-w64-mingw32-g++; do
  command -v "$tool" >/dev/null || { echo "no $tool on this machine: the example was not built"; exit 0; }
done
"${host[@]}" run Hello.build.xml >run.log 2>&1 || { cat run.log; echo "FAILED: the example"; exit 1; }
for built in Hello/Hello/bin/Release/Hello.exe Hello/Release/Banner.exe Hello/Release/Frame.dll; do
  [ -s "$built" ] || { echo "FAILED: no $built"; exit 1; }
done
