#!/usr/bin/env bash
# Builds the program in release mode and runs an example: hematite at six pressures.
set -eu
cd "$(dirname "$0")"
. packaging/require.sh
require g++=g++ cmake=cmake make=make

[ -x build/gemmara ] || echo "Building the program; this takes some minutes ..." >&2
cmake --preset release -DGEMMARA_TESTS=OFF >&2
cmake --build build --target gemmara --parallel "$(nproc)" >&2

# A blank LOCALAPPDATA means no settings file: the demonstration leaves the user's alone.
cd examples/hematite-pressure
LOCALAPPDATA= ../../build/gemmara hematite.mcr
