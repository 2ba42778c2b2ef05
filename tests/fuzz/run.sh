#!/usr/bin/env bash
# Builds the fuzz targets and runs each for some seconds: run.sh [SECONDS [TARGET ...]]
# Prints executions and finds for each; status 1 when there was any find. The corpus grows in the
# build folder (GEMMARA_FUZZ_BUILD, by default build-fuzz), finds are kept there as well.
set -eu
cd "$(dirname "$0")/../.."
. packaging/require.sh
require clang++=clang cmake=cmake make=make

seconds=${1:-8}
[ $# -gt 0 ] && shift
# The one that takes longest to begin is the first.
targets=${*:-dialogue cif crystal_output operators numbers}
build=$(realpath -m "${GEMMARA_FUZZ_BUILD:-build-fuzz}")
compiler=${GEMMARA_FUZZ_CXX:-clang++}
export UBSAN_OPTIONS=print_stacktrace=1

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_UNITY_BUILD=ON -DGEMMARA_FUZZ=ON -DGEMMARA_TESTS=OFF >/dev/null
cmake --build "$build" $(printf -- '--target fuzz_%s ' $targets) --target gemmara \
  --parallel "$(nproc)" >/dev/null

# Sessions over real files, those of the project and of GEMMARA_SAMPLES, for the dialogues.
export GEMMARA_FUZZ_FILES=$build/files
case " $targets " in *" dialogue "*)
  if command -v python3 >/dev/null; then
    python3 tests/judges/random_sessions.py --write "$build" "$build/gemmara" 150 "${GEMMARA_FUZZ_SEED:-1}" \
      examples tests/transcripts/data tests/odd ${GEMMARA_SAMPLES:+"$GEMMARA_SAMPLES"}
  else
    mkdir -p "$build/sessions"
    echo "python3 is not there: no sessions over real files"
  fi ;;
esac

# The longest input that a target is given, in bytes.
longest() {
  case $1 in
    operators | numbers) echo 1000 ;;
    dialogue) echo 3000 ;;
    *) echo 6000 ;;
  esac
}

# Folders of inputs to begin with.
seeds() {
  echo "$PWD/tests/fuzz/seeds/$1"
  case $1 in
    cif) printf '%s\n' "$PWD"/examples/* ;;
    dialogue) printf '%s\n' "$PWD"/examples/* "$PWD/tests/transcripts" "$build/sessions" ;;
  esac
}

# Runs one target and prints its line.
run_target() {
  local corpus=$build/corpus/$1 finds=$build/finds/$1 log=$build/fuzz_$1.log executions status=0
  mkdir -p "$corpus" "$finds"
  "$build/tests/fuzz/fuzz_$1" "$corpus" $(seeds "$1") -dict="$PWD/tests/fuzz/$1.dict" \
    -max_len="$(longest "$1")" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=4096 \
    -print_final_stats=1 -artifact_prefix="$finds/" >"$log" 2>&1 || status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  printf '%-16s %10s executions, %s\n' "$1" "${executions:-0}" \
    "$([ "$status" -eq 0 ] && echo "no find" || echo "FIND, see $log and $finds")"
  return "$status"
}
export -f run_target longest seeds
export build seconds

# As many at a time as there are processors.
printf '%s\n' $targets | xargs -P "$(nproc)" -I{} bash -c 'run_target {}' || exit 1
