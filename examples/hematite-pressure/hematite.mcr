READ cif hematite.cif
Y
LIST block names
TABLE cells
CALC polyhedra

0
TABLE bond lengths
ALL

EXIT
