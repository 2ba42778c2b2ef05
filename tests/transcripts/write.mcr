READ cif data/modes.cif
Y
WRITE
2
1
before
Y
CALC poly

0
WRITE cif chosen.cif
Y
N
Y
N
SORT
P
D
OMIT 1
2
WRITE cif none.cif
N
WRITE cif before.cif
Y
Y
CLEAR
READ cif before.cif
Y
TABLE cells
TABLE xyz
ALL

EXIT
