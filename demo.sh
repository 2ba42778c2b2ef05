#!/usr/bin/env bash
# Builds the program in release mode and runs an example, hematite at six pressures, which leaves a
# table and a picture in build/demo.
set -eu -o pipefail
cd "$(dirname "$0")"
. packaging/require.sh
require g++=g++ cmake=cmake make=make
require gnuplot=gnuplot-nox || echo "Without gnuplot the picture is left out." >&2

# Only how far it is; what goes wrong comes by standard error.
progress() {
  local line
  while IFS= read -r line; do
    case $line in "["*%"]"*) printf '\rBuilding the program: %s' "${line%%]*}]" ;; esac
  done
  echo
}

cmake --preset release -DGEMMARA_TESTS=OFF >/dev/null
cmake --build build --target gemmara --parallel "$(nproc)" | progress >&2

# A blank LOCALAPPDATA means no settings file: the demonstration leaves the user's alone.
example=$PWD/examples/hematite-pressure
rm -rf build/demo
mkdir build/demo
cd build/demo
LOCALAPPDATA= ../gemmara "$example"/*.cif "$example/demo.mcr"

echo
echo "The table:   $PWD/bonds.tsv"
cat bonds.tsv
if [ -s cells.svg ]; then
  echo "The picture: $PWD/cells.svg"
else
  echo "The picture: left out, without gnuplot; $PWD/cells.gp draws it when gnuplot is there"
fi
echo "Its values:  $PWD/cells.csv"
