#!/bin/sh
# survey.sh FOLDER [JOBS]: works every CIF below FOLDER, JOBS at a time (default: as many as there
# are processors), and joins the sheets: sites.csv, a line a silicon site, and sites.svg, where
# gnuplot is installed. Needs GNU parallel and python3. GEMMARA is the program.
set -eu
here=$(realpath "$(dirname "$0")")
GEMMARA=${GEMMARA:-gemmara}
missing=
for tool in parallel python3 "$GEMMARA"; do
  command -v "$tool" >/dev/null || missing="$missing $tool"
done
if [ -n "$missing" ]; then
  echo "Not found:$missing (packages of Debian: parallel python3; the program is what GEMMARA says)" >&2
  exit 1
fi
GEMMARA=$(realpath "$(command -v "$GEMMARA")")
export GEMMARA
sheets=$(mktemp -d)
trap 'rm -rf "$sheets"' EXIT
find "$1" -name '*.cif' -print0 | sort -z |
  parallel -0 --jobs "${2:-100%}" "$here/one.sh" {} "$sheets"
python3 "$here/join.py" "$sheets" sites.csv
if command -v gnuplot >/dev/null; then gnuplot "$here/sites.gp"; fi
