#!/bin/bash
# The example's resource script, stamped by a run, compiles and links with windres and the cross compiler, and tools that are
# not ours read every number, flag, string, language and code page back from the binary: windres everywhere, and
# Windows' own GetFileVersionInfo where Wine runs the product.
# usage: stamped_resource.sh FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES FOLDER-OF-TESTS SCRATCH-FOLDER [EMULATOR]
set -euo pipefail
bin=$1 examples=$2 tests=$3 scratch=$4 emulator=${5:-}
cross=x86_64-w64-mingw32
command -v "$cross-windres" >/dev/null || { echo "SKIPPED: no $cross-windres on this machine"; exit 77; }
ending=${emulator:+.exe}
rm -rf "$scratch"
mkdir -p "$scratch/tools"
cp -r "$examples/." "$scratch"
cd "$scratch"

# A compiler with nothing to do: what is built here is built below.
printf 'int main(void) { return 0; }\n' >idle.c
"${emulator:+$cross-}gcc" -o tools/devenv.com idle.c
host=($emulator "$bin/qxhost$ending" --options options.xml)
"${host[@]}" options DevEnv2005Location=tools CheckBuilt=off >/dev/null
rm -f version.xml
"${host[@]}" new version.xml >/dev/null
keys=$'CompanyName=Grüße & Söhne\r\nComments=a word, 100%% $1\r\nFileVersion=\r\nProductVersion=3.14 beta\r\n'
"${host[@]}" add version.xml "Build VS.Net Solution" 'Solution=Hello\Hello.sln' 'SolutionConFiguration=Release|Win32' \
  VStudioVersion=vs2005 UpdateWin32Resource=True MajorVersion=4 MinorVersion=3 ReleaseVersion=2 BuildVersion=65535 \
  IsPreRelease=True IsSpecial=True IsDLL=True Locale=1031 CodePage=1252 "VersionInfoKeys=$keys" >/dev/null
"${host[@]}" run version.xml >run.log 2>&1 || { cat run.log; echo "FAILED: the run"; exit 1; }

"$cross-windres" -I Hello/Banner Hello/Banner/Banner.rc -O coff -o banner.o
"$cross-gcc" -municode -o banner.exe "$tests/endtoend/print_version.c" banner.o -lversion
# expect WHERE TEXT...: each text stands in the file
expect() {
  local file=$1 text
  shift
  for text in "$@"; do
    grep -qF -- "$text" "$file" || { cat "$file"; echo "FAILED: $file lacks: $text"; exit 1; }
  done
}
"$cross-windres" -J coff -O rc -i banner.o -o readback.rc
expect readback.rc 'FILEVERSION 4, 3, 2, 65535' 'PRODUCTVERSION 4, 3, 2, 65535' 'FILEFLAGSMASK 0x3f' 'FILEFLAGS 0x22' \
  'FILEOS 0x40004' 'FILETYPE 0x2' 'BLOCK "040704E4"' 'VALUE "FileVersion", "4.3.2.65535' 'VALUE "ProductVersion", "3.14 beta' \
  'VALUE "Translation", 0x407, 1252'
[ -n "$emulator" ] || exit 0
"$emulator" ./banner.exe | tr -d '\r' >printed.txt
expect printed.txt 'file 4.3.2.65535' 'product 4.3.2.65535' 'flags 22 of 3f' 'system 40004' 'type 2' 'translation 0407 04e4' \
  'CompanyName=Grüße & Söhne' 'Comments=a word, 100% $1' 'FileVersion=4.3.2.65535' 'ProductVersion=3.14 beta'
