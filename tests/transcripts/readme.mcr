CALC polyhedra
1.5 2.2
0
TABLE bond lengths
Fe1

CSV bond Fe1 bonds.tsv
GRAPH cells P cells.svg
FIT cells P
EXIT
