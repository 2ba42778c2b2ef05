#!/usr/bin/env bash
# All judges: tests/judges/run.sh [FOLDER ...]
# Numbers that do not come from the program: random draws, plain loops, gemmi, numpy, printed tables.
# FOLDERS hold real files; without them the judges that need some look at the examples alone.
# Builds what it needs in build/, prints a line a judge with a figure, keeps what each said in build/judges/.
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
mkdir -p "$results/scratch"
python=/usr/bin/python3
faults=0

# judge NAME WHAT FIGURE COMMAND...: runs the command and says how it went, with a figure out of what
# it said, by awk: blank for the number of tests.
judge() {
  local name=$1 what=$2 figure=${3:-'/^\[  PASSED/ {print $4" tests"}'} verdict="no fault"
  shift 3
  "$@" >"$results/$name.txt" 2>&1 || { verdict="FAULT"; faults=1; }
  if grep -q SKIPPED "$results/$name.txt"; then verdict="$verdict, in part skipped"; fi
  figure=$(awk "$figure" "$results/$name.txt")
  printf '%-10s %s: %s; %s\n' "$name" "$what" "$verdict" "${figure:-no figure}"
}

# tested FLOOR SOURCE: the tests of one source.
tested() { "build/tests/$1_tests" "$1__$2"; }
script() { env -C "$results/scratch" $python -B "$PWD/tests/judges/$1" "$program"; }

echo "What each says is kept in build/judges/NAME.txt"
judge neighbours "neighbours in 230 groups, by plain loops over all cells" '/ centres/' \
  tested kva_crystal_structures every_neighbour
judge search "distances, by plain loops" "" tested kva_crystal_structures search_judge
judge groups "space groups and Hall symbols, by gemmi" "" tested xtal space_groups
judge angles "angles and their esds, by 20,000 draws" 'NF {last=$0} END {print last}' script angle_esds.py
judge tables "esds of all tables, measures, Ueq and fits, by 20,000 draws" 'END {print}' script table_esds.py
judge measures "measures and their esds, by numpy and 20,000 draws" '/ measures/' \
  tested facetor6_commands measure_judged
judge manual "formulas of the manual, by numpy" '/ formulas/' script manual_formulas.py
judge published "measures of published structures, images by numpy" \
  'END {print $1" structures, "$2" measures, "$3" differ"}' \
  $python -B tests/judges/measure_published.py "$program" "$samples"
judge printed "distances, angles and torsions that CIFs print" \
  'END {print $2" values of "$1" files, "$3" unlike numpy, "$4" unlike the print but "$5" known"}' \
  $python -B tests/judges/measure_loops.py "$program" "${folders[@]}"
judge valences "bond valences of published structures" "" tested facetor6_commands valence_published
judge bonds "bond lengths of published tables" \
  '/^all files/ {sub(/, within 3 esds.*/, ""); print}' tested facetor6_commands printed_bonds
judge fits "lines and parabolas, by numpy" '/ compared/' tested xtal line_fit
judge written "CIFs that WRITE made, by gemmi" "" tested facetor6_commands write_judged
judge fields "fields of every table" 'END {print $2" tables of "$1" files, "$3" rows, "$4" faults"}' \
  $python -B tests/judges/table_fields.py "$program" "${folders[@]}"
judge full "READ full and the check behind READ cif, by gemmi" \
  '/ exact$/ {e=$1} /check right/ {c+=$1} END {print e" structures exact, check right in "c" blocks"}' \
  $python -B tests/judges/read_full.py build/tests/readings "${folders[@]}"
judge damaged "the same of damaged files" '/ (files|silent)$/ {printf "%s%s %s", c, $1, $2; c=", "}' \
  $python -B tests/judges/damaged_cifs.py build/tests/readings 300 "${folders[@]}"
judge sheets "sheets against the printed tables, and their two forms" \
  'END {print $2" places, "$3" values in both forms, "$4" faults"}' \
  $python -B tests/judges/sheets.py "$program" "${folders[@]}"
exit "$faults"
