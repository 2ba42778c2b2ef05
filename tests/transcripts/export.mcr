READ cif data/modes.cif
Y
EXPORT
N
CALC poly

0
EXPORT
Y
1
cells
2
Xx
O1
Si1
volumes.dat

1

0
SORT
P
D
EXPORT
Y
cell data
1
cells.dat
0
EXIT
