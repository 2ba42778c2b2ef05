READ cif examples/hematite-pressure/hematite.cif
Y
SHOW
LIST symmetry
LIST site names
LIST scattering
TABLE cells
SET output symcodes
Y
CALC polyhedra

0
TABLE bond lengths
Fe

LIST bond lengths
O1

LIST rigid
Fe1

LIST angles
O1

TABLE edges
O1

LIST orbix
Fe1

EXIT
