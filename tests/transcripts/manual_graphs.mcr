READ cif examples/hematite-pressure/hematite.cif
Y
CALC polyhedra

0
GRAPH
2
Fe1

bonds
GRAPH cells P cells.svg
SYS
cat bonds.csv
cat bonds.gp
PROG
FIT bond Fe1 P
FIT cells P
FIT cells P 2
CSV fit fit.csv
SYS
cat fit.csv
PROG
EXIT
