#!/bin/bash
# Builds real solutions of Visual Studio 2002 to 2005 through the host, with stamping on, and holds what comes out to a
# table of what should: the files, the projects that have to be named as failed, the versions read back from programs.
# usage: [QX_REAL_TREES=FOLDER-OF-TREES] real_solutions.sh FOLDER-OF-PROGRAMS TABLE FOLDER-OF-TREES SCRATCH-FOLDER [PACKAGE|all [STYLE...]]
# TABLE: tab-separated, a line a solution and configuration: package, version, source, solution, configuration, format,
# languages, outputs, either (PROJECT=FILE), cannot, stamps (a, r), stamped; lists separated by ";", "-" is nothing.
# STYLE: devenv, msbuild (of 9.00), selected and msbuild-selected (each project by itself, where all can be built), x64 (Visual
# C++ of which everything can be built, turned to that platform; where there is a Wine, each program is started); all of them by
# default.
set -uo pipefail
export LC_ALL=C.UTF-8
bin=$1 table=$2 trees=${QX_REAL_TREES:-$3} scratch=$4 only=${5:-all}
styles=("${@:6}")
[ "${#styles[@]}" -gt 0 ] || styles=(devenv msbuild selected msbuild-selected x64)
[ -e "$table" ] || { echo "SKIPPED: there is no table $table"; exit 77; }
for tool in ninja i686-w64-mingw32-g++ mcs xbuild; do
  command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool on this machine"; exit 77; }
done
declare -A visual_studio=([7.00]=vs2002 [8.00]=vs2003 [9.00]=vs2005)
rm -rf "$scratch"
mkdir -p "$scratch"
scratch=$(readlink -f "$scratch")
failed=0 rows=0 absent=0

# items LIST: one a line; nothing for "-"
items() { [ "$1" = - ] || tr ';' '\n' <<<"$1"; }
count() { items "$1" | grep -c .; }
complain() {
  echo "  FAILED: $*"
  failed=$((failed + 1))
}

# Whether the log has a line "PROJECT: REASON", by itself or as an error's text.
is_named() { # PROJECT
  sed 's/^ *//; s/.* error QXE[0-9]*: //' "$log" | awk -v name="$1: " 'index($0, name) == 1 { found = 1 } END { exit !found }'
}

check_row() { # STYLE
  local code expected_code=0 built=0 file project total
  ("${host[@]}" run "$build" </dev/null >"$log" 2>&1)
  code=$?
  while IFS= read -r file; do
    [ -n "$file" ] || continue
    if [ -e "$tree/$file" ]; then built=$((built + 1)); else complain "no $file"; fi
  done < <(items "$outputs")
  while IFS='=' read -r project file; do
    [ -n "$project" ] || continue
    if [ -e "$tree/$file" ]; then built=$((built + 1))
    elif ! is_named "$project"; then complain "$project: neither $file nor its name as failed"
    else expected_code=1; fi
  done < <(items "$either")
  while IFS= read -r project; do
    [ -n "$project" ] || continue
    expected_code=1
    is_named "$project" || complain "$project is not named as failed"
  done < <(items "$cannot")
  [[ "$1" != *selected ]] || return 0  # the last line speaks of the last project alone
  [ "$code" = "$expected_code" ] || complain "exit code $code, wanted $expected_code"
  total=$(grep -aoE '(Build|Rebuild All): [0-9]+ succeeded, [0-9]+ failed, [0-9]+ skipped' "$log" | tail -n 1)
  [ "$(sed -E 's/.*: ([0-9]+) succeeded.*/\1/' <<<"$total")" = "$built" ] || complain "$built files, but \"$total\""
}

check_stamps() {
  local file json
  [ "$stamped" != - ] || return 0
  if ! "$bin/vsinspect" binary --help >/dev/null 2>&1; then
    echo "  versions are not read back: this vsinspect has no \"binary\""
    return
  fi
  while IFS= read -r file; do
    json=$("$bin/vsinspect" binary "$tree/$file" --json 2>&1)
    case "$json" in
      *'"3.7.0.1"'* | *'"3.7.1.0"'*) echo "  $file: $(grep -aoE '"(assembly|file)Version" ?: ?"[^"]*"' <<<"$json" | tr '\n' ' ')" ;;
      *) complain "$file bears another version: $json" ;;
    esac
  done < <(items "$stamped")
}

