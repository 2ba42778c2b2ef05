#!/usr/bin/env bash
# Builds the program with g++ and clang, at -O0 and -O3, runs every macro of tests/transcripts and
# examples with each, and compares the outputs byte for byte.
#
#   tests/determinism.sh [WORK_FOLDER]
set -eu
cd "$(dirname "$0")/.."
source=$PWD
work=${1:-/tmp/gemmara_determinism}
rm -rf "$work"
mkdir -p "$work"

build() {  # compiler, optimisation, name
  cmake -S . -B "$work/$3" -DCMAKE_CXX_COMPILER="$1" -DCMAKE_BUILD_TYPE=None \
    -DCMAKE_CXX_FLAGS="$2" -DGEMMARA_TESTS=OFF >/dev/null
  cmake --build "$work/$3" --target gemmara --parallel "$(nproc)" >/dev/null
}

run_all() {  # name; the output of all macros, without the lines that hold the time
  local folder=$work/$1.run
  mkdir -p "$folder"
  ln -s "$source/examples" "$source/tests/transcripts/data" "$folder/"
  for macro in "$source"/tests/transcripts/*.mcr "$source"/examples/*/*.mcr; do
    (cd "$folder" && LOCALAPPDATA='' "$work/$1/gemmara" "$macro" </dev/null 2>&1 || true)
  done >"$work/$1.raw"
  find "$folder" -maxdepth 1 -type f -print0 | sort -z | xargs -0 -r cat >>"$work/$1.raw"
  grep -v -E 'Current date and time:|_audit_creation_date|Datafile created' "$work/$1.raw" \
    >"$work/$1.txt"
}

status=0
for variant in "g++ -O0 gcc0" "g++ -O3 gcc3" "clang++ -O0 clang0" "clang++ -O3 clang3"; do
  read -r compiler level name <<<"$variant"
  build "$compiler" "$level" "$name"
  run_all "$name"
  cmp "$work/gcc0.txt" "$work/$name.txt" || status=1
done
echo "$(wc -l <"$work/gcc0.txt") lines of output, four builds: $([ $status = 0 ] && echo equal || echo different)"
exit $status
