#!/bin/bash
# A build that is stopped in its middle: the whole tree of processes ends within two seconds, and the next build makes what an
# undisturbed one makes, for no half-written object is taken for done.
# usage: engine_stop.sh FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER
set -euo pipefail
bin=$1 examples=$2 scratch=$3
for tool in ninja i686-w64-mingw32-g++; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this machine"; exit 77; }
done
rm -rf "$scratch"
mkdir -p "$scratch"
cp -r "$examples/." "$scratch"
cd "$scratch"

fail() {
  echo "FAILED: $1"
  exit 1
}
# Many sources that take their time, in the project of the example's library.
files=
for number in {1..12}; do
  printf '#include <windows.h>\r\n#include <map>\r\n#include <string>\r\nint Fits%d(const char* text) { std::map<std::string, int> all; return all[text] + %d; }\r\n' \
    "$number" "$number" >"Tally/Words/Part$number.cpp"
  files+="<File RelativePath=\"Part$number.cpp\"></File>"
done
sed -i "s|</Files>|$files</Files>|" Tally/Words/Words.vcproj

export QX_STOP_MARK="stop-test-$$"
# The processes that bear the mark, which everything that is started from here inherits; this shell's own do not count.
marked() {
  local file name
  for file in $(grep -lzx "QX_STOP_MARK=$QX_STOP_MARK" /proc/[0-9]*/environ 2>/dev/null); do
    file=${file%/environ}
    read -r name 2>/dev/null <"$file/comm" || continue
    case "$name" in bash | grep | sleep) ;; *) echo "${file#/proc/}" ;; esac
  done
}
objects() { find Tally/Words/Release -name '*.obj' -exec md5sum {} + | sort -k2; }
# stop_in_the_middle SIGNAL COMMAND...: once two objects are there (not INT: a shell's background processes ignore it)
stop_in_the_middle() {
  local running begin took
  rm -rf Tally/Words/Release Tally/bin
  "${@:2}" >stopped.log 2>&1 &
  running=$!
  for _ in {1..600}; do
    [ "$(find Tally/Words/Release -name '*.obj' 2>/dev/null | wc -l)" -lt 2 ] || break
    kill -0 "$running" 2>/dev/null || { cat stopped.log; fail "it ended by itself"; }
    sleep 0.05
  done
  begin=$(date +%s%N)
  kill -"$1" "$running"
  wait "$running" && fail "a stopped build says that it succeeded"
  while [ -n "$(marked)" ]; do
    [ $((($(date +%s%N) - begin) / 1000000)) -lt 2000 ] || { ps -fp "$(marked | paste -sd,)"; fail "processes live on two seconds after SIG$1"; }
    sleep 0.02
  done
  took=$((($(date +%s%N) - begin) / 1000000))
  [ "$(find Tally/Words/Release -name '*.obj' | wc -l)" -lt 13 ] || fail "it was stopped too late to tell anything"
  echo "SIG$1 to $(basename "$2"): everything ended within $took ms"
}

devenv=("$bin/engine/devenv.com" /build Release Tally/Tally.sln /project Words)
"${devenv[@]}" >undisturbed.log 2>&1 || { cat undisturbed.log; fail "the build"; }
objects >undisturbed
[ "$(wc -l <undisturbed)" = 13 ] || fail "$(wc -l <undisturbed) objects instead of 13"
"$bin/qxhost" --options options.xml new stop.xml >/dev/null
"$bin/qxhost" --options options.xml add stop.xml "Build VS.Net Solution" 'Solution=Tally\Tally.sln' SolutionConFiguration=Release \
  VStudioVersion=vs2003 >/dev/null
for signal in TERM HUP; do
  stop_in_the_middle "$signal" "${devenv[@]}"
  "${devenv[@]}" >next.log 2>&1 || { cat next.log; fail "the build after SIG$signal"; }
  objects | diff undisturbed - || fail "the build after SIG$signal made other objects"
done
stop_in_the_middle TERM "$bin/qxhost" --options options.xml run stop.xml
"$bin/qxhost" --options options.xml run stop.xml >next.log 2>&1 || { cat next.log; fail "the run after a stopped run"; }
objects | diff undisturbed - || fail "the run after a stopped run made other objects"
