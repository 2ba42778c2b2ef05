READ full data/any
Y
LIST symmetry
LIST xyz
ALL

TABLE adps
U
ALL

CLEAR
READ cif data/any
N
READ full data/unquoted
EXIT
