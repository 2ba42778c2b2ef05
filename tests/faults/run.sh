#!/usr/bin/env bash
# Faults from outside by the thousand: sessions with memory that is refused, a disk that fills,
# files that may not be written, and signals, as in tests/unit/program__faults.cpp, with other
# random numbers.
#
#   tests/faults/run.sh BUILD_FOLDER [RUNS [SEED]]     runs of each kind; 1000, and the time
set -eu
build=$(realpath "${1:-build}")
export FAULT_RUNS=${2:-1000}
export FAULT_SEED=${3:-$(date +%s)}
echo "$FAULT_RUNS runs of each kind, seed $FAULT_SEED"
exec nice "$build/tests/program_tests" program__faults
