READ cif data/transition
Y
CALC polyhedra
1.5 2.8
0
MEASURE
joint = angle(Al1, O1, Al1)

OMIT block
3

TABLE bond lengths
Al1

EXIT
