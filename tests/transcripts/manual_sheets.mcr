READ cif examples/hematite-pressure/hematite.cif
Y
CALC polyhedra

0
MEASURE strain = V/ref(V) - 1
CSV
1
cells.csv
CSV bond Fe1 bonds.tsv
CSV bond Fe1 bonds.tex
CSV all everything
SYS
cat cells.csv
cat bonds.tsv
cat bonds.tex
sed -n '1p;8,11p;19,21p;29p;39,40p' everything.csv
PROG
EXIT
