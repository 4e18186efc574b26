#!/bin/bash
# The example, a C# program with its library and a C++ program with its library, checked and run by the host with the real
# engine, and spoiled in each way in which a build can go wrong without its engine saying so: the check before, or the
# summary behind the run, names it with the right exit code and one line that says what to do.
# usage: spoiled_builds.sh FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER
set -euo pipefail
bin=$1 examples=$2 scratch=$3
for tool in mcs xbuild ninja i686-w64-mingw32-g++ i686-w64-mingw32-windres python3; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this machine"; exit 77; }
done
[ -x "$bin/engine/devenv.com" ] || { echo "SKIPPED: the engine is not built for this system"; exit 77; }
rm -rf "$scratch"
mkdir -p "$scratch"
cp -r "$examples/." "$scratch"
cd "$scratch"
host=("$bin/qxhost" --options options.xml)
# The engine, and then whatever "spoil" does; with "idle" there it builds nothing and succeeds.
mkdir spoiling
cat >spoiling/devenv.com <<ENGINE
#!/bin/bash
[ ! -e "$PWD/idle" ] || exit 0
"$bin/engine/devenv.com" "\$@" || exit \$?
. "$PWD/spoil"
ENGINE
chmod +x spoiling/devenv.com
: >spoil
"${host[@]}" options "DevEnv2005Location=$PWD/spoiling" >/dev/null
"${host[@]}" set Hello.build.xml UseMSBuild=False >/dev/null
cp Hello.build.xml whole.xml

fail() { echo "FAILED: $what: $1"; cat said.txt; exit 1; }
# qxhost COMMAND CODE LINE...: the host's command ends with that code and says each line, in these words.
qxhost() {
  local command=$1 wanted=$2 code=0
  shift 2
  "${host[@]}" $command Hello.build.xml >said.txt 2>&1 || code=$?
  [ "$code" = "$wanted" ] || fail "$command ended with $code, wanted $wanted"
  for line; do grep -qE -- "$line" said.txt || fail "$command does not say: $line"; done
}
# state_of PROJECT: whether the run succeeded and the project's state, from the closing object of the run's log.
state_of() {
  python3 - "$1" <<'PY'
import json, sys
summary = json.loads(open("log.jsonl").read().splitlines()[-1])
assert summary["kind"] == "summary", summary
print(summary["success"], *[p["status"] for p in summary["projects"] if p["name"] == sys.argv[1]])
PY
}
# expect_state PROJECT WORDS: another run says that.
expect_state() {
  local code=0
  "${host[@]}" run Hello.build.xml --log json >log.jsonl 2>said.txt || code=$?
  [ "$(state_of "$1")" = "$2" ] || fail "the summary says of $1: $(state_of "$1"), wanted $2 (exit code $code)"
}
greeting=Hello/Greeting/bin/Release/Greeting.dll program=Hello/Hello/bin/Release/Hello.exe banner=Hello/Release/Banner.exe

what="a good build"
qxhost check 0
qxhost run 0 '^AssemblyVersion: 1\.2\.0\.0 -> 1\.2\.1\.0' '^4 of 4 projects'
cp -a "$greeting" older.dll
expect_state Greeting 'True ok'
for name in Greeting Hello Banner; do [ "$(state_of $name)" = 'True ok' ] || fail "$name is $(state_of $name)"; done

what="an output that is deleted"
echo "rm '$PWD/$program'" >spoil
qxhost run 1 'Hello: missing: .*build' 'The run failed: not every program is as it should be'
expect_state Hello 'False missing'

what="an output that is old"
echo "touch -d '2 hours ago' '$PWD/$banner'" >spoil
qxhost run 1 'Banner: stale: .*not built anew'
expect_state Banner 'False stale'

what="an output of another version"
echo "cp '$PWD/older.dll' '$PWD/$greeting'" >spoil
qxhost run 1 'Greeting: differs: .*1\.2\.1\.0'
expect_state Greeting 'False differs'

what="an engine that does nothing and succeeds"
: >spoil
touch idle
sleep 0.05  # so that the clock moves on between the build before and this stamping
qxhost run 1 'Hello: stale' 'Banner: stale'
rm idle

what="a project that is not in the configuration"
"${host[@]}" set Hello.build.xml 'SolutionConFiguration=Release|Any CPU' >/dev/null
qxhost check 0 'Banner is not: '
qxhost run 0 '^2 of '
cp whole.xml Hello.build.xml

what="a wrong name of a configuration"
"${host[@]}" set Hello.build.xml 'SolutionConFiguration=Relese|Mixed Platforms' >/dev/null
qxhost check 3 'error: SolutionConFiguration: .*no configuration "Relese\|Mixed Platforms" \(nearest: Release\|Mixed Platforms\)'
cp whole.xml Hello.build.xml

what="a version part that is too large"
"${host[@]}" set Hello.build.xml 'AssemblyVersion=1|2|70000|0' >/dev/null
qxhost check 3 'error: AssemblyVersion: .*7000[01]'
cp whole.xml Hello.build.xml

what="a read-only file of versions"
chmod a-w Hello/Greeting/Properties/AssemblyInfo.cs  # which the superuser is held to as well
qxhost check 3 'error: AssemblyInfo.cs: .*the file is read-only \(.*be writable'
qxhost run 1 'AssemblyInfo.cs: the file is read-only'
