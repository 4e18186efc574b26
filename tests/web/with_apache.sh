#!/bin/bash
# Runs a test program beside an Apache with mod_dav of its own on 127.0.0.1, and stops it by its process id. The same
# folder is served on two ports, one asks for Basic, one for Digest authentication.
# usage: with_apache.sh windows|posix PROGRAM [ARGUMENT]...
# The program finds in its environment:
#   QX_WEB_SYSTEM                        the first argument
#   QX_WEB_ROOT                          the folder that is served; everybody may write into it
#   QX_WEB_READ_ONLY, QX_WEB_FULL        folders below it that hold a web project: nobody may write, the disk is full;
#                                        QX_WEB_FULL is empty when no small disk may be mounted here
#   QX_WEB_BASIC_PORT, QX_WEB_DIGEST_PORT, QX_WEB_USER, QX_WEB_PASSWORD
#   QX_WEB_SHARE, QX_WEB_DRIVE           under Wine what \\qxserver\wwwroot$ and \\qxserver\D$ are; folders of no name else
set -euo pipefail
system=$1
shift
apache=$(command -v apache2 || echo /usr/sbin/apache2)
[ -x "$apache" ] || { echo "FAILED: apache2 was not found: run scripts/setup"; exit 1; }
modules=/usr/lib/apache2/modules

home=$(mktemp -d "${TMPDIR:-/tmp}/qx-apache-XXXXXX")
server=""
end() {
  [ -z "$server" ] || { kill -TERM "$server" && wait "$server"; } 2>/dev/null || true
  umount "$home/root/Full" 2>/dev/null || true
  rm -rf "$home"
}
trap end EXIT
chmod 711 "$home"
root=$home/root
mkdir -p "$root/ReadOnly" "$root/Full" "$home/locks" "$home/share" "$home/drive"
chmod 777 "$root" "$home/locks"

# A web project in a folder.
project() {
  printf '<VisualStudioProject><File RelPath = "AssemblyInfo.cs" /></VisualStudioProject>\r\n' >"$1/App.csproj"
  printf '[assembly: AssemblyVersion("1.0.*")]\r\n' >"$1/AssemblyInfo.cs"
}
project "$root/ReadOnly"
chmod 555 "$root/ReadOnly"
full=$root/Full
if mount -t tmpfs -o size=64k,mode=777 tmpfs "$full" 2>/dev/null; then
  project "$full"
  dd if=/dev/zero of="$full/rest" bs=1k 2>/dev/null || true
else
  echo "No disk may be mounted here: nothing fills one up"
  full=""
fi

user=ann password="s3cret-pw~42"
# hex HASH-PROGRAM TEXT
hex() { printf %s "$2" | "$1" | cut -d' ' -f1; }
printf '%s:{SHA}%s\n' "$user" "$(printf "$(hex sha1sum "$password" | sed 's/../\\x&/g')" | base64)" >"$home/basic"
printf '%s:qx:%s\n' "$user" "$(hex md5sum "$user:qx:$password")" >"$home/digest"

# configure BASIC-PORT DIGEST-PORT
configure() {
  for module in mpm_event authn_core authn_file authz_core authz_user auth_basic auth_digest dav dav_fs; do
    echo "LoadModule ${module}_module $modules/mod_$module.so"
  done
  [ "$(id -u)" != 0 ] || printf 'User www-data\nGroup www-data\n'
  cat <<CONFIGURATION
ServerRoot "$home"
ServerName 127.0.0.1
PidFile "$home/pid"
ErrorLog "$home/errors"
DefaultRuntimeDir "$home/locks"
DavLockDB "$home/locks/dav"
DocumentRoot "$root"
StartServers 1
Listen 127.0.0.1:$1
Listen 127.0.0.1:$2
<Directory "$root">
  Dav On
  Require valid-user
</Directory>
<VirtualHost 127.0.0.1:$1>
  <Location />
    AuthType Basic
    AuthName "qx"
    AuthUserFile "$home/basic"
  </Location>
</VirtualHost>
<VirtualHost 127.0.0.1:$2>
  <Location />
    AuthType Digest
    AuthName "qx"
    AuthDigestProvider file
    AuthUserFile "$home/digest"
  </Location>
</VirtualHost>
CONFIGURATION
}

answers() { (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; }

# Another program may take a port between the question and its use: then other ports are tried.
for attempt in 1 2 3 4 5 6 7 8; do
  basic=$((20000 + RANDOM % 20000)) digest=$((basic + 1))
  if answers "$basic" || answers "$digest"; then continue; fi
  configure "$basic" "$digest" >"$home/configuration"
  "$apache" -f "$home/configuration" -D FOREGROUND </dev/null >"$home/out" 2>&1 &
  server=$!
  for wait in $(seq 100); do
    if answers "$digest"; then break 2; fi
    kill -0 "$server" 2>/dev/null || break
    sleep 0.1
  done
  kill -TERM "$server" 2>/dev/null || true
  wait "$server" 2>/dev/null || true
  server=""
done
if [ -z "$server" ]; then
  cat "$home/out" "$home/errors" 2>/dev/null || true
  echo "FAILED: Apache did not start"
  exit 1
fi

share=$home/share drive=$home/drive prefix=""
if [ "$system" = windows ]; then
  prefix=Z:
  unc=$WINEPREFIX/dosdevices/unc/qxserver
  mkdir -p "$unc/wwwroot\$" "$unc/D\$"
  share=$unc/wwwroot\$ drive=$unc/D\$
fi
export QX_WEB_SYSTEM="$system" QX_WEB_ROOT="$prefix$root" QX_WEB_READ_ONLY=ReadOnly QX_WEB_FULL="${full:+Full}" \
  QX_WEB_BASIC_PORT="$basic" QX_WEB_DIGEST_PORT="$digest" QX_WEB_USER="$user" QX_WEB_PASSWORD="$password" \
  QX_WEB_SHARE="$prefix$share" QX_WEB_DRIVE="$prefix$drive"
code=0
"$@" </dev/null || code=$?
[ "$code" = 0 ] || { echo "== What Apache said:"; tail -n 30 "$home/errors"; }
exit "$code"
