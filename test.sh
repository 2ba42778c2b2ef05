#!/usr/bin/env bash
# Builds the program in release mode (build/gemmara) and runs all tests.
set -eu
cd "$(dirname "$0")"
. packaging/require.sh
require g++=g++ cmake=cmake make=make /usr/include/gtest/gtest.h=libgtest-dev

cmake --preset release -DGEMMARA_TESTS=ON ${GEMMARA_SAMPLES:+"-DGEMMARA_SAMPLES=$GEMMARA_SAMPLES"}
cmake --build build --parallel "$(nproc)"
ctest --preset release --parallel "$(nproc)" "$@"
