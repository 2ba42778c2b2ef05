#!/usr/bin/env bash
# All judges: tests/judges/run.sh [FOLDER ...]
# Numbers that do not come from the program: random draws, plain loops, gemmi, numpy, printed tables.
# FOLDERS hold real files; without them the judges that need some look at the examples alone.
# Builds what it needs in build/, prints a line a judge, keeps what each said in build/judges/.
# Status 1 when any finds a fault.
set -eu
cd "$(dirname "$0")/../.."
. packaging/require.sh
require g++=g++ cmake=cmake make=make python3=python3 /usr/include/gtest/gtest.h=libgtest-dev
/usr/bin/python3 -c "import numpy, gemmi" 2>/dev/null || require gemmi=python3-gemmi || true

folders=("$PWD/examples")
for folder in "$@"; do folders+=("$(realpath "$folder")"); done
samples=$(realpath "${1:-examples}")

cmake --preset release -DGEMMARA_SAMPLES="${1:+$samples}" >/dev/null
cmake --build build --parallel "$(nproc)" --target gemmara readings \
  kva_crystal_structures_tests xtal_tests cif_records_tests facetor6_commands_tests program_tests >/dev/null

program=$PWD/build/gemmara
results=$PWD/build/judges
mkdir -p "$results/angles"
python=/usr/bin/python3
faults=0

# judge NAME WHAT COMMAND...: runs the command and says how it went.
judge() {
  local name=$1 what=$2 verdict="no fault"
  shift 2
  "$@" >"$results/$name.txt" 2>&1 || { verdict="FAULT"; faults=1; }
  if grep -q SKIPPED "$results/$name.txt"; then verdict="$verdict, in part skipped"; fi
  printf '%-12s %-62s %s\n' "$name" "$what" "$verdict, see build/judges/$name.txt"
}

# tested FLOOR SOURCE: the tests of one source.
tested() { "build/tests/$1_tests" "$1__$2"; }

judge neighbours "neighbours in 230 groups, by plain loops over all cells" tested kva_crystal_structures every_neighbour
judge search "distances, by plain loops" tested kva_crystal_structures search_judge
judge groups "space groups and Hall symbols, by gemmi" tested xtal space_groups
judge angles "angles and their esds, by 20,000 draws" env -C "$results/angles" $python -B "$PWD/tests/judges/angle_esds.py" "$program"
judge measures "measures and their esds, by numpy and 20,000 draws" tested facetor6_commands measure_judged
judge manual "formulas of the manual, by numpy" env -C "$results/angles" $python -B "$PWD/tests/judges/manual_formulas.py" "$program"
judge published "measures of published structures, images by numpy" $python -B tests/judges/measure_published.py "$program" "$samples"
judge printed "distances, angles and torsions that CIFs print" $python -B tests/judges/measure_loops.py "$program" "${folders[@]}"
judge valences "bond valences of published structures" tested facetor6_commands valence_published
judge bonds "bond lengths of published tables" tested facetor6_commands printed_bonds
judge fits "lines and parabolas, by numpy" tested xtal line_fit
judge written "CIFs that WRITE made, by gemmi" tested facetor6_commands write_judged
judge tables "fields of every table" $python -B tests/judges/table_fields.py "$program" "${folders[@]}"
judge full "READ full and the check behind READ cif, by gemmi" $python -B tests/judges/read_full.py build/tests/readings "${folders[@]}"
judge damaged "the same of damaged files" $python -B tests/judges/damaged_cifs.py build/tests/readings 300 "${folders[@]}"
judge sheets "sheets against the printed tables, and their two forms" $python -B tests/judges/sheets.py "$program" "${folders[@]}"
exit "$faults"
