#!/bin/bash
# The package qxhost-buildbot is installed, makes a master's configuration of the examples, and leaves nothing when it is removed. On a
# layer over this system, which has Buildbot: whatever is written goes into the layer, and is looked at there.
# usage: package_farm.sh PACKAGE SCRATCH-FOLDER
set -euo pipefail
package=$(realpath "$1") root=$(cd "$(dirname "$0")/../.." && pwd)
[ "$(id -u)" = 0 ] || { echo "SKIPPED: a package is installed as root"; exit 77; }
[ -x /usr/bin/buildbot ] || { echo "SKIPPED: no Buildbot on this machine"; exit 77; }
fail() { echo "FAILED: $1"; exit 1; }
rm -rf "$2"
mkdir -p "$2"
scratch=$(realpath "$2")
layer=$(mktemp -d)
trap 'rm -rf --one-file-system "$layer"' EXIT
mkdir "$layer/written" "$layer/work" "$layer/system"
# The layer's files lie in memory, for a layer cannot lie in what it covers.
unshare --mount --pid --fork --kill-child bash -euo pipefail -c '
  layer=$1 package=$2 root=$3 scratch=$4
  mount -t tmpfs tmpfs "$layer"
  mkdir "$layer/written" "$layer/work" "$layer/system"
  mount -t overlay overlay -o "lowerdir=/,upperdir=$layer/written,workdir=$layer/work" "$layer/system"
  mount -t proc proc "$layer/system/proc"
  mount -t tmpfs tmpfs "$layer/system/tmp"
  mkdir "$layer/system/tmp/farm"
  cp "$package" "$layer/system/tmp/farm/package.deb"
  cp -r "$root/examples" "$layer/system/tmp/farm/projects"
  inside() { chroot "$layer/system" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/tmp DEBIAN_FRONTEND=noninteractive "$@"; }
  inside dpkg -i /tmp/farm/package.deb
  inside dpkg --verify qxhost-buildbot
  [ -d "$layer/system/usr/lib/python3/dist-packages/qxhost_buildbot/__pycache__" ] || { echo "not compiled"; exit 1; }
  # As an administrator begins: the files of the examples, passwords of his own, no key yet.
  inside bash -euc "cd /tmp/farm && cp /usr/share/doc/qxhost-buildbot/examples/farm/* . && umask 077 &&
    for name in linux1 oldest strangers; do echo secret >\$name.password; done &&
    sed -i -e s/^listen.*/listen=\\\"tcp:0\\\"/ -e /^.projects/,\\\$d farm.toml && buildbot checkconfig master.cfg"
  inside dpkg --purge qxhost-buildbot
  umount "$layer/system/tmp"
  cd "$layer/written"
  find . -mindepth 1 ! -type d ! -path "./var/lib/dpkg/*" ! -path "./var/log/*" ! -path "./var/cache/*" >"$scratch/left"
  find . -path "*qxhost*" >>"$scratch/left"
' bash "$layer" "$package" "$root" "$scratch" >"$scratch/out" 2>&1 || { cat "$scratch/out"; fail "see above"; }
grep -q "Config file is good" "$scratch/out" || { cat "$scratch/out"; fail "no configuration is made"; }
[ ! -s "$scratch/left" ] || { cat "$scratch/left"; fail "the package left traces"; }
echo "qxhost-buildbot did its work and left nothing."
