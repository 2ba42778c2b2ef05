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
READ full data/series/P{P}.cif
Y
READ cif data/series/P[0-9]*.cif "data/any.cif" data/nothing.cif
N
READ full data/series/X*


READ full data/bonds.mcr
EXIT
