#!/bin/bash
# The examples, twice, with real compilers and no folder set: numbers are raised, stamped and built, and exactly they are
# read back from the programs; the build projects hold them; the second run finds the next ones.
# usage: example_build.sh FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER
set -euo pipefail
bin=$1 examples=$2 scratch=$3
for tool in xbuild mcs mono monodis ninja i686-w64-mingw32-g++; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this machine"; exit 77; }
done
rm -rf "$scratch"
mkdir -p "$scratch"
cp -r "$examples/." "$scratch"
cd "$scratch"
host=("$bin/qxhost" --options "$scratch/options.xml")

fail() {
  echo "FAILED: $1"
  exit 1
}
# expect WHAT WANTED FOUND
expect() { [ "$2" = "$3" ] || fail "$1: wanted $2, found $3"; }
assembly_version_of() { monodis --assembly "$1" | sed -n 's/^Version: *//p'; }
file_version_of() { "$bin/vsinspect" binary "$1" --json | sed -nE 's/.*"fileVersion": ?"([^"]*)".*/\1/p' | head -n 1; }
# run_example NAME RUN
run_example() { "${host[@]}" run "$1.build.xml" >"$1$2.log" 2>&1 || { cat "$1$2.log"; fail "run $2 of $1"; }; }

for run in 1 2; do
  run_example Hello "$run"
  for built in Hello/Hello/bin/Release/Hello.exe Hello/Greeting/bin/Release/Greeting.dll; do
    expect "version of $built after run $run" "1.2.$run.0" "$(assembly_version_of "$built")"
  done
  for built in Hello/Release/Banner.exe Hello/Release/Frame.dll; do
    expect "version of $built after run $run" "1.2.0.$run" "$(file_version_of "$built")"
  done
  expect "number kept by the build project after run $run" 1 \
    "$(grep -cF "<Property name=\"AssemblyVersion\">1|2|$run|0</Property>" Hello.build.xml)"
  expect "resource script after run $run" 1 "$(grep -acF "FILEVERSION 1,2,0,$run" Hello/Banner/Banner.rc)"
  grep -qF "Processing Entry : AssemblyVersion" "Hello$run.log" || fail "the log tells no stamping"
  grep -qF "========== Build: 4 succeeded, 0 failed, 0 skipped ==========" "Hello$run.log" || fail "not all of Hello was built"

  run_example Tally "$run"
  expect "version of Tally.exe after run $run" "2.0.$run.0" "$(assembly_version_of Tally/bin/Release/Tally.exe)"
  expect "version of Count.exe after run $run" "2.0.0.$run" "$(file_version_of Tally/bin/Release/Count.exe)"
  grep -qF "    Build: 3 succeeded, 0 failed, 0 skipped" "Tally$run.log" || fail "not all of Tally was built"
done
mono Hello/Hello/bin/Release/Hello.exe >/dev/null
expect "what Tally.exe says" "3 words" "$(mono Tally/bin/Release/Tally.exe)"

# The configuration that most people use: a folder "bin", not one named "bin\Release", and a program that starts.
rm -rf Hello/*/bin Hello/*/obj
"${host[@]}" set Hello.build.xml 'SolutionConFiguration=Release|Any CPU' >/dev/null
run_example Hello 3
mono Hello/Hello/bin/Release/Hello.exe >/dev/null
odd=$(find . -name '*\\*' -not -path '*.objects/*')  # but for the map of headers, whose names are as they are asked for
[ -z "$odd" ] || fail "names with a backslash: $odd"
command -v wine >/dev/null && [ -e /usr/lib/wine/wine ] || { echo "no wine for 32 bits on this machine: the native programs were not started"; exit 0; }
expect "what Count.exe says" "1 words" "$(cd Tally/bin/Release && WINEDEBUG=-all wine Count.exe 2>/dev/null | tr -d '\r')"
