#!/bin/sh
# one.sh FILE.cif SHEETS: works one structure by survey.mcr, in a folder of its own, and leaves its
# sheet in the folder SHEETS, under the name of the file. No settings are kept. GEMMARA is the
# program.
set -eu
file=$(realpath "$1")
sheets=$(realpath "$2")
macro=$(realpath "$(dirname "$0")")/survey.mcr
program=$(realpath "$(command -v "${GEMMARA:-gemmara}")")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
LOCALAPPDATA= timeout 600 "$program" "$macro" "$file" </dev/null >said.txt || true
if [ -f sheet.csv ]; then
  mv sheet.csv "$sheets/$(echo "$file" | tr / _).csv"
else
  echo "no sheet of $1: $(grep -m 1 '^\*\{5\}[^*]' said.txt || echo 'no structure was read')"
fi
