#!/bin/bash
# What stands before the compilers: with two distccd on this machine the objects are those of a build without, both take part,
# and one that is killed in the middle loses nothing; with ccache a second cold build is served from it.
# usage: engine_launchers.sh FOLDER-OF-PROGRAMS SCRATCH-FOLDER
set -euo pipefail
bin=$1 scratch=$2
for tool in distcc distccd ccache ninja i686-w64-mingw32-g++; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this machine"; exit 77; }
done
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"
daemons=()
# A daemon leads a group with its children, which serve on when it alone is killed.
trap 'for daemon in "${daemons[@]}"; do kill -9 -- "-$daemon" 2>/dev/null || true; done' EXIT

fail() {
  echo "FAILED: $1"
  exit 1
}

# A library of 12 sources, whose headers are asked for in other letter case and with backslashes.
mkdir -p App/Include
files=
for number in {1..12}; do
  printf 'int Value%d();\r\n' "$number" >"App/Include/Part$number.h"
  printf '#include <windows.h>\r\n#include <vector>\r\n#include "include\\part%d.H"\r\n\r\nint Value%d()\r\n{\r\n  std::vector<int> values(%d, 1);\r\n  return (int)values.size() + (int)(GetTickCount() * 0);\r\n}\r\n' \
    "$number" "$number" "$number" >"App/Part$number.cpp"
  files+="<File RelativePath=\"Part$number.cpp\"/>"
done
cat >App/App.vcproj <<END
<?xml version="1.0" encoding="Windows-1252"?>
<VisualStudioProject ProjectType="Visual C++" Version="7.10" Name="App" ProjectGUID="{0D4F5B21-6C1E-4A97-BF2C-8E1D3A5B7C90}">
<Platforms><Platform Name="Win32"/></Platforms><Configurations><Configuration Name="Release|Win32" OutputDirectory="Release"
IntermediateDirectory="Release" ConfigurationType="4"><Tool Name="VCCLCompilerTool" Optimization="2"/></Configuration></Configurations>
<Files>$files</Files></VisualStudioProject>
END
# build LOG [NAME=VALUE]...: a cold build
build() {
  rm -rf App/Release
  env "${@:2}" "$bin/engine/devenv.com" /build "Release|Win32" App/App.vcproj >"$1" 2>&1 || { cat "$1"; fail "the build of $1"; }
}
# Without the name of the file that was compiled, which a distccd makes up.
objects() {
  (cd App/Release && find . -name '*.obj' -exec i686-w64-mingw32-strip --strip-debug {} + -exec md5sum {} + | sort -k2)
}

build local.log
objects >local
[ "$(wc -l <local)" = 12 ] || fail "$(wc -l <local) objects instead of 12"

# ccache, with a store of its own.
export CCACHE_DIR=$scratch/ccache
unset CCACHE_SLOPPINESS CCACHE_BASEDIR
hits() { ccache --print-stats | awk '$1 ~ /^(direct|preprocessed)_cache_hit$/ { hits += $2 } END { print hits + 0 }'; }
build ccache-1.log QX_ENGINE_LAUNCHER=ccache
[ "$(hits)" = 0 ] || fail "an empty store had something"
build ccache-2.log QX_ENGINE_LAUNCHER=ccache
[ "$(hits)" = 12 ] || fail "$(hits) of 12 objects came from the store"
objects | diff local - || fail "ccache made other objects"

# distcc: two daemons, each on a free port and with a log of its own.
answers() { (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; } # PORT
daemon() {
  local port=$((20000 + RANDOM % 10000))
  while answers "$port"; do port=$((port + 1)); done
  ports+=("$port")
  set -- "$port"
  : >"$scratch/distccd-$1.log"
  chmod a+w "$scratch/distccd-$1.log"  # it gives root's rights up before it writes
  setsid distccd --no-detach --daemon --enable-tcp-insecure --listen 127.0.0.1 --allow 127.0.0.1 --port "$1" --jobs 2 --log-file "$scratch/distccd-$1.log" \
    --log-level info >"$scratch/distccd-$1.out" 2>&1 &
  daemons+=($!)
  for _ in {1..100}; do
    answers "$1" && return
    sleep 0.1
  done
  cat "$scratch/distccd-$1".*
  fail "no distccd on port $1"
}
ports=()
daemon
daemon
export DISTCC_DIR=$scratch/distcc DISTCC_HOSTS="127.0.0.1:${ports[0]}/2 127.0.0.1:${ports[1]}/2"
mkdir -p "$DISTCC_DIR"
compiled() { grep -c 'COMPILE_OK' "$scratch/distccd-$1.log" || true; }
build distcc-1.log QX_ENGINE_LAUNCHER=distcc QX_ENGINE_JOBS=4 DISTCC_FALLBACK=0
objects | diff local - || fail "distcc made other objects"
for port in "${ports[@]}"; do
  [ "$(compiled "$port")" -gt 0 ] || { cat distccd-*.log; fail "the distccd of port $port took no part"; }
done
echo "distcc: $(compiled "${ports[0]}") and $(compiled "${ports[1]}") objects came from the two daemons"

before=$(compiled "${ports[0]}")
(while [ "$(compiled "${ports[0]}")" -lt $((before + 3)) ]; do sleep 0.02; done; kill -9 -- "-${daemons[0]}") &
killer=$!
build distcc-2.log QX_ENGINE_LAUNCHER=distcc QX_ENGINE_JOBS=4
wait "$killer" || fail "no daemon was killed"
objects | diff local - || fail "a killed distccd changed objects"
! answers "${ports[0]}" || fail "the daemon lives"
echo "distcc: the killed daemon had compiled $(compiled "${ports[0]}") of 24 objects, the other one $(compiled "${ports[1]}")"
