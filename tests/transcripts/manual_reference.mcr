HELP
READ
2
0
READ cif examples/hematite-pressure/hematite.cif
Y
LIST
0
TABLE
0
LIST bond
0
CALC
1
1.5,2.2
0
LIST
0
TABLE
2
O1

LIST angles
O1

LIST edges
Fe1

LIST rigid
Fe1

SET
0
SHOW
SET output
Y
TABLE bond lengths
O1

SET output
N
SET reference
3
SET reference
1
SORT
P
D
UNSORT
OMIT
2 -4

SET hide
LIST block names
SET show
USE all
PTEDIT
P
2 1.54 0.05
3 3.14 0.05

T
1 -6 300 2


CLEAR
READ cif data/galena
Y
TRANSFORM
1 0 0
0 1 0
0 0 1
0.5 0.5 0.5
1
Y
N
CHECK data/mixed.cif
data/required.cif
N
ATOMEDIT
HELP
OMIT
S1

USE
S

EXIT
EXIT
