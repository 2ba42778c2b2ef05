#!/usr/bin/env bash
# Runs the dialogues of tests/transcripts under wine with the program for Windows, and holds what it
# says and writes against the same texts as on Linux: tests/windows.sh [gemmara.exe]. Then a few
# things that only Windows has. Status 77: wine is not there.
set -u
source=$(cd "$(dirname "$0")/.." && pwd)
program=$(realpath "${1:-$source/build-windows/gemmara.exe}")
dialogues=$source/tests/transcripts

if ! command -v wine >/dev/null; then
  echo "wine is not there, so the program for Windows was not run (Debian: apt-get install wine64 wine)"
  exit 77
fi
if [ ! -f "$program" ]; then
  echo "$program is not there: run packaging/windows.sh first"
  exit 1
fi

scratch=$(mktemp -d)
export WINEPREFIX=$scratch/wine WINEDEBUG=-all
trap 'wineserver -k 2>/dev/null; wineserver -w 2>/dev/null; rm -rf "$scratch"' EXIT
failures=0

fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}

# Without what is another day or hour in every run, and with an end to the last line. The system's
# own echo ends its line as Windows does; the program's lines end in a line feed alone.
undated() {
  sed -E -e 's/(Current date and time:|_audit_creation_date|Datafile created by Gemmara on).*/\1/' \
    -e 's/^(SYSTEM>spoken by the system)\r$/\1/' -e '$a\' "$1"
}

# Windows has no sed, tail and cat: what these show of the files that were written is put in here.
with_tools() {
  local line
  while IFS= read -r line || [ -n "$line" ]; do
    printf '%s\n' "$line"
    case $line in "SYSTEM>sed "* | "SYSTEM>tail "* | "SYSTEM>cat "*) eval "${line#SYSTEM>}" ;; esac
  done <"$1"
}

# compare FOUND EXPECTED: line for line.
compare() {
  diff <(undated "$1") <(undated "$2") >"$scratch/difference" && return
  fail "$name: ${1##*/} against ${2##*/}, lines of the program marked <"
  head -20 "$scratch/difference"
}

# The files that the dialogue wrote in the current folder, against those in the folder of its name.
compare_files() {
  local file
  [ -d "$dialogues/$name" ] || return
  for file in "$dialogues/$name"/*; do
    if [ -f "${file##*/}" ]; then compare "${file##*/}" "$file"; else fail "$name: no ${file##*/}"; fi
  done
  for file in *; do
    case $file in
      said.txt | error.txt | examples | data | "$name".*) ;;
      *) [ -f "$dialogues/$name/$file" ] || fail "$name: $file was written" ;;
    esac
  done
}

# fresh_folder NAME: becomes the current one, with the data of the dialogues and the examples. The
# working directory of an earlier run is forgotten.
fresh_folder() {
  rm -rf "$settings"
  mkdir "$scratch/$1" && cd "$scratch/$1" || exit 1
  ln -s "$source/examples" examples
  ln -s "$dialogues/data" data
}

echo "-- $(wine --version 2>/dev/null)"
wine cmd /c "exit 0" >/dev/null 2>&1 </dev/null # makes the folder of its settings
settings=$(find "$WINEPREFIX" -type d -path '*/AppData/Local' -print -quit)/quorvansoftware

# A program of our own stands where gnuplot's installer puts it.
programs=$WINEPREFIX/drive_c/Program\ Files
if x86_64-w64-mingw32-g++-posix -static -O1 "$dialogues/stand_in/gnuplot.cpp" -o "$scratch/gnuplot.exe"; then
  mkdir -p "$programs/gnuplot/bin" && cp "$scratch/gnuplot.exe" "$programs/gnuplot/bin/"
fi

