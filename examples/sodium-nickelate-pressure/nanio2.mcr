READ cif nanio2.cif
Y
TABLE cells
CALC polyhedra
1.5,2.5
0
TABLE bond lengths
Ni1
Na1

EXIT
