#!/bin/bash
# The example, stamped and built by the real engine: vsinspect built finds every program as its sources say. Then each way
# in which a green build can be wrong is made by hand, and found.
# usage: what_was_built.sh FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER
set -euo pipefail
bin=$1 examples=$2 scratch=$3
for tool in mcs xbuild ninja i686-w64-mingw32-g++ i686-w64-mingw32-windres; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this machine"; exit 77; }
done
[ -x "$bin/engine/devenv.com" ] || { echo "SKIPPED: the engine is not built for this system"; exit 77; }
rm -rf "$scratch"
mkdir -p "$scratch"
cp -r "$examples/." "$scratch"
cd "$scratch"
host=("$bin/qxhost" --options options.xml)
"${host[@]}" options "DevEnv2005Location=$bin/engine" >/dev/null
"${host[@]}" set Hello.build.xml UseMSBuild=False >/dev/null
configuration='Release|Mixed Platforms'

fail() { echo "FAILED: $1"; cat built.txt; exit 1; }
# look CODE: asks what was built; that must be the exit code
look() {
  local code=0
  "$bin/vsinspect" built Hello/Hello.sln --configuration "$configuration" >built.txt 2>&1 || code=$?
  [ "$code" = "$1" ] || fail "$what: exit code $code, wanted $1"
}
# expect STATE PROJECT...: the projects are in that state, and one of them says why where it is a fault
expect() {
  local state=$1 project
  shift
  for project; do grep -qE "^$state +$project(:|\$)" built.txt || fail "$what: $project is not $state"; done
}
says() { grep -qF -- "$1" built.txt || fail "$what: nothing says: $1"; }
run() { "${host[@]}" run Hello.build.xml >run.log 2>&1 || { cat run.log; echo "FAILED: $what: the run"; exit 1; }; }
build() {
  "$bin/engine/devenv.com" /build "$configuration" Hello/Hello.sln >build.log 2>&1 || { cat build.log; echo "FAILED: $what: the build"; exit 1; }
}
greeting=Hello/Greeting/bin/Release/Greeting.dll program=Hello/Hello/bin/Release/Hello.exe banner=Hello/Release/Banner.exe

what="a good build"
run
look 0
expect ok Greeting Hello Banner
says 'assembly version 1.2.1.0'
says 'file version 1.2.0.1'
mkdir good
cp -a "$greeting" "$program" "$banner" good

what="an output that is deleted"
rm "$program"
look 1
expect missing Hello
expect ok Greeting Banner
says 'build the project'
cp -a good/Hello.exe "$program"

what="an output that is old"
touch -d '2 hours ago' "$greeting" "$banner"
look 1
expect stale Greeting Banner
says 'it was not built anew'
cp -a good/Greeting.dll "$greeting"
cp -a good/Banner.exe "$banner"

what="an output of another version"
sed -i 's/AssemblyVersion("1.2.1.0")/AssemblyVersion("1.2.9.0")/' Hello/Greeting/Properties/AssemblyInfo.cs
sed -i 's/FILEVERSION 1,2,0,1/FILEVERSION 1,2,0,9/' Hello/Banner/Banner.rc
touch "$greeting" "$banner"
look 1
expect differs Greeting Banner
expect ok Hello
says 'its assembly version is 1.2.1.0'
says 'its file version is 1.2.0.1'

what="an output that is cut off"
head -c 3000 good/Hello.exe >"$program"
look 1
expect differs Hello
says 'it is cut off'

what="a project that the configuration leaves out"
rm -f "$banner"
configuration='Release|Any CPU'
rm -f "$program" "$greeting"
build
look 0
expect skipped Banner
expect ok Greeting Hello
configuration='Release|Mixed Platforms'

what="a configuration that is not there"
code=0
"$bin/vsinspect" built Hello/Hello.sln --configuration 'Relese|Win32' >built.txt 2>&1 || code=$?
[ "$code" = 2 ] || fail "$what: exit code $code"
says 'has no configuration "Relese|Win32": it has Debug|Any CPU'
says '(nearest: Release|Win32)'

what="a version part that is too large"
sed -i 's/FILEVERSION 1,2,0,9/FILEVERSION 1,2,0,70000/' Hello/Banner/Banner.rc
build
look 1
expect differs Banner
says 'says 1.2.0.70000'

what="a project that the engine was asked to skip"
cp Hello/Banner/Banner.cpp good
echo '#include <afxwin.h>' >>Hello/Banner/Banner.cpp
code=0
"${host[@]}" run Hello.build.xml >run.log 2>&1 || code=$?
[ "$code" = 1 ] || { cat run.log; echo "FAILED: $what: without the setting the run ended with $code, wanted 1"; exit 1; }
rm -f "$banner"
"${host[@]}" options Engine.Skip=mfc >/dev/null
run
grep -qF 'warning QXE0002: Banner: it needs MFC' run.log || { cat run.log; echo "FAILED: $what: the run is silent"; exit 1; }
if grep -q '^Banner: ' run.log; then cat run.log; echo "FAILED: $what: it is looked for"; exit 1; fi
"${host[@]}" options Engine.Skip= >/dev/null
cp good/Banner.cpp Hello/Banner

what="an engine that does nothing and succeeds"
run
look 0
mkdir idle
printf '#!/bin/sh\nexit 0\n' >idle/devenv.com
chmod +x idle/devenv.com
"${host[@]}" options "DevEnv2005Location=$scratch/idle" >/dev/null
sleep 0.05  # so that the clock moves on between the build before and this stamping
code=0
"${host[@]}" run Hello.build.xml >run.log 2>&1 || code=$?
[ "$code" = 1 ] || { cat run.log; echo "FAILED: $what: the run ended with $code, wanted 1"; exit 1; }
grep -qx 'The run failed: not every program is as it should be' run.log || { cat run.log; echo "FAILED: $what: the run is silent"; exit 1; }
look 1
expect stale Greeting Hello Banner

what="a read-only file of versions"
chmod a-w Hello/Greeting/Properties/AssemblyInfo.cs
look 1
expect stale Greeting
chmod u+w Hello/Greeting/Properties/AssemblyInfo.cs
