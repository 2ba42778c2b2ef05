#!/usr/bin/env bash
# Builds with clang's coverage instrumentation, runs all tests, and prints the lines and branches
# of the product's sources that they reach.
#
#   tests/coverage.sh [BUILD_FOLDER] [--missed]     --missed shows the lines that no test reaches
set -eu
cd "$(dirname "$0")/.."
build=${1:-/tmp/gemmara_coverage}
# Judges that run the same code some hundred times more; and what runs no code of the product.
without='^(program__(tables|measures)|kva_crystal_structures__every_neighbour|packaging|require|floors)$'
find_tool() { command -v "$1" || command -v "$1-14"; }
profdata=$(find_tool llvm-profdata)
cov=$(find_tool llvm-cov)

cmake -S . -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=None \
  -DCMAKE_CXX_FLAGS="-fprofile-instr-generate -fcoverage-mapping" \
  ${GEMMARA_SAMPLES:+"-DGEMMARA_SAMPLES=$GEMMARA_SAMPLES"} >/dev/null
cmake --build "$build" --parallel "$(nproc)" >/dev/null
rm -rf "$build/profiles"
LLVM_PROFILE_FILE="$build/profiles/%8m.profraw" ctest --test-dir "$build" -j"$(nproc)" \
  -E "$without" | tail -3
find "$build/profiles" -name '*.profraw' >"$build/profiles.txt"
"$profdata" merge -sparse -f "$build/profiles.txt" -o "$build/all.profdata"

objects=()
for program in "$build"/tests/*_tests; do
  [ -x "$program" ] && [ -f "$program" ] && objects+=(-object "$program")
done
sources=(console_code foundations cifcode common_code src)
"$cov" report "$build/gemmara" "${objects[@]}" -instr-profile="$build/all.profdata" \
  --show-region-summary=false "${sources[@]}"
if [ "${2:-}" = --missed ]; then
  "$cov" show "$build/gemmara" "${objects[@]}" -instr-profile="$build/all.profdata" \
    "${sources[@]}" | grep -E '^ +[0-9]+\| +0\||^/' | grep -B1 -E '\| +0\|'
fi
