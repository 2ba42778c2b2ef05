ATOMEDIT
READ cif data/mixed.cif
Y
ATOMEDIT
HELP
S
READ
SHOW
SET hide
LIST site
OMIT

OMIT
all
Fe1
Si
O
M

USE 2
OX
o1

USE all
O1
Mg

ELEMENT

ELEMENT
2

Mg Zn+2

EXIT
CALC polyhedra

0
ATOMEDIT
OMIT 2
O

X
CALC polyhedra

0
TABLE bond
Mg

READ cif data/one_block.cif
Y
LIST site
CLEAR
READ cif data/one_block.cif
Y
CALC polyhedra

2
N
0
ATOMEDIT
OMIT O11
Si1
OW
Zz
K

LIST xyz
ALL
OW

USE
Si

ELEMENT
"
O
O N-3
si+4 xx
xx Si+4
N O
K F

LIST valences
EXIT
CALC polyhedra

0
LIST bond
ALL

EXIT
