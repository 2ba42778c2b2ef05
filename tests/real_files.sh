#!/usr/bin/env bash
# Real files: real_files.sh FOLDER [PROGRAM]
# READs, CALCs, TABLEs, WRITEs and re-READs every CIF below the folder and reports what crashes,
# takes over 10 s, or changes on the round trip. What WRITE loses as stated is counted by kind.
# The program is by default build/gemmara. Status 1 when there is anything to look at.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../packaging/require.sh"
require python3=python3
[ $# -ge 1 ] || { echo "usage: real_files.sh FOLDER [PROGRAM]" >&2; exit 2; }
exec python3 "$here/real_files.py" "$1" "${2:-$here/../build/gemmara}"
