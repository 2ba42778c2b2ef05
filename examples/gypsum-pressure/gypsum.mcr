READ cif gypsum.cif
Y
LIST cells
CALC polyhedra
1.3,2.8
0
LIST bond lengths
S
Ca

EXIT