# Programs of today's processors, which a Wine without its 32-bit part starts too. What they say without arguments is theirs;
# that they begin at all is what the engine answers for.
check_starts() {
  local file code attempt folders
  if ! command -v wine >/dev/null; then
    echo "  programs are not started: no wine on this machine"
    return
  fi
  folders=$(items "$outputs" | grep '\.dll$' | sed "s|^|$tree/|; s|/[^/]*$||" | sort -u | paste -sd';')
  while IFS= read -r file; do
    [[ "$file" = *.exe && -e "$tree/$file" ]] || continue
    grep -qa '^PE32+ ' < <(file -b "$tree/$file") || complain "$file is no program for x64"
    for attempt in 1 2 3; do  # tests that want to be done within a millisecond fail on a busy machine, and one of them crashes then
      (cd "$(dirname "$tree/$file")" && WINEPATH=$folders WINEDEBUG=-all,err+module timeout 60 wine "$tree/$file" </dev/null >"$place/said" 2>&1)
      code=$?
      # 53: Wine could not start it; 124: it did not end; from 128 on: a signal or an exception.
      [ "$code" -ge 124 ] || [ "$code" = 53 ] || grep -qaE 'err:module|^wine: ' "$place/said" || break
      code="$code, $attempt times"
    done
    if [[ "$code" = *times ]]; then
      complain "$file does not start (code $code): $(head -c 300 "$place/said")"
    else
      echo "  $file: started, code $code"
    fi
  done < <(items "$outputs")
}

run_style() { # STYLE
  local selection=() guids
  place="$scratch/$rows-$1"
  tree="$place/tree" log="$place/log" build="$place/build.xml"
  mkdir -p "$place"
  cp -r "$trees/$package" "$tree"
  host=("$bin/qxhost" --options "$place/options.xml")
  local configuration=$configuration
  if [ "$1" = x64 ]; then
    configuration=${configuration/|Win32/|x64}
    find "$tree" \( -name '*.sln' -o -name '*.vcproj' \) -exec sed -i 's/|Win32/|x64/g; s/Name="Win32"/Name="x64"/g' {} +
  fi
  [[ "$1" != msbuild* ]] || selection=(UseMSBuild=True)
  if [[ "$1" = *selected ]]; then
    guids=$(tr -d '\r' <"$tree/$solution" | sed -nE 's/^Project\(.*"(\{[^"]*\})"$/\1/p' | sort -u | paste -sd';')
    selection+=(BuildType=btSelectedProjects "SelectedProjects=$guids")
  fi
  "${host[@]}" new "$build" >/dev/null &&
    "${host[@]}" add "$build" "Build VS.Net Solution" "Solution=$tree/$solution" "SolutionConFiguration=$configuration" \
      "VStudioVersion=${visual_studio[$format]}" UpdateAssemblyInfo=True UpdateAssemblyVersion=True \
      UpdateAssemblyFileVersion=True LinkAssemblyFileVersionInfo=True 'AssemblyVersion=3|7|0|0' AutoIncAssemblyBuildNumber=True \
      UpdateWin32Resource=True MajorVersion=3 MinorVersion=7 AutoIncBuild=True 'VersionInfoKeys=FileVersion=3.7.0.0' \
      "${selection[@]}" >/dev/null || { complain "no build project"; return; }
  echo "$package $solution ($configuration, $1)"
  check_row "$1"
  check_stamps
  [ "$1" != x64 ] || check_starts
}

while IFS=$'\t' read -r package version source solution configuration format languages outputs either cannot stamps stamped note; do
  [ "$package" != package ] || continue
  [ "$only" = all ] || [ "$only" = "$package" ] || continue
  rows=$((rows + 1))
  if [ ! -d "$trees/$package" ]; then
    echo "$package: SKIPPED, there is no $trees/$package"
    absent=$((absent + 1))
    continue
  fi
  for style in "${styles[@]}"; do
    case "$style" in *selected) [ "$cannot" = - ] && [ "$either" = - ] || continue ;; esac
    [[ "$style" != msbuild* ]] || [ "$format" = 9.00 ] || continue
    [ "$style" != x64 ] || [[ "$cannot" = - && "$languages" != *C#* ]] || continue
    run_style "$style"
  done
done <"$table"
echo "$rows solutions and configurations, $absent of them absent, $failed failures"
[ "$absent" -lt "$rows" ] || { echo "SKIPPED: none of the trees is at $trees"; exit 77; }
[ "$failed" = 0 ]
