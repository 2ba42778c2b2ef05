#!/usr/bin/env bash
# Holds the includes of every source, header and test against the tree of the floors, and the table
# in docs/architecture.md as well: tests/floors.sh FLOORS_TXT, the file that CMake writes into the
# build folder, a line a floor ("name: floors below: files").
set -eu
tree=$(realpath "$1")
cd "$(dirname "$0")/.."

# keeps_to_the_floors: reads lines "file:line:#include ...". An include of a header is one of the state
# in it too.
keeps_to_the_floors() { awk -v tree="$tree" '
  function may_see(floor, other, k, n, below) {  # its own floor, and what lies below
    if (floor == other) return 1
    n = split(BELOW[floor], below, " ")
    for (k = 1; k <= n; ++k) if (may_see(below[k], other)) return 1
    return 0
  }
  function fail(text) { print "FLOORS: " text; failed = 1 }
  BEGIN {
    while ((getline line < tree) > 0) {
      split(line, part, ": *")
      BELOW[part[1]] = part[2]
      n = split(part[3], files, " ")
      for (i = 1; i <= n; ++i) FLOOR[files[i]] = part[1]
      # A circle would call itself for ever: a floor stands behind those that lie below it.
      n = split(part[2], below, " ")
      for (i = 1; i <= n; ++i) if (!(below[i] in BELOW)) fail(part[1] " lies on " below[i] ", which comes later in CMakeLists.txt")
      if (part[1] != "gemmara" && part[1] ~ /^facetor6_/) BELOW["facetor6_commands"] = BELOW["facetor6_commands"] " " part[1]
    }
    BELOW["program"] = ""
    if (failed) exit 1
  }
  {
    split($0, field, ":")
    file = field[1]
    match($0, /"[^"]*"/)
    header = substr($0, RSTART + 1, RLENGTH - 2)
    from = FLOOR[file]
    if (file ~ /^tests\/unit\/.*__/) { from = file; sub(/.*\//, "", from); sub(/__.*/, "", from) }
    if (from == "" && file !~ /^tests\//) fail(file " belongs to no floor: see gemmara_floor in CMakeLists.txt")
    if (from == "" || header ~ /^tests\// || header !~ /\//) next
    to = FLOOR[header]
    if (to == "") fail(file ":" field[2] " includes " header ", which is no header of a floor")
    else if (!may_see(from, to)) fail(file ":" field[2] " includes " header ": " from " may see " (BELOW[from] ? BELOW[from] " and what lies below" : "no other floor") ", not " to)
    ++count
  }
  END {
    if (failed) exit 1
    print count " includes keep to the floors"
  }'
}

grep -rnE '^ *# *include *"' --include='*.h' --include='*.cpp' \
  console_code foundations cifcode common_code src tests/unit | keeps_to_the_floors

# That it would tell: upward, sideways, to the state of a floor beside, from a file of no floor.
while read -r wrong; do
  if keeps_to_the_floors <<<"$wrong" >/dev/null; then
    echo "FLOORS: tests/floors.sh lets this pass: $wrong"
    exit 1
  fi
done <<'WRONG'
src/kva_crystal_structures/bonds.cpp:9:#include "src/facetor6_console/parameters.h"
src/facetor6_calc/calc.cpp:9:#include "src/facetor6_readfiles/readfiles.h"
foundations/XTAL_Unit_Cell.cpp:9:#include "cifcode/cif_code_new/scanner.h"
console_code/console/input.cpp:9:#include "foundations/XTAL_Unit_Cell.h"
src/new_folder/new.cpp:9:#include "console_code/kva_utilities/text.h"
tests/unit/xtal__elements.cpp:9:#include "console_code/console/state.h"
WRONG

# The table of the document is the tree; the commands that see the reports alone share a row.
documented=$(sed -n 's/^| [0-9] | `\([a-z0-9_*]*\)` | [^|]* | \([^|]*\)|.*/\1: \2/p' docs/architecture.md |
  tr -d '`,' | sed 's/ *$//' | sort)
built=$(sed -e 's/: *\([^:]*\):.*/: \1/; s/ *$//' -e 's/^facetor6_.*: facetor6_list$/facetor6_*: facetor6_list/' \
  -e 's/^gemmara: .*/gemmara: facetor6_*/' "$tree" | sort -u)
if [ "$documented" != "$built" ]; then
  echo "FLOORS: the table in docs/architecture.md (<) is not the tree of CMakeLists.txt (>)"
  diff <(echo "$documented") <(echo "$built") || true
  exit 1
fi
