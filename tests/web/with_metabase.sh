#!/bin/bash
# Registers the test metabase in the Wine prefix, then runs a program there.
# usage: with_metabase.sh WINE LIBRARY PROGRAM [ARGUMENT]...
set -euo pipefail
wine=$1 library=$2
shift 2
"$wine" regsvr32 /s "Z:${library//\//\\}" </dev/null || { echo "FAILED: the test metabase cannot be registered"; exit 1; }
exec "$wine" "$@"
