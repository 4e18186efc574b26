#!/bin/bash
# The example, twice, with a real engine: numbers are raised, stamped and built, and a tool that is not ours finds exactly
# them in the assemblies; the build project holds them; the second run finds the next ones.
# usage: example_build.sh FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER
set -euo pipefail
bin=$1 examples=$2 scratch=$3
for tool in xbuild mono monodis; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this machine"; exit 77; }
done
rm -rf "$scratch"
mkdir -p "$scratch"
cp -r "$examples/." "$scratch"
cd "$scratch"
host=("$bin/qxhost" --options "$scratch/options.xml")
"${host[@]}" options "DevEnv2005Location=$scratch" "Framework.v2.0=$bin/framework/v2.0" >/dev/null

version_of() { monodis --assembly "$1" | sed -n 's/^Version: *//p'; }
# expect WHAT WANTED FOUND
expect() {
  [ "$2" = "$3" ] && return
  echo "FAILED: $1: wanted $2, found $3"
  exit 1
}

for run in 1 2; do
  "${host[@]}" run Hello.build.xml >"run$run.log" 2>&1 || { cat "run$run.log"; echo "FAILED: run $run"; exit 1; }
  for built in Hello/Hello/bin/Release/Hello.exe Hello/Greeting/bin/Release/Greeting.dll; do
    expect "version of $built after run $run" "1.2.$run.0" "$(version_of "$built")"
  done
  expect "number kept by the build project after run $run" 1 \
    "$(grep -cF "<Property name=\"AssemblyVersion\">1|2|$run|0</Property>" Hello.build.xml)"
  expect "resource script after run $run" 1 "$(grep -acF "FILEVERSION 1,2,0,$run" Hello/Banner/Banner.rc)"
  grep -qF "Processing Entry : AssemblyVersion" "run$run.log" || { echo "FAILED: the log tells no stamping"; exit 1; }
done
mono Hello/Hello/bin/Release/Hello.exe >/dev/null
