# The archive and the installer for Windows, in a fresh Wine prefix with a screen. A part of packages.sh.
if [ "$1" != inside ]; then
  exec "$root/scripts/screen" "$root/scripts/wine-prefix" "$scratch/wine" "$0" windows "$packages" "$scratch" inside
fi
export WINEDLLOVERRIDES="$WINEDLLOVERRIDES;winemenubuilder.exe="  # or shortcuts would reach this system's menus
archive=$(ls "$packages"/*.zip) installer=$(ls "$packages"/*.exe)
drive=$WINEPREFIX/drive_c
profile=$(echo "$drive"/users/*/AppData) && [ -d "$profile" ] || fail "no user in $drive"
roaming=$profile/Roaming local=$profile/Local
uninstall='Software\Microsoft\Windows\CurrentVersion\Uninstall\qxhost'
quiet() { "$@" </dev/null >/dev/null 2>&1; }

# What a look at the system tells: files of the drive, and the registry. An uninstaller runs as a copy among the temporary
# files, which the system clears; Wine keeps lists of its own about programs and windows that were there.
facts() {
  (cd "$drive" && find . -path './users/*/Temp' -prune -o -printf '%y %P\n' | sort)
  for hive in 'HKCU' 'HKLM\Software'; do
    wine reg query "$hive" /s </dev/null 2>/dev/null
  done | tr -d '\r' |
    awk '/^HKEY_/ { wanted = !/^HKEY_CURRENT_USER.(Volatile Environment|Software.Wine)/ } wanted && NF'
}

# use FOLDER: what a user does with the programs in it; options go where they go by themselves.
use() {
  local bin=$1 work=$scratch/work out=$scratch/out
  rm -rf "$work"
  cp -r "$root/examples" "$work"
  mkdir "$work/tools"
  printf 'int main(void) { return 0; }\n' | x86_64-w64-mingw32-gcc -x c -o "$work/tools/devenv.com" -
  (
    cd "$work"
    unset WINEPATH
    host() { wine "$bin/qxhost.exe" "$@" </dev/null >"$out" 2>&1 || { cat "$out"; fail "qxhost $1"; }; }
    host actions
    grep -q "Run MSTest" "$out" || { cat "$out"; fail "the package is not there"; }
    host options "DevEnv2005Location=$(winepath -w "$work/tools")" CheckBuilt=off
    host new build.xml
    host add build.xml "Build VS.Net Solution" 'Solution=Hello\Hello.sln' 'SolutionConFiguration=Release|Mixed Platforms' \
      VStudioVersion=vs2005 UpdateAssemblyInfo=True UpdateAssemblyVersion=True 'AssemblyVersion=4|3|2|1'
    host show build.xml
    host run build.xml --dry-run
    grep -q '^+.*AssemblyVersion("4.3.2.1")' "$out" || { cat "$out"; fail "the dry run shows no version"; }
    host run build.xml
    grep -q 'AssemblyVersion("4.3.2.1")' Hello/*/Properties/AssemblyInfo.cs Hello/*/AssemblyInfo.cs 2>/dev/null ||
      fail "nothing was stamped"
    wine "$bin/vsinspect.exe" solution Hello/Hello.sln </dev/null >"$out" 2>&1 || { cat "$out"; fail "vsinspect"; }
  )
  [ -e "$roaming/qxhost/options.xml" ] || fail "the options are not where the user's are"
  [ -e "$bin/qxhost-desktop.exe" ] || fail "the desktop is not there"
  wine "$bin/qxhost-desktop.exe" "$(winepath -w "$work/build.xml")" </dev/null >"$out" 2>&1 &
  local desktop=$!
  window_appears qxhost-desktop.exe || { cat "$out"; fail "no window of the desktop appears"; }
  kill "$desktop"
  wait "$desktop" 2>/dev/null || true
}

# install_and_remove NAME FOLDER HIVE MENU ARGUMENTS...: the installer's way; SETTINGS says what is to become of the options.
install_and_remove() {
  local name=$1 folder=$2 hive=$3 menu=$4 line tries
  shift 4
  echo "== $name"
  for tries in first again; do  # the second goes over the first, as a newer version does
    wine "$installer" /S "$@" </dev/null >/dev/null 2>&1 || fail "the installer ended with $? ($tries)"
  done
  [ -e "$menu/qxhost/qxhost.lnk" ] || fail "no entry in $menu"
  line=$(wine reg query "$hive\\$uninstall" /v QuietUninstallString </dev/null 2>/dev/null | tr -d '\r' |
    sed -nE 's/^ *QuietUninstallString +REG_SZ +//p')
  [ -n "$line" ] || fail "no entry among the installed programs"
  use "$folder/bin"
  [[ "$line" =~ ^\"([^\"]+)\"\ (.*)$ ]] || fail "the uninstaller is not a program in quotes with arguments: $line"
  wine "${BASH_REMATCH[1]}" ${BASH_REMATCH[2]} $SETTINGS </dev/null >/dev/null 2>&1 || fail "the uninstaller ended with $?"
  for tries in {1..60}; do
    [ -e "$folder" ] || return 0
    sleep 0.5
  done
  (cd "$folder" && find .)
  fail "the uninstaller left files"
}

# What Wine makes for the first program with a window, and for the first uninstaller, is not ours.
quiet wine "$drive/windows/system32/notepad.exe" & sleep 5; kill $! || true
facts >"$scratch/before"
# compare NAME: what runs kept of the files that they changed is the user's: no uninstaller takes it.
compare() {
  rm -r "$local/qxhost/history" || fail "$1: nothing is kept of the run"
  rm -r "$local/qxhost"
  facts >"$scratch/after"
  diff "$scratch/before" "$scratch/after" || fail "$1 left traces"
}

echo "== $(basename "$archive")"
(cd "$scratch" && rm -rf unpacked && mkdir unpacked && cd unpacked && cmake -E tar xf "$archive")
use "$(echo "$scratch"/unpacked/*/bin)"
rm -r "$roaming/qxhost"
compare "the archive"

SETTINGS= install_and_remove "$(basename "$installer")" "$local/Programs/qxhost" HKCU \
  "$roaming/Microsoft/Windows/Start Menu/Programs"
[ -e "$roaming/qxhost/options.xml" ] || fail "the uninstaller took the user's settings unasked"
rm -r "$roaming/qxhost"
compare "the installer"

SETTINGS=/SETTINGS install_and_remove "$(basename "$installer") /ALLUSERS" "$drive/Program Files/qxhost" HKLM \
  "$drive/ProgramData/Microsoft/Windows/Start Menu/Programs" /ALLUSERS
compare "the installer for all users"
echo "The archive and the installer did their work and left nothing."
