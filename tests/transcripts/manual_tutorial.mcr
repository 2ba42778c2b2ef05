LOG hematite
READ cif examples/hematite-pressure/hematite.cif
Y
LIST scattering
TABLE cells
LIST symmetry
CALC polyhedra
1.5 2.2
0
TABLE bond lengths
Fe1

TABLE angles
O1

LIST orbix
Fe1

CALC valences
N
0
TABLE valences
Fe1

EXPORT
Y
1
hematite-cell
2
Fe1
hematite-FeO6

0
SYS
cat hematite-cell.dat
cat hematite-FeO6.dat
PROG
WRITE cif hematite-bonds
Y
N
Y
N
SYS
sed -n 4,28p hematite-bonds.cif
sed -n 66,110p hematite-bonds.cif
PROG
EXIT
