#!/usr/bin/env bash
# Builds and runs all measurements and prints them as tables. The comparisons with gemmi and cctbx
# are left out where gemmi-dev (with tao-pegtl-dev and libstb-dev) or python3-cctbx is missing.
set -eu
cd "$(dirname "$0")/.."
. packaging/require.sh
require g++=g++ cmake=cmake make=make python3=python3 \
  /usr/include/benchmark/benchmark.h=libbenchmark-dev

cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DGEMMARA_TESTS=OFF -DGEMMARA_BENCH=ON
cmake --build build-bench --parallel "$(nproc)"
build-bench/bench/gemmara_bench --benchmark_out=build-bench/cases.json \
  --benchmark_out_format=json --benchmark_min_time=2 "$@" >/dev/null
python3 bench/tables.py build-bench
