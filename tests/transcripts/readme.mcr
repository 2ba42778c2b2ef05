READ cif examples/hematite-pressure/hematite.cif
Y
CALC polyhedra
1.5,2.2
0
TABLE bond lengths
Fe1

EXIT
