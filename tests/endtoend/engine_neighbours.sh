#!/bin/bash
# Projects that are built at the same time: no more compilers run than Engine.Jobs says, whatever their number; a library that
# another project links without saying in the solution whose it is, is waited for, cold and after a change; what they print
# comes whole and in the order of the solution; a stop ends all of them.
# usage: engine_neighbours.sh FOLDER-OF-PROGRAMS SCRATCH-FOLDER
set -euo pipefail
bin=$1 scratch=$2
for tool in ninja i686-w64-mingw32-g++; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this machine"; exit 77; }
done
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"

fail() {
  echo "FAILED: $1"
  exit 1
}
expect() { [ "$2" = "$3" ] || fail "$1: wanted \"$2\", got \"$3\""; }

kind='{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}'
guid() { printf '{%08X-0000-4000-8000-000000000000}' "$1"; }
# project NUMBER NAME TYPE LIBRARIES SOURCE...
project() {
  local files= source
  for source in "${@:5}"; do files+="<File RelativePath=\"$source\"/>"; done
  cat >"$2/$2.vcproj" <<END
<?xml version="1.0" encoding="UTF-8"?>
<VisualStudioProject ProjectType="Visual C++" Version="8.00" Name="$2" ProjectGUID="$(guid "$1")">
<Platforms><Platform Name="Win32"/></Platforms><Configurations><Configuration Name="Release|Win32" OutputDirectory="..\\out"
IntermediateDirectory="Release" ConfigurationType="$3"><Tool Name="VCLinkerTool" AdditionalDependencies="$4"
AdditionalLibraryDirectories="..\\Out"/></Configuration></Configurations><Files>$files</Files></VisualStudioProject>
END
}

# Four projects of four sources that hold their turn for a while; the last one links the first one's library.
mkdir Words One Two Use
for name in Words One Two; do
  for number in 1 2 3 4; do echo "int ${name}$number(void) { return $number; }" >"$name/Part$number.c"; done
done
echo 'int Words1(void); int main(void) { return Words1() - 1; }' >Use/Use.c
project 1 Words 4 "" Part{1,2,3,4}.c
project 2 One 4 "" Part{1,2,3,4}.c
project 3 Two 4 "" Part{1,2,3,4}.c
project 4 Use 1 "words.LIB" Use.c
{
  printf 'Microsoft Visual Studio Solution File, Format Version 9.00\r\n'
  number=0
  for name in Words One Two Use; do
    printf 'Project("%s") = "%s", "%s\\%s.vcproj", "%s"\r\nEndProject\r\n' "$kind" "$name" "$name" "$name" "$(guid $((++number)))"
  done
  printf 'Global\r\n\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n\t\tRelease|Win32 = Release|Win32\r\n\tEndGlobalSection\r\n'
  printf '\tGlobalSection(ProjectConfigurationPlatforms) = postSolution\r\n'
  for number in 1 2 3 4; do
    printf '\t\t%s.Release|Win32.%s = Release|Win32\r\n' "$(guid $number)" ActiveCfg "$(guid $number)" Build.0
  done
  printf '\tEndGlobalSection\r\nEndGlobal\r\n'
} >All.sln

# Stands before the compiler, and notes how many of it there are.
cat >count <<'END'
#!/bin/bash
running=$(dirname "$0")/running
touch "$running/$$"
ls "$running" | wc -l >>"$running.seen"
sleep 0.15
"$@"
code=$?
rm "$running/$$"
exit $code
END
chmod +x count
mkdir running
build() { # LOG [NAME=VALUE]...
  env "${@:2}" "$bin/engine/devenv.com" /build "Release|Win32" All.sln >"$1" 2>&1 || { cat "$1"; fail "the build of $1"; }
}
most() { sort -n running.seen | tail -n 1; }
titles() { sed -nE 's/^------ Build started: Project: (\w+),.*/\1/p' "$1" | paste -sd' '; }

for jobs in 1 3; do
  rm -rf out ./*/Release running.seen
  build "cold-$jobs.log" QX_ENGINE_LAUNCHER="$scratch/count" QX_ENGINE_JOBS=$jobs
  expect "compilers at a time with Engine.Jobs=$jobs" $jobs "$(most)"
  expect "the order" "Words One Two Use" "$(titles "cold-$jobs.log")"
  expect "the last line" "========== Build: 4 succeeded, 0 failed, 0 skipped ==========" "$(tail -n 1 "cold-$jobs.log")"
done
# Each project's lines stand behind its title.
sed -E 's/^------ .*Project: (\w+),.*/\1:/' cold-3.log | grep -E '^(\w+:|\w+\.c)$' | paste -sd' ' | sed 's/ \(\w*:\)/\n\1/g' >parts
sed 's/:.*//' parts | paste -sd' ' | grep -qx 'Words One Two Use' || { cat parts; fail "the titles"; }
expect "sources of Words" 4 "$(sed -n 's/^Words://p' parts | wc -w)"
expect "sources of Use" "Use.c" "$(sed -n 's/^Use: //p' parts)"

build plain.log  # without the launcher all is made anew
build again.log
expect "projects with nothing to do" "" "$(grep -E '^\w+\.c$' again.log || true)"
echo 'int Words1(void) { return 1 + 0; } int more;' >Words/Part1.c
program=$(stat -c %Y.%y out/Use.exe)
build changed.log
expect "what was compiled" "Part1.c" "$(grep -E '^\w+\.c$' changed.log | paste -sd' ')"
[ "$program" != "$(stat -c %Y.%y out/Use.exe)" ] || fail "the program was not linked with the new library"

# A stop reaches all of them, and the next build is whole.
export QX_STOP_MARK="neighbours-$$"
marked() {
  local file name
  for file in $(grep -lzx "QX_STOP_MARK=$QX_STOP_MARK" /proc/[0-9]*/environ 2>/dev/null); do
    file=${file%/environ}
    read -r name 2>/dev/null <"$file/comm" || continue
    [ "${file#/proc/}" = $$ ] || [[ "$name" = grep ]] || echo "${file#/proc/}"
  done
}
rm -rf out ./*/Release
rm -f running/*
QX_ENGINE_LAUNCHER="$scratch/count" QX_ENGINE_JOBS=6 "$bin/engine/devenv.com" /build "Release|Win32" All.sln >stopped.log 2>&1 &
running=$!
for _ in {1..400}; do
  [ "$(find . -name build.ninja | wc -l)" -lt 3 ] || [ "$(find running -type f | wc -l)" -lt 3 ] || break
  kill -0 "$running" 2>/dev/null || { cat stopped.log; fail "it ended by itself"; }
  sleep 0.01
done
ninjas=$(for each in $(marked); do cat "/proc/$each/comm" 2>/dev/null; done | grep -c '^ninja$' || true)
[ "$ninjas" -ge 2 ] || fail "$ninjas projects were built at the same time"
begin=$(date +%s%N)
kill -TERM "$running"
wait "$running" && fail "a stopped build says that it succeeded"
while [ -n "$(marked)" ]; do
  [ $((($(date +%s%N) - begin) / 1000000)) -lt 2000 ] || fail "processes live on two seconds after SIGTERM"
  sleep 0.02
done
grep -qx 'The build was stopped\.' stopped.log || { cat stopped.log; fail "it does not say that it was stopped"; }
build next.log
expect "the last line after a stop" "========== Build: 4 succeeded, 0 failed, 0 skipped ==========" "$(tail -n 1 next.log)"
echo "stopped with $ninjas projects at work"
