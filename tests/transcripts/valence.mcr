READ cif data/valence_none.cif
Y
CALC valences
1

2
2
0
LIST valences
CLEAR
READ cif data/valence.cif
Y
CALC poly

2
Y
5 1.7 0.37
0 1.7 0.37
12345 1.7 0.37
1 1.7
1 1.7 0
x
1 1.65 0.40
ge+4
"" o-2

3 1.734 0.37
fe+2 o-2
4 1.545 0.37
al+3 cl-1

n
0
LIST scattering
LIST valences
Si1
Al2
O4
Zz

SET output symcodes
Y
TABLE valences
Si1
Al1
O3
Rh1
X1

EXIT