for input in "$dialogues"/*.mcr "$dialogues"/*.in; do
  name=$(basename "${input%.*}")
  if grep -q '^     The graph is drawn in ' "${input%.*}.txt" && [ ! -f "$scratch/gnuplot.exe" ]; then
    echo "$name: not run, as there is no stand-in for gnuplot (Debian: apt-get install g++-mingw-w64-x86-64-posix)"
    continue
  fi
  fresh_folder "$name"
  cp "$input" .
  arguments=$(cat "${input%.*}.args" 2>/dev/null)
  case $input in
    *.mcr) wine "$program" $arguments "./$name.mcr" </dev/null >said.txt 2>error.txt ;;
    *) wine "$program" <"$name.in" >said.txt 2>error.txt ;;
  esac
  status=$?
  [ $status -eq 0 ] || fail "$name: ended with status $status"
  with_tools said.txt >"$scratch/said.txt"
  compare "$scratch/said.txt" "$dialogues/$name.txt"
  compare_files
  echo "$name"
done

# ---- what only Windows has ----

name=backslashes
echo "-- $name"
fresh_folder $name
mkdir kept
printf '%s\n' 'READ cif examples\hematite-pressure\hematite.cif' Y 'LOG kept\name.log' \
  'CD kept' INFO EXIT >typed
wine "$program" <typed >said.txt 2>error.txt
grep -q '^Named examples\\hematite-pressure\\hematite.cif$' said.txt || fail "a path with \\ to read"
grep -q 'Version:  6.10' kept/name.log || fail "a path with \\ to write"
grep -q 'Current working directory is now: [A-Z]:.*\\backslashes\\kept$' said.txt ||
  fail "the working directory is shown"

name=settings
echo "-- $name"
grep -q '^WDIR  [A-Z]:.*\\backslashes\\kept *$' "$settings/gemmara.ini" ||
  fail "the working directory lies below LOCALAPPDATA"
[ "$(ls "$settings")" = gemmara.ini ] || fail "there is something beside the settings file"
printf '%s\n' 'LOG again' EXIT | wine "$program" >said.txt 2>error.txt
[ -f kept/again.log ] || fail "the program begins where it was ended"

name=letters
echo "-- $name"
fresh_folder $name
mkdir größe
cp "$source/examples/gypsum-pressure/gypsum.cif" größe/Ångström.cif
printf 'READ cif größe\\Ångström.cif\r\nY\r\nLOG größe\\Δ.log\r\nEXIT\r\n' >größe/μ.mcr
wine "$program" 'größe\μ.mcr' </dev/null >said.txt 2>error.txt
grep -q '^Named größe\\Ångström.cif$' said.txt || fail "letters beyond ASCII in the name of a file"
[ -f größe/Δ.log ] || fail "letters beyond ASCII in the name of a new file"

name=two_at_once
echo "-- $name"
fresh_folder $name
printf '%s\n' 'LOG one.txt' 'RECORD one.txt' Y '' EXIT | wine "$program" >said.txt 2>error.txt
grep -q 'Macro recording FAILED' said.txt || fail "a file is opened twice"

name=system
echo "-- $name"
fresh_folder $name
touch one.log
printf '%s\n' 'DIR' SYS 'echo "a b" "c"' PROG EXIT | wine "$program" >said.txt 2>error.txt
grep -q 'one\.log' said.txt || fail "DIR lists the folder"
grep -q '"a b" "c"' said.txt || fail "a command with quotes"

name=gnuplot
echo "-- $name"
# draws LINE: whether gnuplot is found, and runs.
draws() {
  fresh_folder "$1"
  printf '%s\n' 'READ cif examples\hematite-pressure\hematite.cif' Y 'GRAPH cells P cells.svg' EXIT |
    wine "$program" >said.txt 2>error.txt
  grep -q 'The graph is drawn in cells.svg' said.txt && [ "$(cat cells.svg)" = "$(: | sh "$dialogues/stand_in/gnuplot")" ]
}
rm -rf "$programs/gnuplot"
draws nowhere && fail "gnuplot is found where there is none"
grep -q '\*gnuplot is not installed: cells.gp draws cells.csv when it is' "$scratch/nowhere/said.txt" ||
  fail "without gnuplot the files are written, and it is told"
if [ -f "$scratch/gnuplot.exe" ]; then
  number=0
  for place in "$programs" "$programs (x86)" "${settings%/*}/Programs"; do
    number=$((number + 1))
    mkdir -p "$place/gnuplot/bin" && mv "$scratch/gnuplot.exe" "$place/gnuplot/bin/"
    draws "place_$number" || fail "gnuplot is not found in $place"
    mv "$place/gnuplot/bin/gnuplot.exe" "$scratch/"
  done
  mkdir "$scratch/größe" && mv "$scratch/gnuplot.exe" "$scratch/größe/"
  WINEPATH=$(wine winepath -w "$scratch/größe" 2>/dev/null | tr -d '\r') draws on_the_path ||
    fail "gnuplot is not found by PATH"
fi

name=options
echo "-- $name"
wine "$program" --version </dev/null | tr -d '\r' | grep -qx 'Gemmara 6\.1, .*' || fail "--version"
wine "$program" --none </dev/null >/dev/null 2>&1
[ $? -eq 64 ] || fail "an unknown option ends with 64"
wine "$program" </dev/null >/dev/null 2>said.txt
[ $? -eq 2 ] && grep -q 'Gemmara: end of input' said.txt || fail "the end of input ends with 2"

# The zip beside the program: the first session of the README where it was unpacked.
name=zip
echo "-- $name"
zip=$(echo "${program%/*}"/gemmara-*-windows.zip)
if [ -f "$zip" ]; then
  fresh_folder $name
  cmake -E tar xf "$zip"
  cd gemmara-*-windows || fail "the zip holds no folder"
  for part in README.md LICENSE docs/manual.md docs/figures/hematite.svg; do
    [ -f "$part" ] || fail "$part is not in the zip"
  done
  wine ./gemmara.exe 'examples\hematite-pressure\*.cif' 'examples\hematite-pressure\demo.mcr' \
    </dev/null >said.txt 2>error.txt || fail "the first session ends with status $?"
  grep -q '^Fe1-O1 ×3	2\.113(4)	2\.112(6)	' bonds.tsv || fail "the table of the first session"
else
  echo "there is none: packaging/windows.sh makes it"
fi

cd "$source" || exit 1
[ $failures -eq 0 ] && echo "All as on Linux"
exit $((failures > 0))
