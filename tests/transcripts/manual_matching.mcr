READ cif data/transition
Y
CALC polyhedra
1.5 2.8
0
OMIT block
3

TABLE bond lengths
Al1

EXIT
