#!/bin/bash
# A dry run over copies of real solutions changes no byte and no time stamp anywhere, and its diff, applied with patch, gives
# what the real run gives.
# usage: dry_run.sh FOLDER-OF-PROGRAMS FOLDER-OF-REAL-FILES SCRATCH-FOLDER
set -euo pipefail
bin=$1 real=$2 scratch=$3
[ -d "$real" ] || { echo "SKIPPED: no files at $real"; exit 77; }
command -v patch >/dev/null || { echo "SKIPPED: no patch on this machine"; exit 77; }
rm -rf "$scratch"
mkdir -p "$scratch/tools"
cd "$scratch"
printf 'int main(void) { return 0; }\n' | cc -x c -o tools/devenv.com -
host=("$bin/qxhost" --options "$scratch/options.xml")
"${host[@]}" options "DevEnv2003Location=$scratch/tools" CheckBuilt=off >/dev/null

fail() { echo "FAILED: $1"; exit 1; }
# Everything that a look at a tree tells.
facts() { (cd "$1" && find . -printf '%P %y %m %s %T@\n' | sort && find . -type f -print0 | sort -z | xargs -0 md5sum); }

solutions=0 changed=0
while IFS= read -r -d '' solution; do
  repository=${solution%%/*} name=${solution#*/}
  rm -rf there patched
  cp -a "$real/$repository" there
  chmod -R u+w there
  "${host[@]}" new there/build.xml >/dev/null
  "${host[@]}" add there/build.xml "Build VS.Net Solution" "Solution=${name//\//\\}" SolutionConFiguration=Release \
    VStudioVersion=vs2003 UpdateAssemblyInfo=True UpdateAssemblyTitle=True 'AssemblyTitle=A & B $1' \
    UpdateAssemblyVersion=True 'AssemblyVersion=3|1|0|9' AutoIncAssemblyRevisionNo=True UpdateWin32Resource=True \
    MajorVersion=3 MinorVersion=1 BuildVersion=9 AutoIncBuild=True Locale=1033 $'VersionInfoKeys=CompanyName=C\r\n' >/dev/null
  cp -a there patched
  facts there >before
  dry=0 run=0
  "${host[@]}" run there/build.xml --dry-run >diff 2>dry.err || dry=$?
  facts there >after
  cmp -s before after || { diff before after; fail "the dry run of $solution left traces"; }
  patch -p1 --binary --silent -d patched <diff >patch.log 2>&1 || { cat patch.log; fail "patch refuses the diff of $solution"; }
  "${host[@]}" run there/build.xml >run.log 2>run.err || run=$?
  [ "$dry" = "$run" ] || fail "$solution: the dry run ended with $dry, the run with $run"
  diff -r there patched || fail "$solution: patch and run give different files"
  solutions=$((solutions + 1))
  [ ! -s diff ] || ! grep -q '^+++ b/[^b]' diff || changed=$((changed + 1))
done < <(cd "$real" && find . -iname '*.sln' -printf '%P\0' | sort -z)
echo "$solutions solutions, $changed of them stamped"
[ "$changed" -gt 10 ] || fail "too few solutions were stamped"
