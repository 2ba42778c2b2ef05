READ cif data/unquoted
Y
CLEAR
READ cif data/aniso_first
N
READ cif examples/hematite-pressure/hematite.cif
Y
CALC polyhedra
1 9
0
CLEAR
READ cif data/galena
Y
CALC polyhedra
2 3.2
0
SET exclude
N
N
Y
N
CALC polyhedra

2
0
ATOMEDIT
ELEMENT
PB+4 PB+2

EXIT
CALC valences
N
0
CLEAR
SET exclude
N
N
N
N
READ cif data/labels
Y
LIST scattering
CALC polyhedra
1.3 2.8
0
ATOMEDIT
ELEMENT
W O

EXIT
CALC polyhedra

0
CLEAR
READ cif data/brucite
Y
CALC polyhedra
0.8 2.3
2
N
0
ATOMEDIT
ELEMENT
D+1 H+1

EXIT
CALC valences
N
0
READ cif data/labels
Y
LIST bond
0
CLEAR
READ cif data/galena
Y
TRANSFORM
1 0 0
0 1 0
0 0 1
1/2 1/2 0
1
N
EXIT
