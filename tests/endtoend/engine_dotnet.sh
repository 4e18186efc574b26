#!/bin/bash
# Builds C# solutions of 2003 and 2005 with the programs that stand in for the old products, and runs what came out.
# usage: engine_dotnet.sh BIN SOURCE WORK    BIN: the folder of programs; SOURCE: the tree; WORK: a folder to be made anew
set -euo pipefail
export LC_ALL=C.UTF-8
bin=$1 source=$2 work=$3
for tool in mcs xbuild mono; do
  command -v "$tool" >/dev/null || { echo "$tool is not on the PATH: scripts/setup installs it"; exit 77; }
done
rm -rf "$work"
mkdir -p "$work"
cp -r "$source/engine/dotnet/testdata/Shop2003" "$source/engine/dotnet/testdata/Shop2005" "$work"
cd "$work"

fail() { echo "FAILED: $*" >&2; cat log >&2; exit 1; }
expect() { [ "$2" = "$3" ] || fail "$1: wanted \"$2\", got \"$3\""; }

# 2003: in the order of its references, run from another folder than its own.
"$bin/engine/devenv.com" /build Release Shop2003/Shop.sln >log || fail "Shop2003 did not build"
expect "the last line" "    Build: 2 succeeded, 0 failed, 0 skipped" "$(tail -n 1 log)"
mono Shop2003/Program/bin/Release/Shop.exe >said || fail "the program failed"
expect "the program" "release|Hello, Guten Tag|a note|6" "$(sed -n 1,4p said | paste -sd'|')"
"$bin/engine/devenv.com" /build Release Shop2003/Shop.sln >log || fail "Shop2003 did not build again"
expect "a build with nothing to do" 2 "$(grep -c '^The project is up-to-date\.$' log)"
expect "its last line" "    Build: 2 succeeded, 0 failed, 0 skipped" "$(tail -n 1 log)"

# One project fails, the one that needs it is not built, and the exit code tells.
sed -i 's/int sum = 0;/int sum = nothing;/' Shop2003/Library/Prices.cs
"$bin/engine/devenv.com" /rebuild Debug Shop2003/Shop.sln >log && fail "a broken solution was built"
expect "the last line" "    Rebuild All: 0 succeeded, 2 failed, 0 skipped" "$(tail -n 1 log)"
grep -q 'Prices\.cs([0-9]*,[0-9]*): error CS0103: ' log || fail "the error is not named"

# 2005: the output path of the command line is a folder of this system.
"$bin/engine/MSBuild.exe" Shop2005/Shop.sln /t:Build '/p:Configuration=Release;Platform=Any CPU;OutputPath=bin\Release' >log ||
  fail "Shop2005 did not build"
expect "the program" "two" "$(mono Shop2005/Program/bin/Release/Shop.exe)"
expect "names with a backslash" "" "$(find . -name '*\\*')"
expect "files left behind" "" "$(find . -name '.engine*')"
"$bin/engine/devenv.com" /clean "Release|Any CPU" Shop2005/Shop.sln >log || fail "Shop2005 was not cleaned"
expect "programs behind a clean" "" "$(find Shop2005 -name 'Shop.exe' -path '*bin*')"
