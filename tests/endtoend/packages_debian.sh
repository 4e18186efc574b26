# The packages for Debian, on a minimal Debian 12 with what they depend on and nothing more but an engine for the example.
# A part of packages.sh. The Debian is kept in the cache and unpacked for each test.
if [ "$(id -u)" != 0 ] || ! command -v debootstrap >/dev/null; then
  echo "SKIPPED: Debian's packages are tried as root, with debootstrap"
  exit 77
fi
if [ "$1" != inside ]; then exec "$root/scripts/screen" "$0" debian "$packages" "$scratch" inside; fi
cli=$(ls "$packages"/qxhost_*.deb) desktop=$(ls "$packages"/qxhost-desktop_*.deb)
place=$scratch/system

# in_place COMMAND...: runs it in the Debian, with processes and mounts of its own, which end with the command.
in_place() {
  unshare --mount --pid --fork --kill-child bash -c '
    mount -t proc proc "$1/proc"
    mount -t tmpfs tmpfs "$1/tmp"
    cd "$1/home/builder" 2>/dev/null || cd "$1"
    exec chroot "$1" env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
      DEBIAN_FRONTEND=noninteractive DISPLAY="$DISPLAY" XAUTHORITY=/home/builder/.Xauthority ${http_proxy:+http_proxy="$http_proxy"} \
      "${@:2}"' bash "$place" "$@" </dev/null
}
as_builder() { in_place setpriv --reuid=builder --regid=builder --clear-groups env HOME=/home/builder bash -c "cd && $1"; }

# The Debian: what both packages depend on, said by themselves, and the example's engine.
depends=$(for package in "$cli" "$desktop"; do dpkg-deb -f "$package" Depends; echo; done |
  tr ',' '\n' | sed -E 's/\(.*//; s/\|.*//; s/ //g; /^$/d; /^qxhost/d' | sort -u)
wanted="$depends mono-xbuild mono-utils mono-devel ninja-build g++-mingw-w64-i686-posix"
cache=${XDG_CACHE_HOME:-$HOME/.cache}/vsdotnet-package
kept=$cache/debian-bookworm-$(sha256sum <<<"$wanted" | cut -c1-12).tar
rm -rf --one-file-system "$place"
mkdir -p "$place" "$cache"
if [ ! -e "$kept" ]; then
  echo "== Making a Debian, once (some minutes)"
  mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Identifier: Packages' 'Origin: Debian' 'Codename: bookworm' | head -n 1)
  [ -n "$mirror" ] || fail "apt names no place of Debian's packages: run apt-get update first"
  { debootstrap --variant=minbase --include=ca-certificates bookworm "$place" "$mirror" &&
    in_place useradd --create-home builder &&
    in_place apt-get install -q -y --no-install-recommends $wanted && in_place apt-get clean; } >"$scratch/debian.log" 2>&1 ||
    { tail -n 20 "$scratch/debian.log"; fail "no Debian was made"; }
  rm -f "$cache"/debian-bookworm-*.tar
  tar -C "$place" --one-file-system -cf "$kept.new" .
  mv "$kept.new" "$kept"
else
  tar -C "$place" -xf "$kept"
fi
[ ! -e "${XAUTHORITY:-}" ] || cp "$XAUTHORITY" "$place/home/builder/.Xauthority"
cp -r "$root/examples" "$place/home/builder/examples"
chown -R --reference="$place/home/builder" "$place/home/builder"

# Everything that a look at the system tells; the home is the user's, and the logs and lists of installed packages tell of
# what happened.
facts() {
  cd "$place"
  local left='^(proc|tmp|home/builder|var/log|var/cache|var/lib/dpkg)(/|$)'
  find . -printf '%P\t%y %m %U:%G %l\n' | grep -vE "$left" | sort
  find . -type f -printf '%P\0' | grep -zvE "$left" | sort -z | xargs -0 md5sum
  find var/lib/dpkg/info var/lib/dpkg/alternatives | sort
  grep -E '^(Package|Status)' var/lib/dpkg/status
  cd - >/dev/null
}
facts >"$scratch/before"

echo "== $(basename "$cli"), $(basename "$desktop")"
cp "$cli" "$desktop" "$place/home/builder/"
in_place dpkg -i "/home/builder/$(basename "$cli")" "/home/builder/$(basename "$desktop")" >"$scratch/out" 2>&1 ||
  { cat "$scratch/out"; fail "the packages cannot be installed"; }
in_place dpkg --verify qxhost qxhost-desktop | grep . && fail "files differ from the packages"
version=$(dpkg-deb -f "$cli" Version)
dpkg-deb -f "$desktop" Depends | grep -qF "qxhost (= $version)" || fail "the desktop takes any version of qxhost"
[ "$(as_builder 'qxhost --version')" = "qxhost ${version%-*}" ] || fail "qxhost --version"
as_builder 'qxhost actions' | grep -qF "Run MSTest" || fail "the package is not there"

as_builder 'cd examples && qxhost run Hello.build.xml' >"$scratch/out" 2>&1 ||
  { cat "$scratch/out"; fail "the example"; }
as_builder 'monodis --assembly examples/Hello/Hello/bin/Release/Hello.exe' | grep -qE '^Version: +1\.2\.1\.0' || fail "its version"
as_builder 'mono examples/Hello/Hello/bin/Release/Hello.exe' >/dev/null || fail "Hello.exe"
as_builder 'vsinspect binary examples/Hello/Release/Frame.dll --json' | grep -qF '"1.2.0.1"' || fail "the version of Frame.dll"
as_builder 'vsinspect solution examples/Hello/Hello.sln' >/dev/null || fail "vsinspect"
as_builder 'bash -c ". /usr/share/bash-completion/completions/qxhost && complete -p qxhost"' >/dev/null || fail "the completion"
for page in qxhost vsinspect qxhost-desktop; do
  gzip -t "$place/usr/share/man/man1/$page.1.gz" || fail "no man page of $page"
done

grep -q 'application/x-qxhost-build-project+xml:\*.build.xml' "$place/usr/share/mime/globs2" || fail "build projects have no type"
[ "$(as_builder 'qxhost-desktop --version')" = "qxhost-desktop ${version%-*}" ] || fail "qxhost-desktop --version"
as_builder 'exec qxhost-desktop examples/Hello.build.xml' >"$scratch/out" 2>&1 &
running=$!
window_appears qxhost-desktop || { cat "$scratch/out"; fail "no window of the desktop appears"; }
kill "$running"
wait "$running" 2>/dev/null || true

in_place dpkg --purge qxhost-desktop qxhost >"$scratch/out" 2>&1 || { cat "$scratch/out"; fail "the packages cannot be removed"; }
facts >"$scratch/after"
diff "$scratch/before" "$scratch/after" || fail "the packages left traces"
rm -rf --one-file-system "$place"
echo "Both packages did their work and left nothing."
